#include "events/record_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace corvane {
namespace {

struct Record {
  std::byte* memory;
  size_t size;
  std::byte mark;
};

Record take(size_t size, uint32_t number) {
  const Record record{static_cast<std::byte*>(takeRecordMemory(size)), size, static_cast<std::byte>(number * 37)};
  std::fill_n(record.memory, size, record.mark);
  return record;
}

// Another record that shared its bytes would have left its mark there.
bool giveBack(const Record& record) {
  const bool whole =
      std::all_of(record.memory, record.memory + record.size, [&](std::byte each) { return each == record.mark; });
  giveBackRecordMemory(record.memory);
  return whole;
}

// From a byte to more than a block holds.
size_t sizeOf(uint32_t number) {
  static constexpr size_t kSizes[] = {1, 8, 104, 16, 400, 56, 2000, 24, 3000, 120, 40'000, 200};
  return kSizes[number % std::size(kSizes)];
}

TEST(RecordMemory, isAlignedAndNobodyElses) {
  std::vector<Record> records;
  for (uint32_t number = 0; number < 500; ++number) {
    records.push_back(take(sizeOf(number), number));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(records.back().memory) % alignof(std::max_align_t), 0U);
  }
  for (const Record& record : records) EXPECT_TRUE(giveBack(record));
  giveBackRecordMemory(nullptr);
}

TEST(RecordMemory, isUsedAgainOnceAllRecordsAreBack) {
#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)
  GTEST_SKIP() << "every record has memory of its own";
#endif
  std::vector<std::byte*> seen;
  for (uint32_t number = 0; number < 5000; ++number) {
    const Record record = take(104, number);
    seen.push_back(record.memory);
    EXPECT_TRUE(giveBack(record));
  }
  std::ranges::sort(seen);
  const auto different = std::unique(seen.begin(), seen.end()) - seen.begin();
  EXPECT_LE(different, 500);
}

TEST(RecordMemory, outlivesTheThreadsThatTookIt) {
  constexpr uint32_t kPerThread = 20'000;
  constexpr uint32_t kThreads = 3;
  std::mutex mutex;
  std::deque<Record> queue;
  std::vector<std::thread> threads;
  for (uint32_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (uint32_t number = 0; number < kPerThread; ++number) {
        const Record record = take(sizeOf(number + thread) % 512 + 1, number);
        const std::lock_guard<std::mutex> lock(mutex);
        queue.push_back(record);
      }
    });
  }
  uint32_t back = 0;
  bool whole = true;
  // The last ones come back when their threads have long ended.
  const auto take_back = [&](size_t most_left) {
    const std::lock_guard<std::mutex> lock(mutex);
    for (; queue.size() > most_left; ++back) {
      whole = giveBack(queue.front()) && whole;
      queue.pop_front();
    }
  };
  while (back < kPerThread) {
    take_back(100);
    std::this_thread::yield();
  }
  for (std::thread& thread : threads) thread.join();
  take_back(0);
  EXPECT_EQ(back, kPerThread * kThreads);
  EXPECT_TRUE(whole);
}

}  // namespace
}  // namespace corvane
