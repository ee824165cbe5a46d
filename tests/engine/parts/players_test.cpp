#include "players/players.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <thread>
#include <tuple>
#include <vector>

#include "core/gstreamer.h"
#include "corvane_rtc/audio_mixing_events.h"
#include "corvane_rtc/entry_points.h"
#include "support/clips.h"
#include "support/waves.h"

namespace corvane::rtc {
namespace {

using namespace std::chrono_literals;
using test::TemporaryFolder;
using test::writeCountingWave;
using test::writeWave;

using Told = std::tuple<int32_t, int32_t, int32_t>;  // id, state, error

/// What handlers are told, for tests to wait for.
class Recorder final : public IRTCVideoEventHandler,
                       public IAudioEffectPlayerEventHandler,
                       public IMediaPlayerEventHandler {
 public:
  void onAudioEffectPlayerStateChanged(int32_t id, int32_t state, int32_t error) override { tell(id, state, error); }
  void onMediaPlayerStateChanged(int32_t id, int32_t state, int32_t error) override { tell(id, state, error); }
  void onAudioMixingStateChanged(int32_t id, int32_t state, int32_t error) override { tell(id, state, error); }
  void onMediaPlayerPlayingProgress(int32_t, int64_t progress) override { progress_ = progress; }
  void onAudioMixingPlayingProgress(int32_t, int32_t progress) override { progress_ = progress; }

  /// The next that was told.
  Told next() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, 30s, [this] { return !told_.empty(); })) return {-1, -1, -1};
    const Told first = told_.front();
    told_.erase(told_.begin());
    return first;
  }

  std::atomic<int64_t> progress_ = -1;

 private:
  void tell(int32_t id, int32_t state, int32_t error) {
    const std::lock_guard lock(mutex_);
    told_.emplace_back(id, state, error);
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Told> told_;
};

/// The loudest that was heard of late.
class Ear final : public SoundTap {
 public:
  void onSound(const SoundBlock& block) override {
    int32_t loudest = 0;
    for (const int16_t sample : block.samples()) loudest = std::max<int32_t>(loudest, sample);
    loudest_ = loudest;
    if (loudest > 0) heard_ = true;
  }
  template <class F>
  bool waitFor(F&& condition) const {
    for (int round = 0; round < 6000; ++round, std::this_thread::sleep_for(5ms)) {
      if (condition(loudest_.load())) return true;
    }
    return false;
  }

  std::atomic<int32_t> loudest_ = 0;
  std::atomic<bool> heard_ = false;
};

class PlayersTest : public testing::Test {
 protected:
  PlayersTest() {
    std::string problem;
    EXPECT_TRUE(startGStreamer(problem)) << problem;
    effects_.setEventHandler(&recorder_);
    playback_.taps().add(speaker_ear_);
    sent_.taps().add(sent_ear_);
    speaker_ = std::jthread([this](const std::stop_token& stop) {
      SoundBlock block;
      for (int64_t time_us = 0; !stop.stop_requested(); time_us += 10'000, std::this_thread::sleep_for(10ms)) {
        playback_.mix(block, time_us);
      }
    });
  }

  ~PlayersTest() override {
    effects_.setEventHandler(nullptr);
    context_.thread.finish([this] { players_.shutDown(); });
    sent_.taps().remove(sent_ear_);
  }

  std::string counting(int64_t ms) {
    std::string path = folder_.file(std::to_string(ms) + ".wav");
    if (!std::filesystem::exists(path)) writeCountingWave(path, ms);
    return path;
  }

  /// Ten seconds at the level 1000 on the left, 500 on the right.
  std::string level() {
    std::string path = folder_.file("level.wav");
    writeWave(path, framesOf(10'000), [](int64_t, int channel) { return channel == 0 ? 1000 : 500; });
    return path;
  }

  std::string text(const char* name, const std::string& content) {
    std::string path = folder_.file(name);
    std::ofstream(path) << content;
    return path;
  }

  TemporaryFolder folder_;
  Recorder recorder_;
  EngineContext context_{.log = EngineLog({}), .events = &recorder_, .thread = {}};
  SoundMixer playback_;
  SoundTaps microphone_;
  SentSound sent_{microphone_};
  Players players_{context_, playback_, sent_};
  EffectPlayer& effects_ = players_.effects();
  AudioMixing& mixing_ = players_.mixing();
  Ear speaker_ear_;
  Ear sent_ear_;
  std::jthread speaker_;
};

constexpr AudioEffectPlayerConfig kOnce = {kPlayerOutputPlayoutAndPublish, 1, 0, 0};

TEST_F(PlayersTest, EffectsPlayFromMemoryAndFromFiles) {
  ASSERT_EQ(effects_.preload(1, counting(100).c_str()), kSuccess);
  // It may be started before it is there.
  ASSERT_EQ(effects_.start(1, "", kOnce), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kPlayerStatePreloaded, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(1, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(1, kPlayerStateFinished, kPlayerErrorOk));
  EXPECT_TRUE(speaker_ear_.heard_);
  EXPECT_EQ(effects_.getDuration(1), 100);
  EXPECT_EQ(effects_.unload(1), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kPlayerStateIdle, kPlayerErrorOk));
  EXPECT_EQ(effects_.getDuration(1), kNotFound);

  // From a file, three times, and the last of it is heard.
  ASSERT_EQ(effects_.start(2, counting(150).c_str(), {kPlayerOutputPublish, 3, 0, 140}), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_EQ(effects_.getDuration(2), 150);
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStateFinished, kPlayerErrorOk));
  EXPECT_EQ(effects_.getPosition(2), kNotFound);
}

TEST_F(PlayersTest, EffectsAreControlledOneByOneAndTogether) {
  const std::string path = level();
  const AudioEffectPlayerConfig here = {kPlayerOutputPlayout, -1, 0, 0};
  ASSERT_EQ(effects_.start(1, path.c_str(), here), kSuccess);
  ASSERT_EQ(effects_.start(2, path.c_str(), here), kSuccess);
  recorder_.next();
  recorder_.next();
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 2000; }));
  EXPECT_FALSE(sent_ear_.heard_);
  EXPECT_EQ(effects_.setVolume(1, 50), kSuccess);
  EXPECT_EQ(effects_.getVolume(1), 50);
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 1500; }));
  EXPECT_EQ(effects_.pause(2), kSuccess);
  EXPECT_EQ(effects_.pause(2), kWrongState);
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStatePaused, kPlayerErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 500; }));
  EXPECT_EQ(effects_.setVolumeAll(100), kSuccess);
  EXPECT_EQ(effects_.resumeAll(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 2000; }));

  EXPECT_EQ(effects_.setPosition(1, 9000), kSuccess);
  EXPECT_GE(effects_.getPosition(1), 9000);
  EXPECT_EQ(effects_.setPosition(1, 10'001), kInvalidParameter);
  EXPECT_EQ(effects_.setPosition(1, -1), kInvalidParameter);

  // Started while it plays: anew, and heard in calls as well.
  ASSERT_EQ(effects_.start(2, path.c_str(), kOnce), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_TRUE(sent_ear_.waitFor([](int32_t loudest) { return loudest == 750; }));
  EXPECT_EQ(effects_.stopAll(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kPlayerStateStopped, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(2, kPlayerStateStopped, kPlayerErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 0; }));
  EXPECT_EQ(effects_.stop(1), kNotFound);
}

TEST_F(PlayersTest, TellsWhyItCannotPlay) {
  struct Case {
    std::string path;
    int32_t start_pos, error;
  };
  const Case cases[] = {
      {folder_.file("none.wav"), 0, kPlayerErrorInvalidPath},
      {folder_.path(), 0, kPlayerErrorInvalidPath},
      {text("empty.wav", ""), 0, kPlayerErrorFormatNotSupported},
      {text("text.wav", std::string(5000, 'x')), 0, kPlayerErrorFormatNotSupported},
      {text("page.html", "<html><body>not a sound</body></html>"), 0, kPlayerErrorFormatNotSupported},
      {counting(100), 101, kPlayerErrorInvalidPosition},
  };
  for (const Case& one : cases) {
    ASSERT_EQ(effects_.start(7, one.path.c_str(), {kPlayerOutputPlayout, 1, 0, one.start_pos}), kSuccess);
    EXPECT_EQ(recorder_.next(), Told(7, kPlayerStateFailed, one.error)) << one.path;
    if (one.start_pos > 0) continue;
    ASSERT_EQ(effects_.preload(7, one.path.c_str()), kSuccess);
    EXPECT_EQ(recorder_.next(), Told(7, kPlayerStateFailed, one.error)) << one.path;
    EXPECT_EQ(effects_.start(7, "", kOnce), kNotFound);
    EXPECT_EQ(recorder_.next(), Told(7, kPlayerStateFailed, kPlayerErrorNotPreloaded));
  }
  // A header and nothing behind it, and a file that ends before it says.
  writeCountingWave(folder_.file("header.wav"), 0);
  ASSERT_EQ(effects_.start(8, folder_.file("header.wav").c_str(), kOnce), kSuccess);
  Told told = recorder_.next();
  if (std::get<1>(told) == kPlayerStatePlaying) told = recorder_.next();
  EXPECT_EQ(std::get<1>(told), kPlayerStateFailed);
  std::filesystem::copy_file(counting(150), folder_.file("cut.wav"));
  std::filesystem::resize_file(folder_.file("cut.wav"), 10'001);
  ASSERT_EQ(effects_.start(9, folder_.file("cut.wav").c_str(), kOnce), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(9, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(9, kPlayerStateFinished, kPlayerErrorOk));
  // Longer than what is kept in memory.
  writeCountingWave(folder_.file("long.wav"), Preload::kMaxMs + 1);
  ASSERT_EQ(effects_.preload(10, folder_.file("long.wav").c_str()), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(10, kPlayerStateFailed, kPlayerErrorFormatNotSupported));

  EXPECT_EQ(effects_.start(1, "x", {3, 1, 0, 0}), kInvalidParameter);
  EXPECT_EQ(effects_.start(1, "x", {0, 1, 13, 0}), kInvalidParameter);
  EXPECT_EQ(effects_.start(1, "x", {0, 1, 0, -1}), kInvalidParameter);
  EXPECT_EQ(effects_.preload(1, nullptr), kInvalidParameter);
  EXPECT_EQ(effects_.setVolumeAll(401), kInvalidParameter);
  for (const int32_t result :
       {effects_.stop(1), effects_.pause(1), effects_.resume(1), effects_.unload(1), effects_.setPosition(1, 0),
        effects_.getPosition(1), effects_.setVolume(1, 1), effects_.getVolume(1), effects_.getDuration(1)}) {
    EXPECT_EQ(result, kNotFound);
  }
}

TEST_F(PlayersTest, EndsWhileItPlays) {
  const std::string path = level();
  for (int32_t id = 0; id < 6; ++id) {
    effects_.start(id, path.c_str(), kOnce);
    effects_.preload(100 + id, counting(100).c_str());
    mixing_.startAudioMixing(id, path.c_str(), {kAudioMixingTypePlayout, -1, 100, 10, false});
    players_.mediaPlayer(id).open(path.c_str(), {kPlayerOutputPlayout, 1, 0, 100, false, true});
    effects_.stop(id - 1);
    players_.mediaPlayer(id).setPosition(100);
  }
}

}  // namespace
}  // namespace corvane::rtc
