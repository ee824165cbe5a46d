#include "core/engine_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <vector>

namespace corvane::rtc {
namespace {

using std::chrono::milliseconds;

TEST(EngineThread, RunsWhatIsPostedInOrderAndTheLastTaskLast) {
  EngineThread thread;
  std::vector<int> seen;
  for (int index = 0; index < 1000; ++index) thread.post([&seen, index] { seen.push_back(index); });
  // What a task posts comes after everything that waits already.
  thread.post([&] { thread.post([&seen] { seen.push_back(1001); }); });
  thread.post([&seen] { seen.push_back(1000); });
  std::promise<void> settled;
  thread.post([&] { thread.post([&] { settled.set_value(); }); });
  settled.get_future().wait();
  thread.finish([&seen] { seen.push_back(1002); });
  ASSERT_EQ(seen.size(), 1003U);
  for (int index = 0; index < 1003; ++index) EXPECT_EQ(seen[static_cast<size_t>(index)], index);
  // Nobody is left to run this; what it holds goes all the same.
  auto held = std::make_shared<int>(1);
  thread.post([held] { FAIL(); });
  EXPECT_EQ(held.use_count(), 2);
}

TEST(EngineThread, SkipsTasksWhoseOwnerIsGone) {
  EngineThread thread;
  auto owner = std::make_shared<char>();
  int runs = 0;
  thread.post(owner, [&] {
    ++runs;
    owner.reset();
  });
  thread.post(std::weak_ptr<void>(owner), [&] { ++runs; });
  thread.finish([] {});
  EXPECT_EQ(runs, 1);
}

TEST(EngineThread, RunsTimersOnceUnlessTheyAreDropped) {
  EngineThread thread;
  std::promise<void> done;
  std::atomic<int> dropped_runs = 0;
  AttachedSource kept;
  AttachedSource dropped;
  thread.post([&] {
    dropped = thread.after(milliseconds(1), [&] { ++dropped_runs; });
    kept = thread.after(milliseconds(20), [&] {
      kept.reset();  // a task may drop its own timer
      done.set_value();
    });
    dropped.reset();
  });
  EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
  thread.finish([] {});
  EXPECT_EQ(dropped_runs, 0);
}

TEST(EngineThread, TakesTasksFromSeveralThreads) {
  EngineThread thread;
  int sum = 0;
  std::vector<std::thread> posters;
  for (int poster = 0; poster < 4; ++poster) {
    posters.emplace_back([&] {
      for (int index = 0; index < 1000; ++index) thread.post([&sum] { ++sum; });
    });
  }
  for (std::thread& poster : posters) poster.join();
  thread.finish([] {});
  EXPECT_EQ(sum, 4000);
}

}  // namespace
}  // namespace corvane::rtc
