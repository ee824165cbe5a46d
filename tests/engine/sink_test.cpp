// Local sinks: formats, replacing and detaching, and how long frames live.
#include <future>
#include <mutex>
#include <thread>

#include "support/engine_test.h"

namespace corvane::test {
namespace {

using SinkTest = EngineTest;

TEST_F(SinkTest, HandsOutTheFormatThatWasAsked) {
  capture("test:red?fps=60");
  ASSERT_TRUE(sink.waitForFrames(2));
  // Red in limited range, and one grey plane of it.
  EXPECT_NEAR(sink.frames().back().middle[0], 81, 2);

  const struct {
    int32_t format;
    int red;  // place of each channel in memory
    int blue;
  } formats[] = {{rtc::kVideoPixelFormatRGBA, 0, 2}, {rtc::kVideoPixelFormatARGB, 2, 0}};
  RecordingSink coloured[2];
  const EndOfEngine end;
  for (size_t index = 0; index < 2; ++index) {
    const auto& format = formats[index];
    ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &coloured[index], format.format), rtc::kSuccess);
    ASSERT_TRUE(coloured[index].waitForFrames(2));
    const SeenFrame frame = coloured[index].frames().back();
    EXPECT_EQ(frame.format, format.format);
    EXPECT_EQ(frame.stride, 640 * 4);
    EXPECT_GE(frame.middle[static_cast<size_t>(format.red)], 250);
    EXPECT_LE(frame.middle[static_cast<size_t>(format.blue)], 5);
    EXPECT_LE(frame.middle[1], 5);
    EXPECT_EQ(frame.middle[3], 255);
  }
}

TEST_F(SinkTest, LayoutOfI420IsGapless) {
  RecordingSink holding(1);
  const EndOfEngine end;
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("test:?width=320&height=180"), rtc::kSuccess);
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &holding, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  ASSERT_TRUE(holding.waitForFrames(1));
  const std::vector<rtc::IVideoFrame*> held = holding.takeHeld();
  ASSERT_EQ(held.size(), 1U);
  rtc::IVideoFrame* frame = held[0];
  EXPECT_EQ(frame->frameType(), rtc::kVideoFrameRawMemory);
  EXPECT_EQ(frame->rotation(), 0);
  EXPECT_EQ(frame->planeStride(1), 160);
  EXPECT_EQ(frame->planeStride(2), 160);
  EXPECT_EQ(frame->planeData(1), frame->planeData(0) + 320 * 180);
  EXPECT_EQ(frame->planeData(2), frame->planeData(1) + 160 * 90);
  for (const int32_t none : {-1, 3}) {
    EXPECT_EQ(frame->planeData(none), nullptr);
    EXPECT_EQ(frame->planeStride(none), 0);
  }
  frame->release();
}

TEST_F(SinkTest, ReplacesAndDetaches) {
  capture("test:?fps=60");
  ASSERT_TRUE(sink.waitForFrames(2));
  RecordingSink second;
  const EndOfEngine end;
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &second, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  ASSERT_TRUE(second.waitForFrames(2));
  const size_t first_count = sink.frames().size();
  ASSERT_TRUE(second.waitForFrames(10));
  EXPECT_EQ(sink.frames().size(), first_count);

  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, nullptr, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // for a call that ran
  const size_t second_count = second.frames().size();
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_EQ(second.frames().size(), second_count);
}

TEST_F(SinkTest, DetachesWhileTheSinkIsBusy) {
  // The sink waits for something that the detaching thread gives only afterwards.
  struct WaitingSink final : rtc::IVideoSink {
    bool onFrame(rtc::IVideoFrame* frame) override {
      std::call_once(once, [this] { entered.set_value(); });
      go_on.wait();
      frame->release();
      return true;
    }
    std::once_flag once;
    std::promise<void> entered;
    std::promise<void> release;
    std::shared_future<void> go_on = release.get_future().share();
  } waiting;
  const EndOfEngine end;
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &waiting, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  ASSERT_EQ(waiting.entered.get_future().wait_for(kPatience), std::future_status::ready);
  EXPECT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, nullptr, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  waiting.release.set_value();
}

TEST_F(SinkTest, RefusesWhatIsNoFormatOrNoStream) {
  EXPECT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &sink, 2), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &sink, rtc::kVideoPixelFormatUnknown),
            rtc::kInvalidParameter);
  EXPECT_EQ(engine->setLocalVideoSink(2, &sink, rtc::kVideoPixelFormatI420), rtc::kInvalidParameter);
}

TEST_F(SinkTest, DropsFramesBeyondEightThatTheSinkHolds) {
  RecordingSink hoarding(100);
  const EndOfEngine end;
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("test:?fps=60"), rtc::kSuccess);
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &hoarding, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  ASSERT_TRUE(hoarding.waitForFrames(8));
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(hoarding.frames().size(), 8U);
  hoarding.releaseHeld();
  EXPECT_TRUE(hoarding.waitForFrames(16));
}

TEST_F(SinkTest, FramesOutliveTheEngine) {
  const std::string clip = folder.file("clip.avi");
  ASSERT_TRUE(makeClip({.encoder = "jpegenc ! avimux"}, clip));
  // Frames of the decoder's memory, of the converter's, and of the colour converter's.
  const struct {
    std::string camera;
    int32_t format;
  } cases[] = {{"test:ball", rtc::kVideoPixelFormatI420},
               {"file:" + clip, rtc::kVideoPixelFormatI420},
               {"test:ball", rtc::kVideoPixelFormatRGBA}};
  for (const auto& each : cases) {
    RecordingSink holding(6);
    ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice(each.camera.c_str()), rtc::kSuccess);
    ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &holding, each.format), rtc::kSuccess);
    ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
    ASSERT_TRUE(holding.waitForFrames(12));
    rtc::destroyRTCVideo();

    const std::vector<SeenFrame> seen = holding.frames();
    std::vector<rtc::IVideoFrame*> held = holding.takeHeld();
    ASSERT_EQ(held.size(), 6U);
    std::thread other([&] {
      for (size_t index = 0; index < held.size(); ++index) {
        const rtc::IVideoFrame* frame = held[index];
        const ptrdiff_t pixel_bytes = each.format == rtc::kVideoPixelFormatI420 ? 1 : 4;
        const ptrdiff_t middle = static_cast<ptrdiff_t>(frame->height() / 2) * frame->planeStride(0) +
                                 static_cast<ptrdiff_t>(frame->width() / 2) * pixel_bytes;
        EXPECT_EQ(frame->planeData(0)[middle], seen[index].middle[0]);
        EXPECT_EQ(frame->timestampUs(), seen[index].timestamp_us);
        held[index]->release();
      }
    });
    other.join();
    create("");
  }
}

}  // namespace
}  // namespace corvane::test
