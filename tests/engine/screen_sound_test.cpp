// The screen's sound: where it comes from and where it goes.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "support/engine_test.h"
#include "support/media_reader.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

constexpr double kTone = -20;

class ScreenSoundTest : public EngineTest {
 protected:
  void SetUp() override {}

  /// A clip that is to be heard on the left alone.
  void start() {
    const std::string clip = folder.file("clip.wav");
    ASSERT_TRUE(
        runPipeline("audiotestsrc freq=500 volume=0.1 num-buffers=100 ! audiopanorama panorama=-1 method=simple ! "
                    "audio/x-raw,format=S16LE,channels=2,rate=48000 ! wavenc ! filesink location=" +
                    clip));
    create(("{\"screen_sound\": \"file:" + clip + "\"}").c_str());
    ASSERT_EQ(engine->registerAudioFrameObserver(&recorder), rtc::kSuccess);
    ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecordScreen, {}), rtc::kSuccess);
    ASSERT_EQ(engine->startScreenAudioCapture(), rtc::kSuccess);
    ASSERT_TRUE(events.waitFor("first sound 1"));
  }

  bool hears(int32_t loudest) {
    recorder.forget();
    return recorder.waitFor([&](const auto& frames) {
      return !frames.empty() && std::abs(frames.back().loudest() - loudest) <= 40 + loudest / 50;
    });
  }

  /// Almost a second of a stream's sound.
  ReadMedia record(int32_t stream_index) {
    const std::filesystem::path into = folder.path() / std::to_string(++recordings_);
    std::filesystem::create_directory(into);
    EXPECT_EQ(engine->startFileRecording(stream_index, {into.c_str(), rtc::kRecordingFileTypeMP4},
                                         rtc::kRecordingTypeAudioOnly),
              rtc::kSuccess);
    recorder.forget();
    recorder.waitForFrames(80);
    EXPECT_EQ(engine->stopFileRecording(stream_index), rtc::kSuccess);
    const auto is_whole = [&] {
      const std::filesystem::directory_iterator files(into);
      return files != std::filesystem::directory_iterator() && readMedia(files->path(), false, true).soundMs() > 400;
    };
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!is_whole() && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    EXPECT_TRUE(is_whole());
    return readMedia(std::filesystem::directory_iterator(into)->path(), false, true);
  }

  SoundRecorder recorder{nullptr, rtc::kAudioFrameMethodRecordScreen};

 private:
  int32_t recordings_ = 0;
};

TEST_F(ScreenSoundTest, ComesInTwoChannelsWithItsVolume) {
  start();
  constexpr int32_t kLoudest = 3277;
  EXPECT_TRUE(hears(kLoudest));
  const SeenSound frame = recorder.frames().back();
  EXPECT_EQ(frame.channels, 2);
  EXPECT_EQ(frame.sample_rate, 48000);
  for (size_t right = 1; right < frame.samples.size(); right += 2) EXPECT_EQ(frame.samples[right], 0);

  ASSERT_EQ(engine->setCaptureVolume(rtc::kStreamIndexScreen, 200), rtc::kSuccess);
  EXPECT_TRUE(hears(2 * kLoudest));
  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexScreen, true), rtc::kSuccess);
  ASSERT_TRUE(recorder.waitFor([](const auto& frames) { return frames.back().muted; }));
  EXPECT_TRUE(hears(0));
  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexScreen, false), rtc::kSuccess);
  EXPECT_TRUE(hears(2 * kLoudest));

  engine->stopScreenAudioCapture();
  ASSERT_EQ(engine->startScreenAudioCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("first sound 1"));
}

TEST_F(ScreenSoundTest, GoesWithTheStreamThatIsAskedFor) {
  start();
  ReadMedia file = record(rtc::kStreamIndexScreen);
  EXPECT_EQ(file.channels, 2);
  // One channel of two.
  EXPECT_NEAR(file.level(200, 400), kTone - 3, 1);
  ASSERT_EQ(engine->setScreenAudioChannel(1), rtc::kSuccess);
  file = record(rtc::kStreamIndexScreen);
  EXPECT_NEAR(file.level(200, 400), kTone - 6, 1);

  ASSERT_EQ(engine->setScreenAudioStreamIndex(rtc::kStreamIndexMain), rtc::kSuccess);
  file = record(rtc::kStreamIndexMain);
  EXPECT_NEAR(file.level(200, 400), kTone - 6, 1);
  file = record(rtc::kStreamIndexScreen);
  EXPECT_LT(file.level(200, 400), -90);
}

TEST_F(ScreenSoundTest, TellsWhatCannotBe) {
  create("{\"screen_sound\": \"file:/none.wav\"}");
  EXPECT_EQ(engine->setScreenAudioChannel(0), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setScreenAudioChannel(3), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setScreenAudioStreamIndex(2), rtc::kInvalidParameter);
  EXPECT_EQ(engine->enableAudioProcessor(rtc::kAudioFrameMethodRecordScreen, {1, 1, 1}), rtc::kInvalidParameter);
  ASSERT_EQ(engine->startScreenAudioCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("screen-sound file:/none.wav 3 4"));
  EXPECT_TRUE(events.waitFor("error " + std::to_string(rtc::kNotFound)));
  rtc::destroyRTCVideo();
  create("{\"screen_sound\": \"nothing\"}");
  EXPECT_EQ(engine->startScreenAudioCapture(), rtc::kInvalidParameter);
}

}  // namespace
}  // namespace corvane::test
