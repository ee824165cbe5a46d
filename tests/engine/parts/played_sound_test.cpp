// What the microphone has to do with what is played: softer playback while somebody talks, and the ear monitor.
#include "playback/played_sound.h"

#include <gtest/gtest.h>

#include "playback/ear_monitor.h"
#include "support/signals.h"

namespace corvane::rtc {
namespace {

constexpr int64_t kBlockUs = 10'000;

/// Microphone and playback, block by block.
class PlayedSoundTest : public testing::Test, private SoundTap {
 protected:
  PlayedSoundTest() { mixer_.taps().add(*this); }
  ~PlayedSoundTest() override { mixer_.taps().remove(*this); }

  /// The last sample that the speaker gets in `blocks` more, while remote sound is at `remote` all the time.
  int run(int64_t blocks, const test::Signal& microphone, int16_t remote) {
    SoundBlock block;
    for (const int64_t end = now_ + blocks; now_ < end; ++now_) {
      block.channels = 1;
      block.time_us = now_ * kBlockUs;
      for (int64_t sample = 0; sample < kBlockFrames; ++sample) {
        block.storage[static_cast<size_t>(sample)] =
            static_cast<int16_t>(32767.0 * microphone(now_ * kBlockFrames + sample));
      }
      microphone_.deliver(block);
      block.storage.fill(remote);
      remote_->push(block);
      played_.mix(block, now_ * kBlockUs);
      last_ = block.storage.back();
    }
    return last_;
  }

  SoundTaps microphone_;
  SoundHooks hooks_;
  SoundMixer mixer_;
  PlayedSound played_{mixer_, hooks_, microphone_};
  EarMonitor ear_monitor_{microphone_, mixer_};
  int tapped_ = 0;

 private:
  void onSound(const SoundBlock& block) override { tapped_ = block.storage.back(); }

  std::shared_ptr<SoundMixer::Input> remote_ = mixer_.addInput(SoundMixer::Origin::kRemote);
  int64_t now_ = 0;
  int last_ = 0;
};

TEST_F(PlayedSoundTest, IsSofterWhileTheLocalUserTalksOnceAskedFor) {
  const test::Signal voice = test::vowel(130.0);
  EXPECT_EQ(run(100, voice, 8000), 8000);
  played_.ducking().turn(true);
  EXPECT_EQ(run(50, test::silence(), 8000), 8000);
  EXPECT_EQ(run(60, voice, 8000), 2000);
  // The pauses between words are no reason to change it.
  EXPECT_EQ(run(40, test::silence(), 8000), 2000);
  EXPECT_EQ(run(150, test::silence(), 8000), 8000);
  // A noise is no voice.
  EXPECT_EQ(run(100, test::noise(0.1), 8000), 8000);
  EXPECT_EQ(run(60, voice, 8000), 2000);
  played_.ducking().turn(false);
  EXPECT_EQ(run(60, voice, 8000), 8000);
}

TEST_F(PlayedSoundTest, HasTheMicrophoneInItForTheSpeakerAlone) {
  const test::Signal level = [](int64_t) { return 0.25; };
  ear_monitor_.setVolume(0.5F);
  EXPECT_EQ(run(10, level, 1000), 1000);
  ear_monitor_.turn(true);
  EXPECT_NEAR(run(10, level, 1000), 1000 + 4096, 2);
  EXPECT_EQ(tapped_, 1000);
  ear_monitor_.setVolume(1.0F);
  EXPECT_NEAR(run(10, level, 1000), 1000 + 8192, 2);
  mixer_.setGain(0.0F);
  mixer_.setDeviceGain(0.5F);
  EXPECT_NEAR(run(10, level, 1000), 4096, 2);
  ear_monitor_.turn(false);
  EXPECT_EQ(run(10, level, 1000), 0);
}

}  // namespace
}  // namespace corvane::rtc
