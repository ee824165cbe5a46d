#include "media/sound_mixer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <thread>
#include <utility>

namespace corvane::rtc {
namespace {

SoundBlock level(int16_t left, int16_t right, int32_t channels = 2) {
  SoundBlock block;
  block.channels = channels;
  for (size_t index = 0; index < block.samples().size(); ++index) {
    block.storage[index] = channels == 2 && index % 2 == 1 ? right : left;
  }
  return block;
}

// The last samples of the next block, those before them being on their way to a volume.
std::pair<int, int> next(SoundMixer& mixer) {
  SoundBlock mixed;
  mixer.mix(mixed, 5);
  EXPECT_EQ(mixed.channels, 2);
  EXPECT_EQ(mixed.time_us, 5);
  return {mixed.storage[958], mixed.storage[959]};
}

using Pair = std::pair<int, int>;

TEST(SoundMixer, AddsUpItsInputsAndCutsAtFullScale) {
  SoundMixer mixer;
  EXPECT_EQ(next(mixer), Pair(0, 0));
  auto stereo = mixer.addInput();
  auto mono = mixer.addInput();
  for (int block = 0; block < 3; ++block) {
    stereo->push(level(1000, -2000));
    mono->push(level(300, 0, 1));
  }
  EXPECT_EQ(next(mixer), Pair(1300, -1700));
  mono->setGain(2.0F);
  EXPECT_EQ(next(mixer), Pair(1600, -1400));
  mono.reset();
  EXPECT_EQ(next(mixer), Pair(1000, -2000));

  const auto loud = mixer.addInput();
  for (int block = 0; block < 2; ++block) {
    stereo->push(level(30000, -30000));
    loud->push(level(30000, -30000));
  }
  EXPECT_EQ(next(mixer), Pair(32767, -32768));
}

TEST(SoundMixer, TapsHearTheApplicationsVolumeAndTheSpeakerItsOwnToo) {
  struct Tap final : SoundTap {
    void onSound(const SoundBlock& block) override { heard = block.storage[958]; }
    int heard = 0;
  } tap;
  SoundMixer mixer;
  mixer.taps().add(tap);
  mixer.setGain(0.5F);
  mixer.setDeviceGain(0.1F);
  const auto remote = mixer.addInput(SoundMixer::Origin::kRemote);
  const auto here = mixer.addInput();
  for (int block = 0; block < 2; ++block) {
    remote->push(level(10000, 10000));
    here->push(level(600, 600));
  }
  SoundBlock mixed;
  mixer.mix(mixed, 5, [](SoundBlock& all_remote) {
    EXPECT_EQ(all_remote.storage[958], 5000);
    all_remote.storage[958] = 4400;
  });
  EXPECT_EQ(mixed.storage[958], 500);
  EXPECT_EQ(tap.heard, 5000);
  mixer.taps().remove(tap);
  EXPECT_EQ(next(mixer), Pair(560, 560));
  EXPECT_EQ(tap.heard, 5000);
}

TEST(SoundMixer, KeepsTheNewestOfASourceThatIsAheadAndWaitsForOneThatIsBehind) {
  SoundMixer mixer;
  const auto input = mixer.addInput();
  for (int16_t block = 0; block < 20; ++block) input->push(level(block, 0));
  for (int expected = 12; expected < 20; ++expected) EXPECT_EQ(next(mixer).first, expected);
  EXPECT_EQ(next(mixer).first, 0);
  // It has run dry, and goes on when two blocks are there.
  input->push(level(50, 0));
  EXPECT_EQ(next(mixer).first, 0);
  input->push(level(51, 0));
  EXPECT_EQ(next(mixer).first, 50);
  EXPECT_EQ(next(mixer).first, 51);
}

TEST(SoundMixer, ShortensRemoteSoundThatWaitsForNothing) {
  const auto waiting = [](SoundMixer::Origin origin) {
    SoundMixer mixer;
    const auto input = mixer.addInput(origin);
    const auto sawtooth = [](int16_t block) {
      SoundBlock rising = level(0, 0, 1);
      for (int16_t frame = 0; frame < 480; ++frame)
        rising.storage[static_cast<size_t>(frame)] = static_cast<int16_t>(block + frame / 48);
      return rising;
    };
    for (int16_t block = 0; block < 6; ++block) input->push(sawtooth(static_cast<int16_t>(10 * block)));
    SoundBlock mixed;
    int32_t last = -1;
    int32_t largest_step = 0;
    for (int16_t block = 6; block < 2000; ++block) {
      input->push(sawtooth(static_cast<int16_t>(10 * block)));
      mixer.mix(mixed, 0);
      for (const int16_t sample : mixed.storage) {
        largest_step = std::max(largest_step, std::abs(sample - std::exchange(last, sample)));
      }
    }
    EXPECT_LE(largest_step, 2);  // a cut would be one of ten
    return (10 * 1999 + 9 - last) / 10;
  };
  EXPECT_EQ(waiting(SoundMixer::Origin::kRemote), 1);
  EXPECT_EQ(waiting(SoundMixer::Origin::kHere), 6);
}

TEST(SoundMixer, LetsSourcesComeAndGoWhileItMixes) {
  SoundMixer mixer;
  std::atomic<bool> done = false;
  std::thread sources([&] {
    for (int round = 0; round < 2000; ++round) {
      const auto input = mixer.addInput();
      for (int block = 0; block < 3; ++block) input->push(level(100, 100, 1));
    }
    done = true;
  });
  while (!done) EXPECT_GE(next(mixer).first, 0);
  sources.join();
  EXPECT_EQ(next(mixer), Pair(0, 0));
}

}  // namespace
}  // namespace corvane::rtc
