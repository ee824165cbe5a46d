#include "capture/sound_queue.h"

#include <gtest/gtest.h>

#include <numeric>
#include <thread>

namespace corvane::rtc {
namespace {

// Samples counted from `first`, cut to 16 bits.
std::vector<int16_t> counted(int64_t first, size_t count) {
  std::vector<int16_t> samples(count);
  for (size_t index = 0; index < count; ++index)
    samples[index] = static_cast<int16_t>(first + static_cast<int64_t>(index));
  return samples;
}

TEST(SoundQueue, MakesBlocksOfWhateverComesAndTellsTheirTimes) {
  SoundQueue queue;
  SoundBlock block;
  int64_t pushed = 0;
  int64_t popped = 0;
  // Pieces of odd sizes, each stamped with the time of its first sample; the ring is gone round many times.
  for (const size_t size : std::vector<size_t>(200, 701)) {
    const GstClockTime time = GST_SECOND + static_cast<GstClockTime>(pushed) * GST_SECOND / kSoundRate;
    queue.pushNewest(counted(pushed, size), time);
    pushed += static_cast<int64_t>(size);
    while (pushed - popped >= kBlockFrames) {
      ASSERT_TRUE(queue.pop(block, std::stop_token()));
      ASSERT_EQ(block.channels, 1);
      ASSERT_NEAR(static_cast<double>(block.time_us), 1e6 + static_cast<double>(popped) * 1e6 / kSoundRate, 1.0);
      const std::vector<int16_t> expected = counted(popped, kBlockFrames);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), block.samples().begin()));
      popped += kBlockFrames;
    }
  }
}

TEST(SoundQueue, KeepsTheNewestHalfSecondOfSoundThatDoesNotWait) {
  SoundQueue queue;
  SoundBlock block;
  queue.pushNewest(counted(0, 10'000), 0);
  queue.pushNewest(counted(10'000, 30'000), 10'000 * GST_SECOND / kSoundRate);
  ASSERT_TRUE(queue.pop(block, std::stop_token()));
  EXPECT_EQ(block.storage[0], 16'000);
  EXPECT_NEAR(static_cast<double>(block.time_us), 16'000 * 1e6 / kSoundRate, 1.0);
}

TEST(SoundQueue, MakesPacedSoundWaitForRoom) {
  SoundQueue queue;
  std::jthread producer([&](const std::stop_token& stop) {
    for (int64_t first = 0; first < 480'000; first += 16'000) {
      ASSERT_TRUE(queue.pushWhenRoom(counted(first, 16'000), stop));
    }
  });
  SoundBlock block;
  for (int64_t first = 0; first < 480'000; first += kBlockFrames) {
    ASSERT_TRUE(queue.pop(block, std::stop_token()));
    ASSERT_EQ(block.storage[0], static_cast<int16_t>(first));
    ASSERT_EQ(block.storage[kBlockFrames - 1], static_cast<int16_t>(first + kBlockFrames - 1));
  }
}

TEST(SoundQueue, LetsGoOfThoseWhoWaitWhenStopped) {
  SoundQueue queue;
  SoundBlock block;
  std::stop_source stop;
  std::thread waiting_for_sound([&] { EXPECT_FALSE(queue.pop(block, stop.get_token())); });
  std::thread waiting_for_room([&] {
    SoundQueue full;
    EXPECT_FALSE(full.pushWhenRoom(counted(0, 100'000), stop.get_token()));
  });
  stop.request_stop();
  waiting_for_sound.join();
  waiting_for_room.join();
}

}  // namespace
}  // namespace corvane::rtc
