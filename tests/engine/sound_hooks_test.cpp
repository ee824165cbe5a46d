// Raw sound for the application: frames to look at, and frames to change on their way.
#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

#include "support/engine_test.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

using SoundHooksTest = EngineTest;

void halve(std::vector<int16_t>& samples) {
  for (int16_t& sample : samples) sample = static_cast<int16_t>(sample / 2);
}

struct Shape {
  rtc::AudioFormat asked;
  int32_t sample_rate;
  int32_t channels;
  size_t samples;  // of all channels
};

class SoundShapeTest : public EngineTest, public testing::WithParamInterface<Shape> {};

TEST_P(SoundShapeTest, IsTheOneAskedForAndChangesAreHeard) {
  SoundRecorder observer;
  SoundRecorder processor(halve);
  const EndOfEngine end;
  ASSERT_EQ(engine->registerAudioFrameObserver(&observer), rtc::kSuccess);
  ASSERT_EQ(engine->registerAudioFrameProcessor(&processor), rtc::kSuccess);
  ASSERT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, GetParam().asked), rtc::kSuccess);
  ASSERT_EQ(engine->enableAudioProcessor(rtc::kAudioFrameMethodRecord, GetParam().asked), rtc::kSuccess);
  listen("test:sine?level=-10");
  report();
  // Half the amplitude is 6 dB less.
  ASSERT_TRUE(events.waitForLevel(-16));
  ASSERT_TRUE(observer.waitForFrames(20));
  ASSERT_TRUE(processor.waitForFrames(20));
  for (SoundRecorder* recorder : {&observer, &processor}) {
    const std::vector<SeenSound> frames = recorder->frames();
    for (size_t index = 0; index < frames.size(); ++index) {
      EXPECT_EQ(frames[index].sample_rate, GetParam().sample_rate);
      EXPECT_EQ(frames[index].channels, GetParam().channels);
      EXPECT_EQ(frames[index].samples.size(), GetParam().samples);
      EXPECT_TRUE(index == 0 || frames[index].timestamp_us > frames[index - 1].timestamp_us);
    }
    // -10 dB before the processor, -16 after it.
    EXPECT_NEAR(frames.back().loudest(), recorder == &processor ? 10'362 : 5'181, 300);
  }

  ASSERT_EQ(engine->disableAudioProcessor(rtc::kAudioFrameMethodRecord), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-10));
  ASSERT_EQ(engine->disableAudioFrameCallback(rtc::kAudioFrameMethodRecord), rtc::kSuccess);
}

INSTANTIATE_TEST_SUITE_P(Shapes, SoundShapeTest,
                         testing::Values(Shape{{0, 0, 0}, 48000, 1, 480}, Shape{{48000, 2, 0}, 48000, 2, 960},
                                         Shape{{48000, 1, 1024}, 48000, 1, 1024}, Shape{{16000, 1, 320}, 16000, 1, 320},
                                         Shape{{44100, 2, 512}, 44100, 2, 1024}, Shape{{8000, 1, 80}, 8000, 1, 80},
                                         Shape{{96000, 2, 96}, 96000, 2, 192}));

TEST_F(SoundHooksTest, MutedSoundStaysSilentWhateverAProcessorAdds) {
  SoundRecorder processor([](std::vector<int16_t>& samples) { std::fill(samples.begin(), samples.end(), 9000); });
  SoundRecorder observer;
  const EndOfEngine end;
  engine->registerAudioFrameProcessor(&processor);
  engine->registerAudioFrameObserver(&observer);
  engine->enableAudioProcessor(rtc::kAudioFrameMethodRecord, {});
  engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {});
  engine->muteAudioCapture(rtc::kStreamIndexMain, true);
  listen("test:sine");
  ASSERT_TRUE(observer.waitForFrames(5));
  for (const SeenSound& frame : observer.frames()) EXPECT_EQ(frame.loudest(), 0);
  for (const SeenSound& frame : processor.frames()) {
    EXPECT_EQ(frame.loudest(), 0);
    EXPECT_TRUE(frame.muted);
  }
}

TEST_F(SoundHooksTest, NoCallIsInsideAProcessorThatWasTakenOut) {
  std::promise<void> inside;
  std::promise<void> go_on;
  std::atomic<bool> left = false;
  std::atomic<bool> entered = false;
  SoundRecorder slow([&](std::vector<int16_t>&) {
    if (entered.exchange(true)) return;
    inside.set_value();
    go_on.get_future().wait();
    left = true;
  });
  const EndOfEngine end;
  engine->registerAudioFrameProcessor(&slow);
  engine->enableAudioProcessor(rtc::kAudioFrameMethodRecord, {});
  listen("test:sine");
  inside.get_future().wait();
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    go_on.set_value();
  });
  ASSERT_EQ(engine->registerAudioFrameProcessor(nullptr), rtc::kSuccess);
  EXPECT_TRUE(left);
  release.join();
  const size_t frames = slow.frames().size();
  report();
  ASSERT_TRUE(events.waitForLevel(-20));
  EXPECT_EQ(slow.frames().size(), frames);
}

TEST_F(SoundHooksTest, RefusesShapesAndSoundThatItDoesNotHave) {
  const rtc::AudioFormat bad[] = {{7999, 1, 0},   {96001, 1, 0},  {-1, 1, 0},       {48000, 3, 0},
                                  {48000, -1, 0}, {48000, 1, 47}, {48000, 1, 4801}, {48000, 1, -480}};
  for (const rtc::AudioFormat& format : bad) {
    for (const int32_t method : {rtc::kAudioFrameMethodRecord, rtc::kAudioFrameMethodPlayback}) {
      EXPECT_EQ(engine->enableAudioFrameCallback(method, format), rtc::kInvalidParameter);
      EXPECT_EQ(engine->enableAudioProcessor(method, format), rtc::kInvalidParameter);
    }
    EXPECT_EQ(engine->enableAudioFrameCallback(rtc::kAudioFrameMethodMixed, format), rtc::kInvalidParameter);
  }
  EXPECT_EQ(engine->enableAudioProcessor(rtc::kAudioFrameMethodMixed, {}), rtc::kInvalidParameter);
  EXPECT_EQ(engine->disableAudioProcessor(rtc::kAudioFrameMethodMixed), rtc::kInvalidParameter);
  EXPECT_EQ(engine->enableAudioFrameCallback(5, {}), rtc::kInvalidParameter);
  EXPECT_EQ(engine->disableAudioFrameCallback(-1), rtc::kInvalidParameter);
}

}  // namespace
}  // namespace corvane::test
