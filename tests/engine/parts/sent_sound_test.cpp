#include "media/sent_sound.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "capture/pipeline.h"

namespace corvane::rtc {
namespace {

using namespace std::chrono_literals;

SoundBlock level(int16_t sample, int32_t channels, int64_t time_us = 0) {
  SoundBlock block;
  block.channels = channels;
  block.storage.fill(sample);
  block.time_us = time_us;
  return block;
}

int64_t nowUs() {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
}

struct Heard {
  int sample;
  int32_t channels;
  int64_t time_us;
  bool muted;
};

class SentSoundTest : public testing::Test, protected SoundTap {
 protected:
  SentSoundTest() { sent_.taps().add(*this); }
  ~SentSoundTest() override { sent_.taps().remove(*this); }

  void onSound(const SoundBlock& block) override {
    const std::lock_guard lock(mutex_);
    heard_.push_back({block.storage[kBlockFrames - 1], block.channels, block.time_us, block.muted});
    changed_.notify_all();
  }

  std::vector<Heard> waitFor(size_t count) {
    std::unique_lock lock(mutex_);
    EXPECT_TRUE(changed_.wait_for(lock, 20s, [&] { return heard_.size() >= count; }));
    return heard_;
  }

  size_t count() {
    const std::lock_guard lock(mutex_);
    return heard_.size();
  }

  SoundTaps microphone_;
  SentSound sent_{microphone_};

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Heard> heard_;
};

TEST_F(SentSoundTest, PassesTheMicrophoneOnAsItIsAndAddsToIt) {
  const int64_t start = nowUs();
  SoundBlock muted = level(0, 1, start);
  muted.muted = true;
  microphone_.deliver(muted);
  auto input = sent_.addInput();
  input->push(level(100, 2));
  input->push(level(100, 2));
  microphone_.deliver(level(1000, 1, start + 10'000));
  // Muted is the microphone, not what is added.
  muted.time_us = start + 20'000;
  microphone_.deliver(muted);
  input.reset();
  microphone_.deliver(level(7, 1, start + 30'000));

  const std::vector<Heard> heard = waitFor(4);
  ASSERT_EQ(heard.size(), 4U);
  const int expected[] = {0, 1100, 100, 7};
  for (size_t index = 0; index < 4; ++index) {
    EXPECT_EQ(heard[index].sample, expected[index]);
    EXPECT_EQ(heard[index].channels, 1);
    EXPECT_EQ(heard[index].time_us, start + static_cast<int64_t>(index) * 10'000);
    EXPECT_EQ(heard[index].muted, index == 0);
  }
}

TEST_F(SentSoundTest, GoesOnWithoutTheMicrophoneWhileSomethingIsAdded) {
  auto input = sent_.addInput();
  input->push(level(100, 1));
  input->push(level(200, 1));
  const std::vector<Heard> alone = waitFor(5);
  int sum = 0;
  for (size_t index = 1; index < alone.size(); ++index) {
    EXPECT_GE(alone[index].time_us, alone[index - 1].time_us + 10'000);
    sum += alone[index].sample + (index == 1 ? alone[0].sample : 0);
  }
  EXPECT_EQ(sum, 300);

  // What the microphone was late with has been filled in; it leads again with what is new.
  microphone_.deliver(level(1, 1, alone.front().time_us));
  microphone_.deliver(level(5, 1, nowUs() + 1'000'000));
  input.reset();
  const std::vector<Heard> heard = waitFor(6);
  for (const Heard& block : heard) EXPECT_NE(block.sample, 1);
  EXPECT_EQ(heard.back().sample, 5);

  // Nothing comes where nothing is added and the microphone is off.
  std::this_thread::sleep_for(150ms);
  EXPECT_EQ(count(), heard.size());
}

}  // namespace
}  // namespace corvane::rtc
