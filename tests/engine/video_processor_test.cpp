// Video processors: the application's code between capture and everybody who receives the picture.
#include <atomic>
#include <cstring>
#include <future>
#include <memory>
#include <thread>

#include "support/push_test.h"

namespace corvane::test {
namespace {

using VideoProcessorTest = PushTest;

// Does with each frame what the test says.
struct Processor final : rtc::IVideoProcessor {
  rtc::IVideoFrame* processVideoFrame(rtc::IVideoFrame* frame) override {
    inside += 1;
    most_inside = std::max<int>(most_inside, inside);
    calls += 1;
    rtc::IVideoFrame* result = work ? work(frame) : frame;
    inside -= 1;
    return result;
  }
  std::function<rtc::IVideoFrame*(rtc::IVideoFrame*)> work;
  std::atomic<int> calls = 0;
  std::atomic<int> inside = 0;
  std::atomic<int> most_inside = 0;
};

void fill(rtc::IVideoFrame& frame, uint8_t luma) {
  for (int32_t row = 0; row < frame.height(); ++row) {
    memset(frame.planeData(0) + static_cast<ptrdiff_t>(row) * frame.planeStride(0), luma,
           static_cast<size_t>(frame.width()));
  }
}

TEST_F(VideoProcessorTest, ChangesWhatIsShown) {
  Processor processor;
  const EndOfEngine end;
  TestPicture given;
  processor.work = [&given](rtc::IVideoFrame* frame) {
    given = copyOf(*frame);
    EXPECT_EQ(frame->planeData(3), nullptr);
    EXPECT_EQ(frame->planeStride(-1), 0);
    frame->release();  // the engine's own: nothing happens
    fill(*frame, 99);
    return frame;
  };
  ASSERT_EQ(engine->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatI420}), rtc::kSuccess);
  TestPicture picture = quartered(62, 46);
  picture.rotation = 90;
  // It is given the picture turned but not mirrored, and what it makes of it is mirrored.
  ASSERT_EQ(engine->setVideoCaptureRotation(180), rtc::kSuccess);
  ASSERT_EQ(engine->setLocalVideoMirrorType(rtc::kMirrorTypeRender), rtc::kSuccess);
  const TestPicture seen = show(picture);
  EXPECT_TRUE(isLike(quartersOf(given), {kQuarters[3], kQuarters[2], kQuarters[1], kQuarters[0]}));
  EXPECT_EQ(given.rotation, 90);
  EXPECT_EQ(given.timestamp_us, seen.timestamp_us);
  EXPECT_EQ(seen.planes[0], std::vector<uint8_t>(62 * 46, 99));
  EXPECT_EQ(quartersOf(seen)[0][1], kQuarters[1][1]);

  ASSERT_EQ(engine->registerVideoProcessor(nullptr, {}), rtc::kSuccess);
  const int calls = processor.calls;
  EXPECT_EQ(quartersOf(show(picture))[0][0], kQuarters[1][0]);
  EXPECT_EQ(processor.calls, calls);
}

TEST_F(VideoProcessorTest, IsGivenTheFormatThatItAsksFor) {
  Processor processor;
  const EndOfEngine end;
  const struct {
    int32_t format;
    size_t red;
    size_t blue;
  } cases[] = {{rtc::kVideoPixelFormatRGBA, 0, 2}, {rtc::kVideoPixelFormatARGB, 2, 0}};
  for (const auto& each : cases) {
    processor.work = [&each](rtc::IVideoFrame* frame) {
      EXPECT_EQ(frame->pixelFormat(), each.format);
      EXPECT_EQ(frame->planeData(1), nullptr);
      const TestPicture picture = copyOf(*frame);
      EXPECT_GE(picture.planes[0][each.red], 250);
      EXPECT_LE(picture.planes[0][each.blue], 5);
      for (int32_t row = 0; row < frame->height(); ++row) {
        for (int32_t x = 0; x < frame->width(); ++x) {
          uint8_t* pixel = frame->planeData(0) + row * frame->planeStride(0) + x * 4;
          std::swap(pixel[0], pixel[2]);
        }
      }
      return frame;
    };
    ASSERT_EQ(engine->registerVideoProcessor(&processor, {each.format}), rtc::kSuccess);
    const Quarters red = {{{82, 90, 240}, {82, 90, 240}, {82, 90, 240}, {82, 90, 240}}};
    const Quarters blue = {{{41, 240, 110}, {41, 240, 110}, {41, 240, 110}, {41, 240, 110}}};
    EXPECT_TRUE(isLike(quartersOf(show(quartered(48, 32, red))), blue, 3));
  }
  EXPECT_EQ(engine->registerVideoProcessor(&processor, {2}), rtc::kInvalidParameter);
  processor.work = [](rtc::IVideoFrame* frame) {
    EXPECT_EQ(frame->pixelFormat(), rtc::kVideoPixelFormatI420);
    return frame;
  };
  ASSERT_EQ(engine->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatUnknown}), rtc::kSuccess);
  show(quartered(48, 32));
}

TEST_F(VideoProcessorTest, DropsFramesAndReturnsOthers) {
  Processor processor;
  const EndOfEngine end;
  rtc::IVideoFrame* own = nullptr;
  processor.work = [&own](rtc::IVideoFrame* frame) { return frame->timestampUs() == 7 ? nullptr : own; };
  TestPicture other = quartered(30, 20);
  other.timestamp_us = 1;
  own = rtc::buildVideoFrame(other.builder());
  ASSERT_EQ(engine->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatI420}), rtc::kSuccess);
  TestPicture picture = quartered(64, 48);
  picture.timestamp_us = 7;
  ASSERT_EQ(push(picture.builder()), rtc::kSuccess);
  picture.timestamp_us = 8;
  ASSERT_EQ(push(picture.builder()), rtc::kSuccess);
  const auto seen = shown.waitFor([](const TestPicture&) { return true; });
  ASSERT_TRUE(seen.has_value());
  EXPECT_EQ(seen->planes, other.planes);
  ASSERT_EQ(engine->registerVideoProcessor(nullptr, {}), rtc::kSuccess);
  // It has stayed the processor's.
  EXPECT_EQ(copyOf(*own).planes, other.planes);
  own->release();
}

TEST_F(VideoProcessorTest, GoesWhileFramesFlow) {
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeInternal), rtc::kSuccess);
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("test:black?width=64&height=48&fps=120"),
            rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  const auto shows = [this](uint8_t luma) {
    shown.forget();
    return shown.waitFor([luma](const TestPicture& each) { return each.at(0, 30, 30) == luma; }).has_value();
  };
  ASSERT_TRUE(shows(16));
  for (int round = 0; round < 20; ++round) {
    auto processor = std::make_unique<Processor>();
    processor->work = [](rtc::IVideoFrame* frame) {
      std::this_thread::sleep_for(std::chrono::milliseconds(3));
      fill(*frame, 200);
      return frame;
    };
    ASSERT_EQ(engine->registerVideoProcessor(processor.get(), {rtc::kVideoPixelFormatI420}), rtc::kSuccess);
    if (round % 4 == 0) {
      ASSERT_TRUE(shows(200));
    }
    ASSERT_EQ(engine->registerVideoProcessor(nullptr, {}), rtc::kSuccess);
    EXPECT_EQ(processor->inside, 0);
    EXPECT_LE(processor->most_inside, 1);
    processor.reset();  // nothing of the engine's is in it any more
    if (round % 4 == 0) {
      ASSERT_TRUE(shows(16));
    }
  }
}

TEST_F(VideoProcessorTest, IsWaitedForWhenItGoes) {
  Processor processor;
  const EndOfEngine end;
  std::promise<void> entered;
  std::promise<void> leave;
  processor.work = [&](rtc::IVideoFrame* frame) {
    entered.set_value();
    leave.get_future().wait();
    return frame;
  };
  ASSERT_EQ(engine->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatI420}), rtc::kSuccess);
  ASSERT_EQ(push(quartered(64, 48).builder()), rtc::kSuccess);
  ASSERT_EQ(entered.get_future().wait_for(kPatience), std::future_status::ready);
  auto going = std::async(std::launch::async, [this] { return engine->registerVideoProcessor(nullptr, {}); });
  EXPECT_EQ(going.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
  leave.set_value();
  ASSERT_EQ(going.wait_for(kPatience), std::future_status::ready);
  EXPECT_EQ(processor.inside, 0);
}

TEST_F(VideoProcessorTest, LeavesAloneWhatADecoderOrARepetitionStillNeeds) {
  // Pictures of a decoder that predicts from earlier ones, each shown three times: a change must not show in the next.
  const std::string clip = folder.file("clip.mkv");
  ASSERT_TRUE(makeClip({.encoder = "avenc_mpeg4 bitrate=4000000 ! avimux"}, clip));
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeInternal), rtc::kSuccess);
  ASSERT_EQ(engine->setVideoCaptureConfig({1, 75, 0, 0}), rtc::kSuccess);
  Processor processor;
  const EndOfEngine end;
  std::atomic<int> spoilt = 0;
  processor.work = [&spoilt](rtc::IVideoFrame* frame) {
    // A picture is plain grey until it is inverted.
    const uint8_t first = frame->planeData(0)[0];
    const uint8_t middle = frame->planeData(0)[24 * frame->planeStride(0) + 32];
    if (std::abs(first - middle) > 20) ++spoilt;
    frame->planeData(0)[0] = static_cast<uint8_t>(255 - first);
    for (int32_t row = 0; row < 8; ++row) memset(frame->planeData(0) + row * frame->planeStride(0), 255, 8);
    return frame;
  };
  ASSERT_EQ(engine->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatI420}), rtc::kSuccess);
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice(("file:" + clip).c_str()), rtc::kSuccess);
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (processor.calls < 60 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_GE(processor.calls, 60);
  EXPECT_EQ(spoilt, 0);
}

}  // namespace
}  // namespace corvane::test
