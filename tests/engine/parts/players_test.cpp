#include "players/players.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
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

/// Samples that an application pushes: 20 ms at 16 kHz in one channel.
class PushedFrame final : public IAudioFrame {
 public:
  explicit PushedFrame(int16_t level) : samples_(320, level) {}
  int64_t timestampUs() const override { return 0; }
  int32_t sampleRate() const override { return rate_; }
  int32_t channels() const override { return 1; }
  uint8_t* data() const override { return reinterpret_cast<uint8_t*>(const_cast<int16_t*>(samples_.data())); }
  int32_t dataSize() const override { return static_cast<int32_t>(samples_.size() * sizeof(int16_t)); }
  int32_t frameType() const override { return kAudioFrameTypePCM16; }
  bool isMuted() const override { return false; }
  void release() override {}

  int32_t rate_ = 16000;

 private:
  std::vector<int16_t> samples_;
};

constexpr MediaPlayerConfig kOpened = {kPlayerOutputPlayoutAndPublish, 1, 0, 100, false, false};

TEST_F(PlayersTest, AMediaPlayerOpensPlaysSeeksAndPlaysAgain) {
  MediaPlayer& player = players_.mediaPlayer(5);
  player.setEventHandler(&recorder_);
  for (const int32_t result : {player.start(), player.stop(), player.pause(), player.resume(), player.setPosition(1),
                               player.getPosition(), player.getTotalDuration(), player.getPlaybackDuration(),
                               player.getAudioTrackCount(), player.selectAudioTrack(0)}) {
    EXPECT_EQ(result, kWrongState);
  }
  ASSERT_EQ(player.open(level().c_str(), kOpened), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStateOpened, kPlayerErrorOk));
  EXPECT_EQ(player.getTotalDuration(), 10'000);
  EXPECT_EQ(player.getAudioTrackCount(), 1);
  EXPECT_EQ(player.getPosition(), 0);
  EXPECT_FALSE(speaker_ear_.heard_);
  ASSERT_EQ(player.start(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 1000; }));
  EXPECT_TRUE(sent_ear_.waitFor([](int32_t loudest) { return loudest == 750; }));
  EXPECT_TRUE(sent_ear_.waitFor([this](int32_t) { return recorder_.progress_ >= 100; }));

  // What is heard here and what is sent have volumes of their own.
  EXPECT_EQ(player.setVolume(200, kPlayerOutputPlayout), kSuccess);
  EXPECT_EQ(player.setVolume(10, kPlayerOutputPublish), kSuccess);
  EXPECT_EQ(player.getVolume(kPlayerOutputPlayout), 200);
  EXPECT_EQ(player.getVolume(kPlayerOutputPublish), 10);
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 2000; }));
  EXPECT_TRUE(sent_ear_.waitFor([](int32_t loudest) { return loudest == 75; }));
  EXPECT_EQ(player.setAudioDualMonoMode(kPlayerDualMonoRight), kSuccess);
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest == 1000; }));

  EXPECT_EQ(player.setPosition(10'001), kInvalidParameter);
  ASSERT_EQ(player.pause(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStatePaused, kPlayerErrorOk));
  ASSERT_EQ(player.setPosition(9700), kSuccess);
  EXPECT_EQ(player.getPosition(), 9700);
  ASSERT_EQ(player.resume(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStateFinished, kPlayerErrorOk));
  EXPECT_GE(recorder_.progress_, 9700);
  ASSERT_EQ(player.start(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStatePlaying, kPlayerErrorOk));
  EXPECT_LT(player.getPosition(), 5000);
  ASSERT_EQ(player.stop(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStateStopped, kPlayerErrorOk));
  ASSERT_EQ(player.open(folder_.file("none").c_str(), kOpened), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(5, kPlayerStateFailed, kPlayerErrorInvalidPath));
  EXPECT_EQ(player.start(), kWrongState);

  for (const int32_t result :
       {player.open("", kOpened), player.open("x", {3, 1, 0, 0, false, false}),
        player.open("x", {0, 1, 0, 99, false, false}), player.setVolume(-1, 0), player.setVolume(1, 3),
        player.getVolume(2), player.setAudioPitch(13), player.setPlaybackSpeed(49), player.setLoudness(1.0F),
        player.setLoudness(std::nanf("")), player.setAudioDualMonoMode(4), player.setProgressInterval(99),
        player.setPosition(-1)}) {
    EXPECT_EQ(result, kInvalidParameter);
  }
  player.setEventHandler(nullptr);
}

TEST_F(PlayersTest, AMediaPlayerSelectsTracks) {
  const std::string film = folder_.file("film.mkv");
  const auto track = [](int samples, const char* volume) {
    return "audiotestsrc wave=square freq=100 samplesperbuffer=480 num-buffers=" + std::to_string(samples) +
           " volume=" + volume + " ! audio/x-raw,format=S16LE,rate=48000,channels=2 ! queue ! mux. ";
  };
  ASSERT_TRUE(test::runPipeline("matroskamux name=mux ! filesink location=" + film +
                                " videotestsrc num-buffers=50 ! video/x-raw,width=16,height=16,framerate=10/1 ! mux. " +
                                track(500, "0.1") + track(500, "0.5")));
  MediaPlayer& player = players_.mediaPlayer(6);
  player.setEventHandler(&recorder_);
  MediaPlayerConfig config = kOpened;
  config.auto_play = true;
  ASSERT_EQ(player.open(film.c_str(), config), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(6, kPlayerStateOpened, kPlayerErrorOk));
  EXPECT_EQ(recorder_.next(), Told(6, kPlayerStatePlaying, kPlayerErrorOk));
  ASSERT_EQ(player.getAudioTrackCount(), 2);
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest > 2500 && loudest < 4000; }));
  EXPECT_EQ(player.selectAudioTrack(2), kInvalidParameter);
  ASSERT_EQ(player.selectAudioTrack(1), kSuccess);
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest > 15000; }));
  EXPECT_LT(player.getPosition(), 5000);
  player.setEventHandler(nullptr);
}

TEST_F(PlayersTest, AMediaPlayerPlaysWhatIsPushed) {
  MediaPlayer& player = players_.mediaPlayer(-7);
  player.setEventHandler(&recorder_);
  PushedFrame frame(3000);
  EXPECT_EQ(player.openWithCustomSource({1, 0}, kOpened), kNotSupported);
  EXPECT_EQ(player.pushExternalAudioFrame(&frame), kWrongState);
  ASSERT_EQ(player.openWithCustomSource({0, 0}, kOpened), kSuccess);
  EXPECT_EQ(player.pushExternalAudioFrame(&frame), kWrongState);
  ASSERT_EQ(player.start(), kSuccess);
  int32_t pushed = 0;
  for (int count = 0; count < 100 && pushed == kSuccess; ++count) pushed = player.pushExternalAudioFrame(&frame);
  EXPECT_EQ(pushed, kFailure);  // more than half a second ahead
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest >= 2990; }));
  EXPECT_EQ(player.setPosition(0), kNotSupported);
  frame.rate_ = 7000;
  EXPECT_EQ(player.pushExternalAudioFrame(&frame), kInvalidParameter);
  EXPECT_EQ(player.pushExternalAudioFrame(nullptr), kInvalidParameter);
  player.setEventHandler(nullptr);
}

TEST_F(PlayersTest, MixesFilesById) {
  const AudioMixingConfig endless = {kAudioMixingTypePlayoutAndPublish, -1, 200, 10, false};
  ASSERT_EQ(mixing_.preloadAudioMixing(1, counting(300).c_str()), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kAudioMixingStatePreloaded, kAudioMixingErrorOk));
  EXPECT_EQ(mixing_.getAudioMixingDuration(1), 300);
  mixing_.startAudioMixing(1, level().c_str(), endless);
  EXPECT_EQ(recorder_.next(), Told(1, kAudioMixingStateFailed, kAudioMixingErrorLoadConflict));
  mixing_.startAudioMixing(1, "", endless);
  EXPECT_EQ(recorder_.next(), Told(1, kAudioMixingStatePlaying, kAudioMixingErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([this](int32_t) { return recorder_.progress_ >= 0; }));
  mixing_.startAudioMixing(2, level().c_str(), endless);
  EXPECT_EQ(recorder_.next(), Told(2, kAudioMixingStatePlaying, kAudioMixingErrorOk));
  EXPECT_EQ(mixing_.getAudioMixingDuration(2), 10'000);
  EXPECT_GE(mixing_.getAudioMixingCurrentPosition(2), 200);
  EXPECT_EQ(mixing_.pauseAllAudioMixing(), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kAudioMixingStatePaused, kAudioMixingErrorOk));
  EXPECT_EQ(recorder_.next(), Told(2, kAudioMixingStatePaused, kAudioMixingErrorOk));
  EXPECT_EQ(mixing_.unloadAudioMixing(1), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(1, kAudioMixingStateStopped, kAudioMixingErrorOk));
  // A file that is said to be at -28 LUFS is turned up by 12 dB.
  EXPECT_EQ(mixing_.setAudioMixingLoudness(2, -28.0), kSuccess);
  EXPECT_EQ(mixing_.setAudioMixingVolume(2, 50, kAudioMixingTypePlayout), kSuccess);
  EXPECT_EQ(mixing_.resumeAudioMixing(2), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(2, kAudioMixingStatePlaying, kAudioMixingErrorOk));
  EXPECT_TRUE(speaker_ear_.waitFor([](int32_t loudest) { return loudest > 1985 && loudest < 1995; }));
  EXPECT_TRUE(sent_ear_.waitFor([](int32_t loudest) { return loudest > 2980 && loudest < 2992; }));
  EXPECT_EQ(mixing_.stopAudioMixing(2), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(2, kAudioMixingStateStopped, kAudioMixingErrorOk));

  mixing_.startAudioMixing(3, folder_.file("none").c_str(), endless);
  EXPECT_EQ(recorder_.next(), Told(3, kAudioMixingStateFailed, kAudioMixingErrorStartFailed));
  mixing_.startAudioMixing(3, level().c_str(), {0, 1, 0, 9, false});
  EXPECT_EQ(recorder_.next(), Told(3, kAudioMixingStateFailed, kAudioMixingErrorStartFailed));
  EXPECT_EQ(mixing_.preloadAudioMixing(3, text("x.wav", "x").c_str()), kSuccess);
  EXPECT_EQ(recorder_.next(), Told(3, kAudioMixingStateFailed, kAudioMixingErrorPreloadFailed));
  EXPECT_EQ(mixing_.stopAudioMixing(2), kNotFound);
  EXPECT_EQ(mixing_.setAudioMixingPitch(2, 13), kInvalidParameter);
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
