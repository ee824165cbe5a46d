// The speaker, and the sound that goes to it.
#include <algorithm>

#include "support/engine_test.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

class PlaybackTest : public EngineTest {
 protected:
  void SetUp() override {
    create("");
    // Whatever speaker the machine has.
    ASSERT_EQ(engine->getAudioDeviceManager()->setAudioPlaybackDevice("null:"), rtc::kSuccess);
  }
};

TEST_F(PlaybackTest, SpeakerOpensForWhoListensAndClosesAfterwards) {
  SoundRecorder observer(nullptr, rtc::kAudioFrameMethodPlayback);
  const EndOfEngine end;
  engine->registerAudioFrameObserver(&observer);
  ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodPlayback, {16000, 1, 320}), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("speaker null: 1 0"));
  ASSERT_TRUE(observer.waitForFrames(10));
  const std::vector<SeenSound> frames = observer.frames();
  for (size_t index = 1; index < frames.size(); ++index) {
    EXPECT_EQ(frames[index].sample_rate, 16000);
    EXPECT_EQ(frames[index].samples.size(), 320U);
    EXPECT_EQ(frames[index].loudest(), 0);
    EXPECT_GT(frames[index].timestamp_us, frames[index - 1].timestamp_us);
  }
  ASSERT_EQ(engine->disableAudioFrameCallback(rtc::kAudioFrameMethodPlayback), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("speaker null: 2 0"));
  observer.forget();
  ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodPlayback, {}), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("speaker null: 1 0"));
  EXPECT_TRUE(observer.waitForFrames(1));
}

TEST_F(PlaybackTest, MixedFramesHaveTheMicrophoneAndWhatTheProcessorMakesOfRemoteSound) {
  SoundRecorder mixed(nullptr, rtc::kAudioFrameMethodMixed);
  SoundRecorder processor([](std::vector<int16_t>& samples) { std::fill(samples.begin(), samples.end(), 3000); },
                          rtc::kAudioFrameMethodPlayback);
  const EndOfEngine end;
  engine->registerAudioFrameObserver(&mixed);
  engine->registerAudioFrameProcessor(&processor);
  ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodMixed, {}), rtc::kSuccess);
  listen("test:sine?level=-10");
  const auto ends_at = [&](int32_t peak) {
    return mixed.waitFor([peak](const std::vector<SeenSound>& frames) {
      return !frames.empty() && frames.back().channels == 2 && frames.back().samples.size() == 960 &&
             std::abs(frames.back().loudest() - peak) < 300;
    });
  };
  EXPECT_TRUE(ends_at(10'362));
  ASSERT_EQ(engine->enableAudioProcessor(rtc::kAudioFrameMethodPlayback, {}), rtc::kSuccess);
  EXPECT_TRUE(ends_at(13'362));
  // The speaker's own volume is not the application's business.
  ASSERT_EQ(engine->getAudioDeviceManager()->setAudioPlaybackDeviceMute(true), rtc::kSuccess);
  ASSERT_EQ(engine->muteAudioCapture(rtc::kStreamIndexMain, true), rtc::kSuccess);
  EXPECT_TRUE(ends_at(3'000));
  ASSERT_EQ(engine->disableAudioProcessor(rtc::kAudioFrameMethodPlayback), rtc::kSuccess);
  EXPECT_TRUE(ends_at(0));
}

}  // namespace
}  // namespace corvane::test
