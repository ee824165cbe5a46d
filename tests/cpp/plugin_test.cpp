// The way of pictures through a plug-in and what is counted of it, with a plug-in and frames of the test's own.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "plugin/plugin_logs.h"
#include "plugin/video_path.h"

namespace corvane {
namespace {

class Frame final : public rtc::IVideoFrame {
 public:
  Frame(int32_t width, int32_t height) : width_(width), height_(height) {
    for (auto& plane : planes_) plane.resize(static_cast<size_t>(width) * static_cast<size_t>(height));
  }

  int32_t frameType() const override { return rtc::kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return format; }
  int64_t timestampUs() const override { return 0; }
  int32_t width() const override { return width_; }
  int32_t height() const override { return height_; }
  int32_t rotation() const override { return 0; }
  uint8_t* planeData(int32_t plane) const override {
    return const_cast<uint8_t*>(planes_[static_cast<size_t>(plane)].data());
  }
  int32_t planeStride(int32_t /*plane*/) const override { return stride == 0 ? width_ : stride; }
  void release() override {}

  uint8_t& pixel() { return planes_[0][0]; }

  int32_t format = rtc::kVideoPixelFormatI420;
  int32_t stride = 0;

 private:
  int32_t width_;
  int32_t height_;
  std::array<std::vector<uint8_t>, 3> planes_;
};

// Holds its first picture until open(), if it is told to, and adds 100 to each picture's first pixel.
class Plugin final : public plugin::IPlugin {
 public:
  bool init(const char* /*folder*/) override { return true; }
  void release() override {}
  bool setParameter(const char* /*parameter*/) override { return true; }
  void reserved3() override {}
  void reserved4() override {}
  void processVideoFrame(plugin::VideoFrame* frame) override {
    std::unique_lock<std::mutex> lock(mutex_);
    ++pictures_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
    frame->data_y[0] = static_cast<uint8_t>(frame->data_y[0] + 100);
  }
  void processRecordAudioFrame(plugin::AudioFrame* /*frame*/) override {}
  void processPlaybackAudioFrame(plugin::AudioFrame* /*frame*/) override {}
  void processRemoteUserAudioFrame(const plugin::StreamKey& /*stream*/, plugin::AudioFrame* /*frame*/) override {}
  void processScreenAudioFrame(plugin::AudioFrame* /*frame*/) override {}

  void setOpen(bool open) {
    const std::lock_guard<std::mutex> lock(mutex_);
    open_ = open;
    changed_.notify_all();
  }
  void awaitPictures(int32_t count) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return pictures_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = true;
  int32_t pictures_ = 0;
};

class VideoPathTest : public testing::Test {
 protected:
  void SetUp() override {
    slot_.instance = &plugin_;
    path_.createConsumerThread();
    path_.enable(true);
  }
  void TearDown() override {
    plugin_.setOpen(true);
    path_.releaseConsumerThread();
  }
  /// The first pixel of a picture that began with `pixel`, -1 for one that was dropped.
  int process(uint8_t pixel, int32_t width = 8) {
    Frame frame(width, 8);
    frame.pixel() = pixel;
    return path_.process(&frame) == nullptr ? -1 : frame.pixel();
  }

  /// Until the picture comes as the plug-in leaves it: on a busy machine the first ones may be late.
  void awaitProcessed(uint8_t pixel) {
    for (int tries = 0; process(pixel) != pixel + 100; ++tries) ASSERT_LT(tries, 100);
  }

  PluginSlot slot_;
  Plugin plugin_;
  VideoPath path_{slot_};
};

TEST_F(VideoPathTest, FirstPictureIsNotSentAndLaterOnesAreProcessed) {
  EXPECT_NE(process(1), 101);
  awaitProcessed(2);
  path_.forgetFirstOutput();
  EXPECT_NE(process(3), 103);
  awaitProcessed(4);
}

TEST_F(VideoPathTest, WaitingForAPictureEndsWithTheConsumer) {
  plugin_.setOpen(false);
  std::thread engine([this] {
    // As many as it takes for one to be under way when the consumer is told to end.
    for (int i = 0; i < 20; ++i) EXPECT_EQ(process(5), 5);
  });
  plugin_.awaitPictures(1);
  std::thread release([this] { path_.releaseConsumerThread(); });
  engine.join();
  plugin_.setOpen(true);
  release.join();
  EXPECT_EQ(process(6), 6);
  path_.createConsumerThread();
}

TEST_F(VideoPathTest, LatePicturesNeverGoBackInTime) {
  awaitProcessed(0);
  std::atomic<bool> ended{false};
  // The plug-in stands still now and then, longer than the engine waits.
  std::thread stops([&] {
    for (bool open = false; !ended; open = !open) {
      plugin_.setOpen(open);
      std::this_thread::sleep_for(std::chrono::milliseconds(open ? 3 : 55));
    }
    plugin_.setOpen(true);
  });
  int last = 0;
  int sent = 0;
  for (uint8_t number = 1; number <= 30; ++number) {
    const int pixel = process(number);
    if (pixel == -1) continue;
    ++sent;
    EXPECT_GE(pixel, 100);
    EXPECT_GT(pixel, last);
    last = pixel;
  }
  ended = true;
  stops.join();
  EXPECT_GT(sent, 0);
}

TEST_F(VideoPathTest, PicturesOfAnotherSizeAreNotMixedUp) {
  awaitProcessed(0);
  plugin_.setOpen(false);
  EXPECT_NE(process(1), 101);
  plugin_.setOpen(true);
  // The first picture's pixels are waiting by then or come meanwhile; this one is smaller.
  const int pixel = process(2, 4);
  EXPECT_TRUE(pixel == 2 || pixel == 102) << pixel;
}

TEST_F(VideoPathTest, FramesThatCannotBeCopiedPass) {
  Frame rgba(8, 8);
  rgba.format = rtc::kVideoPixelFormatRGBA;
  Frame narrow(8, 8);
  narrow.stride = 4;
  Frame empty(0, 8);
  for (Frame* frame : {&rgba, &narrow, &empty}) {
    EXPECT_FALSE(PlanarSize::of(*frame).has_value());
    EXPECT_EQ(path_.process(frame), frame);
  }
  EXPECT_EQ(path_.process(nullptr), nullptr);
}

TEST(PluginLogs, SequenceIndexesRunFromOneTo1001) {
  uint32_t last = nextSequenceIndex();
  for (int i = 0; i < 2100; ++i) {
    const uint32_t next = nextSequenceIndex();
    EXPECT_EQ(next, last == 1001 ? 1U : last + 1);
    last = next;
  }
}

TEST(PluginLogs, CallsAreToldAtTheEndOfThePeriodAndEverAfter) {
  AudioCallCounter calls(3);
  std::vector<bool> told;
  for (int i = 0; i < 6; ++i) told.push_back(calls.advance());
  EXPECT_EQ(told, (std::vector<bool>{false, false, true, true, true, true}));
}

}  // namespace
}  // namespace corvane
