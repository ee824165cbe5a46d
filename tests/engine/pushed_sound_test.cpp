// Sound that the application pushes in place of a microphone's.
#include <cmath>
#include <numbers>

#include "corvane_rtc/entry_points.h"
#include "support/engine_test.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

constexpr double kAmplitude = 3277;  // -20 dB

class PushedSoundTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    ASSERT_EQ(engine->registerAudioFrameObserver(&recorder), rtc::kSuccess);
    ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {}), rtc::kSuccess);
  }
  void TearDown() override { rtc::destroyRTCVideo(); }

  /// So many milliseconds more of a tone of 500 Hz, out of phase in no channel.
  int32_t push(int32_t rate, int32_t channels, int32_t ms, size_t extra_bytes = 0) {
    std::vector<int16_t> samples;
    for (int32_t frame = 0; frame < rate * ms / 1000; ++frame, ++frames_) {
      const double value = kAmplitude * std::sin(2 * std::numbers::pi * 500 * frames_ / rate);
      samples.insert(samples.end(), static_cast<size_t>(channels), static_cast<int16_t>(value));
    }
    const int64_t size = static_cast<int64_t>(samples.size() * sizeof(int16_t) + extra_bytes);
    samples.resize(samples.size() + extra_bytes);
    rtc::IAudioFrame* frame =
        rtc::buildAudioFrame({rate, channels, 0, reinterpret_cast<const uint8_t*>(samples.data()), size, false});
    if (frame == nullptr) return rtc::kInvalidParameter;
    const int32_t status = engine->pushExternalAudioFrame(frame);
    frame->release();
    return status;
  }

  size_t heard() {
    size_t samples = 0;
    for (const SeenSound& frame : recorder.frames()) samples += frame.samples.size();
    return samples;
  }

  SoundRecorder recorder;

 private:
  int32_t frames_ = 0;
};

TEST_F(PushedSoundTest, ComesAsTheMicrophonesWouldWhateverItsShape) {
  ASSERT_EQ(engine->setAudioSourceType(rtc::kAudioSourceTypeExternal), rtc::kSuccess);
  report();
  ASSERT_EQ(push(48000, 1, 100), rtc::kSuccess);
  ASSERT_EQ(push(44100, 2, 100), rtc::kSuccess);
  ASSERT_EQ(push(16000, 1, 105), rtc::kSuccess);
  ASSERT_EQ(push(96000, 2, 100), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("first sound 0"));
  EXPECT_TRUE(events.waitForLevel(-20));
  // But for what the filters of three converters keep.
  ASSERT_TRUE(recorder.waitForFrames(40));
  for (const SeenSound& frame : recorder.frames()) {
    EXPECT_EQ(frame.sample_rate, 48000);
    EXPECT_EQ(frame.channels, 1);
    EXPECT_NEAR(frame.loudest(), kAmplitude, 300);
  }
  engine->startAudioCapture();
  ASSERT_EQ(engine->setAudioSourceType(rtc::kAudioSourceTypeInternal), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("sound 0 0"));
  EXPECT_EQ(push(48000, 1, 10), rtc::kWrongState);
  const std::vector<std::string> expected = {"sound 1 0", "first sound 0", "sound 0 0"};
  EXPECT_EQ(events.all(), expected);
}

TEST_F(PushedSoundTest, StopsTheMicrophoneAndIsFollowedByIt) {
  listen("test:sine?level=-40");
  ASSERT_TRUE(events.waitFor("first sound 0"));
  ASSERT_EQ(engine->setAudioSourceType(rtc::kAudioSourceTypeExternal), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("microphone test:sine?level=-40 2 0"));
  recorder.forget();
  ASSERT_EQ(push(48000, 2, 50), rtc::kSuccess);
  ASSERT_TRUE(recorder.waitForFrames(5));
  EXPECT_GT(recorder.frames()[2].loudest(), 3000);
  ASSERT_EQ(engine->setAudioSourceType(rtc::kAudioSourceTypeInternal), rtc::kSuccess);
  ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("microphone test:sine?level=-40 1 0"));
}

TEST_F(PushedSoundTest, IsRefusedWhenWrongOrTooMuchAndThenNothingOfItIsLost) {
  EXPECT_EQ(engine->setAudioSourceType(2), rtc::kInvalidParameter);
  EXPECT_EQ(push(48000, 1, 10), rtc::kWrongState);
  ASSERT_EQ(engine->setAudioSourceType(rtc::kAudioSourceTypeExternal), rtc::kSuccess);
  EXPECT_EQ(engine->pushExternalAudioFrame(nullptr), rtc::kInvalidParameter);
  EXPECT_EQ(push(4000, 1, 10), rtc::kInvalidParameter);
  EXPECT_EQ(push(192000, 1, 10), rtc::kInvalidParameter);
  EXPECT_EQ(push(48000, 2, 10, 2), rtc::kInvalidParameter);
  EXPECT_EQ(push(48000, 1, 10, 1), rtc::kInvalidParameter);
  EXPECT_EQ(push(48000, 1, 501), rtc::kInvalidParameter);
  size_t taken = 0;
  bool refused = false;
  while (taken < 100) {
    const int32_t status = push(48000, 1, 10);
    refused = refused || status == rtc::kWrongState;
    if (status == rtc::kSuccess) ++taken;
  }
  EXPECT_TRUE(refused);
  EXPECT_TRUE(recorder.waitForFrames(taken));
  EXPECT_EQ(heard(), taken * 480);
}

}  // namespace
}  // namespace corvane::test
