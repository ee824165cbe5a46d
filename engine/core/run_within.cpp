#include "core/run_within.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "core/engine_thread.h"

namespace corvane::rtc {

namespace {

struct Run {
  std::function<void()> work;
  std::mutex mutex;
  std::condition_variable changed;
  bool done = false;
};

}  // namespace

bool runWithin(std::chrono::milliseconds limit, const char* thread_name, std::function<void()> work) {
  const auto run = std::make_shared<Run>();
  run->work = std::move(work);
  std::thread thread([run, thread_name] {
    nameThread(thread_name);
    run->work();
    run->work = nullptr;  // what it holds goes here, wherever that takes
    const std::lock_guard lock(run->mutex);
    run->done = true;
    run->changed.notify_all();
  });
  std::unique_lock lock(run->mutex);
  if (!run->changed.wait_for(lock, limit, [&] { return run->done; })) {
    thread.detach();
    return false;
  }
  lock.unlock();
  thread.join();
  return true;
}

}  // namespace corvane::rtc
