// Microphones as an application steers them: starting, stopping, choosing, volumes, muting, and what is reported.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <thread>

#include "support/engine_test.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

using SoundCaptureTest = EngineTest;

size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

bool isSilent(const std::vector<rtc::LocalAudioPropertiesInfo>& infos) {
  return infos.size() == 1 && infos[0].audio_properties_info.linear_volume == 0 &&
         infos[0].audio_properties_info.nonlinear_volume == -127;
}

TEST_F(SoundCaptureTest, ReportsStartFirstSoundAndStopInOrder) {
  engine->stopAudioCapture();
  listen("test:sine?frequency=500");
  engine->startAudioCapture();
  ASSERT_TRUE(events.waitFor("first sound 0"));
  engine->stopAudioCapture();
  engine->stopAudioCapture();
  ASSERT_TRUE(events.waitFor("sound 0 0"));
  const std::vector<std::string> expected = {
      "microphone test:sine?frequency=500 1 0", "sound 1 0", "first sound 0",
      "microphone test:sine?frequency=500 2 0", "sound 0 0",
  };
  EXPECT_EQ(events.all(), expected);
}

struct Loudness {
  const char* microphone;
  int32_t volume;  // percent
  uint32_t device_volume;
  bool device_muted;
  int32_t decibels;
};

class LoudnessTest : public EngineTest, public testing::WithParamInterface<Loudness> {};

TEST_P(LoudnessTest, IsWhatTheAmplitudeAndTheVolumesComeTo) {
  rtc::IAudioDeviceManager* devices = engine->getAudioDeviceManager();
  ASSERT_EQ(engine->setCaptureVolume(rtc::kStreamIndexMain, GetParam().volume), rtc::kSuccess);
  ASSERT_EQ(devices->setAudioCaptureDeviceVolume(GetParam().device_volume), rtc::kSuccess);
  ASSERT_EQ(devices->setAudioCaptureDeviceMute(GetParam().device_muted), rtc::kSuccess);
  listen(GetParam().microphone);
  ASSERT_TRUE(events.waitFor("first sound 0"));
  report();
  // Each report whatever its place is right, as the volumes were there before the first sound.
  std::vector<int32_t> found;
  ASSERT_TRUE(events.waitForReport([&](const auto& infos) {
    if (infos.size() == 1) found.push_back(infos[0].audio_properties_info.nonlinear_volume);
    return found.size() == 4;
  }));
  for (const int32_t decibels : found) EXPECT_NEAR(decibels, GetParam().decibels, 1);
  EXPECT_GE(events.remoteReports(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Volumes, LoudnessTest,
                         testing::Values(Loudness{"test:sine?level=0", 100, 255, false, 0},
                                         Loudness{"test:sine?level=-20", 100, 255, false, -20},
                                         Loudness{"test:sine?level=-20", 200, 255, false, -14},
                                         Loudness{"test:sine?level=-20", 400, 255, false, -8},
                                         Loudness{"test:sine?level=-60&frequency=3000", 100, 255, false, -60},
                                         Loudness{"test:sine?level=-20", 0, 255, false, -127},
                                         Loudness{"test:sine?level=-20", 100, 128, false, -26},
                                         Loudness{"test:sine?level=-20", 100, 255, true, -127},
                                         // A square wave has 3 dB more in it than a sine of its amplitude.
                                         Loudness{"test:square?level=-20", 50, 255, false, -23},
                                         // Beyond full scale it is cut, not wrapped round.
                                         Loudness{"test:sine?level=0", 400, 255, false, 0},
                                         Loudness{"test:silence", 400, 255, false, -127}));

TEST_F(SoundCaptureTest, TurnsVolumesWhileItRuns) {
  listen("test:sine?level=-40");
  report();
  ASSERT_TRUE(events.waitForLevel(-40));
  ASSERT_EQ(engine->setCaptureVolume(rtc::kStreamIndexMain, 400), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-28));
  ASSERT_EQ(engine->getAudioDeviceManager()->setAudioCaptureDeviceVolume(64), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-40));
  EXPECT_TRUE(events.waitFor("volume 1 64 0"));
  ASSERT_EQ(engine->getAudioDeviceManager()->setAudioCaptureDeviceMute(true), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-127));
  EXPECT_TRUE(events.waitFor("volume 1 64 1"));
}

TEST_F(SoundCaptureTest, SendsSilenceWhileMuted) {
  SoundRecorder recorder;
  const EndOfEngine end;
  ASSERT_EQ(engine->registerAudioFrameObserver(&recorder), rtc::kSuccess);
  ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {}), rtc::kSuccess);
  listen("test:sine");
  report();
  ASSERT_TRUE(events.waitForLevel(-20));
  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexMain, true), rtc::kSuccess);
  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexMain, true), rtc::kSuccess);
  // It is left out of the report, unless silence is to be reported, too.
  ASSERT_TRUE(events.waitForReport([](const auto& infos) { return infos.empty(); }));
  report(rtc::kAudioReportModeReset);
  ASSERT_TRUE(events.waitForReport(isSilent));
  ASSERT_TRUE(recorder.waitFor([](const auto& frames) { return frames.back().muted; }));
  for (const SeenSound& frame : recorder.frames()) EXPECT_EQ(frame.muted, frame.loudest() == 0);

  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexMain, false), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-20));
  EXPECT_TRUE(recorder.waitFor([](const auto& frames) { return !frames.back().muted; }));
  engine->stopAudioCapture();
  ASSERT_TRUE(events.waitForReport(isSilent));
  ASSERT_TRUE(events.waitFor("sound 0 0"));
  const std::vector<std::string> all = events.all();
  EXPECT_EQ(std::count(all.begin(), all.end(), "sound 4 0"), 1);
  EXPECT_EQ(std::count(all.begin(), all.end(), "sound 5 0"), 1);
}

TEST_F(SoundCaptureTest, ChangesMicrophonesWhileCapturing) {
  SoundRecorder recorder;
  const EndOfEngine end;
  engine->registerAudioFrameObserver(&recorder);
  engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {});
  listen("test:sine?level=-40");
  report();
  ASSERT_TRUE(events.waitForLevel(-40));
  listen("test:sine?level=-10");
  ASSERT_TRUE(events.waitForLevel(-10));
  EXPECT_TRUE(events.waitFor("microphone test:sine?level=-40 2 0"));
  EXPECT_TRUE(events.waitFor("microphone test:sine?level=-10 1 0"));
  const std::vector<std::string> all = events.all();
  EXPECT_EQ(std::count(all.begin(), all.end(), "first sound 0"), 1);
  const std::vector<SeenSound> frames = recorder.frames();
  EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end(),
                             [](const SeenSound& a, const SeenSound& b) { return a.timestamp_us < b.timestamp_us; }));
}

TEST_F(SoundCaptureTest, SuppressesNoiseOnceAskedTo) {
  listen("test:white-noise?level=-20");
  report();
  const auto level = [](const auto& infos) { return infos.at(0).audio_properties_info.nonlinear_volume; };
  int32_t before = 0;
  ASSERT_TRUE(events.waitForReport([&](const auto& infos) { return !infos.empty() && (before = level(infos)) > -30; }));
  ASSERT_EQ(engine->setAnsMode(rtc::kAnsModeHigh), rtc::kSuccess);
  ASSERT_TRUE(events.waitForReport([&](const auto& infos) { return !infos.empty() && level(infos) < before - 12; }));
  ASSERT_EQ(engine->enableExternalSoundCard(true), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(before));
}

TEST_F(SoundCaptureTest, WarnsOfAMicrophoneThatDeliversSilenceOnly) {
  listen("test:silence");
  EXPECT_TRUE(events.waitFor("warning test:silence 1 2"));
}

TEST_F(SoundCaptureTest, StartsThirtyTimesWithoutKeepingAnything) {
  ASSERT_EQ(engine->getAudioDeviceManager()->setAudioCaptureDevice("test:sine"), rtc::kSuccess);
  // The least of ten rounds each: GStreamer's threads may still be on their way out when capture has ended, and its
  // pools keep one or two. What every round kept would be twenty in the end.
  constexpr size_t kPooled = 2;
  struct Held {
    size_t descriptors = SIZE_MAX;
    size_t threads = SIZE_MAX;
  };
  Held held[3];
  for (size_t round = 0; round < 30; ++round) {
    ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
    ASSERT_TRUE(events.waitFor("first sound 0")) << "in round " << round;
    ASSERT_EQ(engine->stopAudioCapture(), rtc::kSuccess);
    ASSERT_TRUE(events.waitFor("sound 0 0")) << "in round " << round;
    Held& least = held[round / 10];
    least.descriptors = std::min(least.descriptors, entriesOf("/proc/self/fd"));
    least.threads = std::min(least.threads, entriesOf("/proc/self/task"));
  }
  EXPECT_LE(held[2].descriptors, held[0].descriptors + kPooled);
  EXPECT_LE(held[2].threads, held[0].threads + kPooled);
}

TEST_F(SoundCaptureTest, RefusesWhatNoMicrophoneCanDo) {
  for (const int32_t volume : {-1, 401}) {
    EXPECT_EQ(engine->setCaptureVolume(rtc::kStreamIndexMain, volume), rtc::kInvalidParameter) << volume;
    EXPECT_EQ(engine->setPlaybackVolume(volume), rtc::kInvalidParameter) << volume;
  }
  EXPECT_EQ(engine->setCaptureVolume(2, 100), rtc::kInvalidParameter);
  EXPECT_EQ(engine->muteAudioCapture(-1, true), rtc::kInvalidParameter);
  for (const int32_t mode : {-1, 5}) EXPECT_EQ(engine->setAnsMode(mode), rtc::kInvalidParameter) << mode;
  for (const int32_t profile : {-1, 6}) EXPECT_EQ(engine->setAudioProfile(profile), rtc::kInvalidParameter) << profile;
  for (const int32_t mode : {-1, 2}) EXPECT_EQ(engine->setEarMonitorMode(mode), rtc::kInvalidParameter) << mode;
  for (const int32_t volume : {-1, 101}) EXPECT_EQ(engine->setEarMonitorVolume(volume), rtc::kInvalidParameter);

  const rtc::AudioPropertiesConfig good = {100, false, false, 0, 1.0, 0, false};
  const auto refused = [&](auto change) {
    rtc::AudioPropertiesConfig config = good;
    change(config);
    return engine->enableAudioPropertiesReport(config) == rtc::kInvalidParameter;
  };
  EXPECT_TRUE(refused([](auto& c) { c.interval = 99; }));
  EXPECT_TRUE(refused([](auto& c) { c.smooth = 0.0; }));
  EXPECT_TRUE(refused([](auto& c) { c.smooth = 1.01; }));
  EXPECT_TRUE(refused([](auto& c) { c.smooth = std::numeric_limits<double>::quiet_NaN(); }));
  EXPECT_TRUE(refused([](auto& c) { c.audio_report_mode = 3; }));
  EXPECT_TRUE(refused([](auto& c) { c.local_main_report_mode = -1; }));
  EXPECT_EQ(engine->enableAudioPropertiesReport({}), rtc::kSuccess);  // off already
}

TEST_F(SoundCaptureTest, StopsReportingWhenAsked) {
  report(rtc::kAudioReportModeReset);
  ASSERT_TRUE(events.waitForReport(isSilent));
  ASSERT_EQ(engine->enableAudioPropertiesReport({}), rtc::kSuccess);
  // What the engine thread does next is done when another event has come.
  engine->muteAudioCapture(rtc::kStreamIndexMain, true);
  ASSERT_TRUE(events.waitFor("sound 4 0"));
  const size_t reports = events.remoteReports();
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  EXPECT_EQ(events.remoteReports(), reports);
}

TEST_F(SoundCaptureTest, EndsWithoutBeingStopped) {
  SoundRecorder recorder;
  const EndOfEngine end;
  engine->registerAudioFrameObserver(&recorder);
  engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {});
  for (int round = 0; round < 10; ++round) {
    listen("test:sine");
    report();
    ASSERT_TRUE(round > 0 || recorder.waitForFrames(5));
    rtc::destroyRTCVideo();
    const size_t frames = recorder.frames().size();
    const size_t told = events.count() + events.remoteReports();
    std::this_thread::sleep_for(std::chrono::milliseconds(round == 0 ? 150 : 1));
    EXPECT_EQ(recorder.frames().size(), frames);
    EXPECT_EQ(events.count() + events.remoteReports(), told);
    create("");
  }
}

}  // namespace
}  // namespace corvane::test
