// Capture as an application steers it: starting, stopping, choosing cameras and shapes, and what is reported.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <thread>

#include "corvane_rtc/video_config.h"
#include "support/engine_test.h"

namespace corvane::test {
namespace {

using CaptureTest = EngineTest;

size_t openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

TEST_F(CaptureTest, ReportsStartFirstFrameAndStopInOrder) {
  capture("test:ball?width=320&height=180&fps=60");
  ASSERT_TRUE(sink.waitForFrames(30));
  ASSERT_EQ(engine->stopVideoCapture(), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("stream 0 0 0"));
  const std::vector<std::string> expected = {
      "device test:ball?width=320&height=180&fps=60 1 0", "stream 0 1 0", "first 0 320x180",
      "device test:ball?width=320&height=180&fps=60 2 0", "stream 0 0 0",
  };
  EXPECT_EQ(events.all(), expected);

  const std::vector<SeenFrame> frames = sink.frames();
  EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end(),
                             [](const SeenFrame& a, const SeenFrame& b) { return a.timestamp_us < b.timestamp_us; }));
  for (const SeenFrame& frame : frames) EXPECT_EQ(frame.stride, 320);
}

TEST_F(CaptureTest, StartsTwentyTimesWithoutKeepingAnything) {
  capture("test:?fps=60");
  size_t descriptors = 0;
  for (int round = 0; round < 20; ++round) {
    ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
    ASSERT_TRUE(events.waitFor("first 0 640x360")) << "in round " << round;
    ASSERT_EQ(engine->stopVideoCapture(), rtc::kSuccess);
    ASSERT_TRUE(events.waitFor("stream 0 0 0")) << "in round " << round;
    if (round == 4) descriptors = openDescriptors();
  }
  // The last round's threads may still be giving theirs back.
  for (int attempt = 0; attempt < 1000 && openDescriptors() > descriptors; ++attempt) usleep(10'000);
  EXPECT_LE(openDescriptors(), descriptors);
}

TEST_F(CaptureTest, IgnoresRepeatedStartsAndStops) {
  engine->stopVideoCapture();
  capture("test:");
  engine->startVideoCapture();
  ASSERT_TRUE(sink.waitForFrames(3));
  engine->startVideoCapture();
  engine->stopVideoCapture();
  engine->stopVideoCapture();
  ASSERT_TRUE(events.waitFor("stream 0 0 0"));
  EXPECT_EQ(events.count(), 5U);
}

TEST_F(CaptureTest, ChangesCamerasWhileCapturing) {
  const std::string clip = folder.file("clip.avi");
  ASSERT_TRUE(makeClip({.encoder = "jpegenc ! avimux"}, clip));
  capture("test:?width=320&height=240");
  ASSERT_TRUE(events.waitFor("first 0 320x240"));

  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice(("file:" + clip).c_str()), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("device test:?width=320&height=240 2 0"));
  EXPECT_TRUE(events.waitFor("device file:" + clip + " 1 0"));
  EXPECT_TRUE(events.waitFor("size 0 64x48"));
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("test:?width=320&height=240"), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 320x240"));

  const std::vector<std::string> all = events.all();
  EXPECT_EQ(std::count(all.begin(), all.end(), "first 0 320x240"), 1);
  const std::vector<SeenFrame> frames = sink.frames();
  EXPECT_TRUE(std::is_sorted(frames.begin(), frames.end(),
                             [](const SeenFrame& a, const SeenFrame& b) { return a.timestamp_us < b.timestamp_us; }));
}

TEST_F(CaptureTest, ScalesAndChangesTheRateWhereAsked) {
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 10, 90, 160}), rtc::kSuccess);
  capture("test:?fps=30");
  ASSERT_TRUE(events.waitFor("first 0 160x90"));
  ASSERT_TRUE(sink.waitForFrames(8));
  const std::vector<SeenFrame> frames = sink.frames();
  for (size_t index = 1; index < frames.size(); ++index) {
    EXPECT_GE(frames[index].timestamp_us - frames[index - 1].timestamp_us, 99'000);
  }

  // The other side follows from the picture's proportions; 0 everywhere is the camera's own size and rate.
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 0, 0, 320}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 320x180"));
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 0, 0, 0}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 640x360"));
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 0, 100, 100}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 100x100"));
  // Automatic: nothing is encoded that the size could follow.
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceAuto, 15, 90, 160}), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("size 0 640x360"));
}

TEST_F(CaptureTest, RepeatsPicturesOfASlowCameraWhereAFasterRateIsAsked) {
  ASSERT_EQ(engine->setVideoCaptureConfig({rtc::kCapturePreferenceManual, 40, 0, 0}), rtc::kSuccess);
  capture("test:?fps=10");
  ASSERT_TRUE(sink.waitForFrames(40));
  const std::vector<SeenFrame> frames = sink.frames();
  const auto spans_a_quarter = [&](size_t index) {
    return frames[index].timestamp_us - frames[index - 1].timestamp_us <= 26'000;
  };
  size_t near = 0;
  for (size_t index = 1; index < frames.size(); ++index) near += spans_a_quarter(index) ? 1 : 0;
  EXPECT_GE(near, frames.size() / 2);
}

TEST_F(CaptureTest, RefusesShapesThatNoPictureHas) {
  const rtc::VideoCaptureConfig bad[] = {
      {rtc::kCapturePreferenceManual, 30, 360, -1},   {rtc::kCapturePreferenceManual, 30, 8, 640},
      {rtc::kCapturePreferenceManual, 30, 9000, 640}, {rtc::kCapturePreferenceManual, 1000, 360, 640},
      {rtc::kCapturePreferenceManual, -5, 360, 640},  {7, 30, 360, 640},
  };
  for (const rtc::VideoCaptureConfig& config : bad) {
    EXPECT_EQ(engine->setVideoCaptureConfig(config), rtc::kInvalidParameter);
  }
}

TEST_F(CaptureTest, EndsWithoutBeingStopped) {
  capture("test:?fps=120");
  ASSERT_TRUE(sink.waitForFrames(5));
  rtc::destroyRTCVideo();
  const size_t frames = sink.frames().size();
  const size_t told = events.count();
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(sink.frames().size(), frames);
  EXPECT_EQ(events.count(), told);
}

TEST_F(CaptureTest, EndsWhileStarting) {
  for (int round = 0; round < 10; ++round) {
    capture("test:?fps=120");
    rtc::destroyRTCVideo();
    create("");
  }
}

}  // namespace
}  // namespace corvane::test
