#include "playback/remote_sounds.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <string>
#include <vector>

namespace corvane::rtc {
namespace {

SoundBlock blockOf(int16_t level, int32_t channels) {
  SoundBlock block;
  block.channels = channels;
  std::fill(block.storage.begin(), block.storage.end(), level);
  return block;
}

class Application final : public IAudioFrameObserver, public IAudioFrameProcessor {
 public:
  void onRemoteUserAudioFrame(const StreamKey& key, const IAudioFrame* frame) override {
    seen.push_back(std::string(key.room_id) + "/" + key.user_id + " " + std::to_string(frame->channels()) + " " +
                   std::to_string(reinterpret_cast<const int16_t*>(frame->data())[0]));
  }
  int32_t onProcessRemoteUserAudioFrame(const StreamKey&, IAudioFrame* frame) override {
    auto* samples = reinterpret_cast<int16_t*>(frame->data());
    std::for_each(samples, samples + frame->dataSize() / 2, [](int16_t& sample) { sample /= 2; });
    return 0;
  }

  void onRecordAudioFrame(const IAudioFrame*) override {}
  void onPlaybackAudioFrame(const IAudioFrame*) override {}
  void onMixedAudioFrame(const IAudioFrame*) override {}
  void onRecordScreenAudioFrame(const IAudioFrame*) override {}
  int32_t onProcessRecordAudioFrame(IAudioFrame*) override { return 0; }
  int32_t onProcessPlayBackAudioFrame(IAudioFrame*) override { return 0; }
  int32_t onProcessScreenAudioFrame(IAudioFrame*) override { return 0; }

  std::vector<std::string> seen;
};

TEST(RemoteSounds, ProcessMeasurePlaceAndShowEachUserAlone) {
  SoundMixer mixer;
  SoundHooks hooks;
  RemoteSounds sounds(mixer, hooks);
  Application application;
  hooks.observer.attach(&application);
  hooks.processor.attach(&application);
  sounds.measure(SoundMeterSettings{});
  auto ann = sounds.add("r", "ann", 0);
  const auto bob = sounds.add("r", "bob", 0);
  ASSERT_EQ(sounds.enableProcessor({}), kSuccess);
  ASSERT_EQ(sounds.enableObserver({}), kSuccess);
  EXPECT_EQ(sounds.enableObserver({48000, 3, 0}), kInvalidParameter);
  ann->setVolume(0.5F);
  ann->setPlace({0.5F, 1.0F});
  SoundBlock mixed;
  for (int block = 0; block < 3; ++block) {
    ann->push(blockOf(8000, 1));
    if (block != 1) bob->push(blockOf(400, block == 0 ? 1 : 2));  // whose channels change
  }
  mixer.mix(mixed, 0);
  EXPECT_EQ(mixed.storage[0], 1000 + 200);
  EXPECT_EQ(mixed.storage[1], 2000 + 200);
  // Frames have as many channels as the stream has just then.
  const std::vector<std::string> seen = {"r/ann 1 4000", "r/bob 1 200", "r/ann 1 4000", "r/ann 1 4000", "r/bob 2 200"};
  EXPECT_EQ(application.seen, seen);
  // A constant has the power of a sine that is 3 dB higher.
  const auto heard = ann->takeProperties();
  ASSERT_TRUE(heard);
  EXPECT_NEAR(heard->nonlinear_volume, -15, 1);
  EXPECT_FALSE(ann->takeProperties());

  // One who jumps gets there step by step.
  ann->setPlace({0.0F, 0.0F});
  int32_t largest_step = 0;
  int16_t last = 1000;
  for (int block = 0; block < 12; ++block) {
    ann->push(blockOf(8000, 1));
    mixer.mix(mixed, 0);
    for (size_t sample = 0; sample < mixed.storage.size(); sample += 2) {
      if (block >= 2) largest_step = std::max(largest_step, std::abs(mixed.storage[sample] - last));
      last = mixed.storage[sample];
    }
  }
  EXPECT_LE(largest_step, 2);
  EXPECT_LT(last, 300);
  ann.reset();
  size_t left = 0;
  sounds.forEach([&](RemoteSound& sound) { left += std::string(sound.key().user_id) == "bob" ? 1 : 10; });
  EXPECT_EQ(left, 1U);
}

TEST(RemoteSounds, HearsTheLoudestAndThoseWhoArePreferred) {
  SoundMixer mixer;
  SoundHooks hooks;
  RemoteSounds sounds(mixer, hooks);
  sounds.setPlaces(2);
  struct User {
    std::shared_ptr<RemoteSound> sound;
    int16_t level;
  };
  User users[] = {{sounds.add("r", "ann", 0), 1000},
                  {sounds.add("r", "bob", 0), 200},
                  {sounds.add("r", "cy", 0), 30},
                  {sounds.add("r", "dan", 0), 4}};
  const auto screen = sounds.add("r", "dan", 1);
  int64_t now = 0;
  const auto heard = [&] {
    SoundBlock mixed;
    for (int block = 0; block < 120; ++block) {
      now += 10'000;
      for (User& user : users) {
        SoundBlock sent = blockOf(user.level, 1);
        sent.time_us = now;
        if (user.level != 0) user.sound->push(sent);
      }
      screen->push(blockOf(1, 1));
      mixer.mix(mixed, 0);
    }
    return mixed.storage[0];
  };
  EXPECT_EQ(heard(), 1000 + 200 + 1);
  users[3].sound->setPreferred(true);
  EXPECT_EQ(heard(), 1000 + 4 + 1);
  users[3].sound->setPreferred(false);
  users[1].level = 40;  // not by much louder than another
  EXPECT_EQ(heard(), 1000 + 40 + 1);
  users[2].level = 50;
  EXPECT_EQ(heard(), 1000 + 40 + 1);
  users[2].level = 80;
  EXPECT_EQ(heard(), 1000 + 80 + 1);
  users[0].level = 0;  // sends nothing any more
  EXPECT_EQ(heard(), 80 + 40 + 1);
  sounds.setPlaces(100);
  EXPECT_EQ(heard(), 80 + 40 + 4 + 1);
}

// Nothing is measured or mixed here, which would clear up, too.
TEST(RemoteSounds, ThatEndAddUpToNothing) {
  SoundMixer mixer;
  SoundHooks hooks;
  RemoteSounds sounds(mixer, hooks);
  const size_t before = mallinfo2().uordblks;
  for (int user = 0; user < 100; ++user) sounds.add("r", "ann", 0);
  EXPECT_LT(mallinfo2().uordblks, before + 10 * sizeof(RemoteSound));
}

}  // namespace
}  // namespace corvane::rtc
