// Pictures that the application pushes as its camera.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <thread>

#include "corvane_rtc/video_config.h"
#include "support/push_test.h"

namespace corvane::test {
namespace {

using PushedFramesTest = PushTest;

TEST_F(PushedFramesTest, ArriveAsTheyArePushed) {
  // Odd sizes, and rows that are longer than the picture.
  for (const auto& [width, height] : {std::pair(64, 48), std::pair(33, 17), std::pair(2, 2), std::pair(1, 1)}) {
    TestPicture picture = quartered(width, height);
    for (const int32_t rotation : {0, 90, 180, 270}) {
      picture.rotation = rotation;
      const TestPicture seen = show(picture);
      EXPECT_EQ(seen.planes, picture.planes) << width << "x" << height;
      EXPECT_EQ(seen.rotation, rotation);
    }
  }

  const TestPicture picture = quartered(64, 48);
  std::array<std::vector<uint8_t>, 3> padded;
  rtc::VideoFrameBuilder builder = picture.builder();
  builder.timestamp_us = std::numeric_limits<int64_t>::min();
  for (size_t plane = 0; plane < 3; ++plane) {
    const auto row_bytes = static_cast<size_t>(picture.rowBytes(plane));
    for (size_t row = 0; row < static_cast<size_t>(picture.rows(plane)); ++row) {
      const auto start = picture.planes[plane].begin() + static_cast<ptrdiff_t>(row * row_bytes);
      padded[plane].insert(padded[plane].end(), start, start + static_cast<ptrdiff_t>(row_bytes));
      padded[plane].resize((row + 1) * (row_bytes + 7), 255);
    }
    builder.data[plane] = padded[plane].data();
    builder.linesize[plane] = static_cast<int32_t>(row_bytes + 7);
  }
  ASSERT_EQ(push(builder), rtc::kSuccess);
  const auto seen = shown.waitFor([&](const TestPicture& each) { return each.timestamp_us == builder.timestamp_us; });
  ASSERT_TRUE(seen.has_value());
  EXPECT_EQ(seen->planes, picture.planes);
}

TEST_F(PushedFramesTest, ComeInTheEnginesColoursWhateverTheirOwn) {
  struct Case {
    int32_t format;
    int32_t color_space;
    std::array<uint8_t, 4> pushed;  // bytes of a pixel, or Y, U, V
    std::array<uint8_t, 3> seen;
  };
  const Case cases[] = {
      {rtc::kVideoPixelFormatRGBA, 0, {255, 0, 0, 255}, {82, 90, 240}},
      {rtc::kVideoPixelFormatARGB, 0, {0, 0, 255, 255}, {82, 90, 240}},
      {rtc::kVideoPixelFormatRGBA, 4, {0, 0, 255, 0}, {41, 240, 110}},
      {rtc::kVideoPixelFormatI420, 0, {82, 90, 240}, {82, 90, 240}},
      {rtc::kVideoPixelFormatI420, 1, {82, 90, 240}, {82, 90, 240}},
      {rtc::kVideoPixelFormatI420, 2, {76, 85, 255}, {82, 90, 240}},
      {rtc::kVideoPixelFormatI420, 3, {63, 102, 240}, {82, 90, 240}},
      {rtc::kVideoPixelFormatI420, 4, {54, 99, 255}, {82, 90, 240}},
  };
  for (const Case& each : cases) {
    TestPicture picture;
    picture.format = each.format;
    picture.width = 40;
    picture.height = 26;
    for (size_t plane = 0; plane < picture.planeCount(); ++plane) {
      const auto size = static_cast<size_t>(picture.rowBytes(plane)) * static_cast<size_t>(picture.rows(plane));
      for (size_t at = 0; at < size; ++at) {
        picture.planes[plane].push_back(each.pushed[picture.planeCount() == 1 ? at % 4 : plane]);
      }
    }
    static int64_t stamp = 1'000'000;
    rtc::VideoFrameBuilder builder = picture.builder();
    builder.color_space = each.color_space;
    builder.timestamp_us = ++stamp;
    ASSERT_EQ(push(builder), rtc::kSuccess);
    const auto seen = shown.waitFor([](const TestPicture& one) { return one.timestamp_us == stamp; });
    ASSERT_TRUE(seen.has_value());
    for (size_t plane = 0; plane < 3; ++plane) {
      EXPECT_NEAR(seen->at(plane, 20, 12), each.seen[plane], 3)
          << "plane " << plane << ", format " << each.format << ", colour space " << each.color_space;
    }
  }
}

// Two pages of which the second may not be touched: what ends with the first is read to its last byte and no further.
class Guarded {
 public:
  explicit Guarded(size_t size)
      : page_(static_cast<size_t>(sysconf(_SC_PAGESIZE))),
        length_((size + page_ - 1) / page_ * page_ + page_),
        start_(
            static_cast<uint8_t*>(mmap(nullptr, length_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
        size_(size) {
    mprotect(start_ + length_ - page_, page_, PROT_NONE);
  }
  ~Guarded() { munmap(start_, length_); }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  const uint8_t* bytes() const { return start_ + length_ - page_ - size_; }

 private:
  size_t page_;
  size_t length_;
  uint8_t* start_;
  size_t size_;
};

TEST_F(PushedFramesTest, AreReadToTheirLastByteAndNoFurther) {
  for (const int32_t padding : {0, 5}) {
    // The last row of a plane has no padding behind it.
    const Guarded luma(static_cast<size_t>((33 + padding) * 16 + 33));
    const Guarded u(static_cast<size_t>((17 + padding) * 8 + 17));
    const Guarded v(static_cast<size_t>((17 + padding) * 8 + 17));
    rtc::VideoFrameBuilder builder = quartered(33, 17).builder();
    builder.data[0] = luma.bytes();
    builder.data[1] = u.bytes();
    builder.data[2] = v.bytes();
    for (size_t plane = 0; plane < 3; ++plane) builder.linesize[plane] += padding;
    EXPECT_EQ(push(builder), rtc::kSuccess);

    const Guarded pixels(static_cast<size_t>((33 * 4 + padding) * 16 + 33 * 4));
    builder.pixel_format = rtc::kVideoPixelFormatRGBA;
    builder.data[0] = pixels.bytes();
    builder.linesize[0] = 33 * 4 + padding;
    EXPECT_EQ(push(builder), rtc::kSuccess);
  }
  ASSERT_TRUE(shown.waitFor([](const TestPicture& each) { return each.width == 33; }));
}

TEST_F(PushedFramesTest, AreRefusedWithoutAllTheirPixels) {
  const TestPicture picture = quartered(64, 48);
  const auto changed = [&picture](auto change) {
    rtc::VideoFrameBuilder builder = picture.builder();
    change(builder);
    return builder;
  };
  using Builder = rtc::VideoFrameBuilder;
  const Builder bad[] = {
      changed([](Builder& b) { b.width = 0; }),
      changed([](Builder& b) { b.height = -1; }),
      changed([](Builder& b) { b.width = std::numeric_limits<int32_t>::max(); }),
      changed([](Builder& b) { b.height = 16385; }),
      changed([](Builder& b) { b.pixel_format = rtc::kVideoPixelFormatUnknown; }),
      changed([](Builder& b) { b.pixel_format = 2; }),
      changed([](Builder& b) { b.rotation = 45; }),
      changed([](Builder& b) { b.rotation = -90; }),
      changed([](Builder& b) { b.rotation = 360; }),
      changed([](Builder& b) { b.data[0] = nullptr; }),
      changed([](Builder& b) { b.data[2] = nullptr; }),
      changed([](Builder& b) { b.linesize[0] = 63; }),
      changed([](Builder& b) { b.linesize[1] = 31; }),
      changed([](Builder& b) { b.linesize[2] = -32; }),
      changed([](Builder& b) {
        b.pixel_format = rtc::kVideoPixelFormatRGBA;
        b.linesize[0] = 64 * 4 - 1;
      }),
  };
  for (const Builder& builder : bad) EXPECT_EQ(rtc::buildVideoFrame(builder), nullptr) << &builder - bad;
  EXPECT_EQ(engine->pushExternalVideoFrame(nullptr), rtc::kInvalidParameter);

  // A frame of the application's own making, whose planes are not what they should be.
  struct OddFrame final : rtc::IVideoFrame {
    int32_t frameType() const override { return type; }
    int32_t pixelFormat() const override { return rtc::kVideoPixelFormatI420; }
    int64_t timestampUs() const override { return 0; }
    int32_t width() const override { return 64; }
    int32_t height() const override { return 48; }
    int32_t rotation() const override { return 0; }
    uint8_t* planeData(int32_t plane) const override { return plane == missing ? nullptr : pixels; }
    int32_t planeStride(int32_t) const override { return stride; }
    void release() override { ++releases; }
    int32_t type = rtc::kVideoFrameRawMemory;
    int32_t missing = -1;
    int32_t stride = 64;
    uint8_t* pixels = nullptr;
    int releases = 0;
  } odd;
  std::vector<uint8_t> grey(64 * 48, 77);
  odd.pixels = grey.data();
  odd.type = rtc::kVideoFrameTexture;
  EXPECT_EQ(engine->pushExternalVideoFrame(&odd), rtc::kInvalidParameter);
  odd.type = rtc::kVideoFrameRawMemory;
  odd.missing = 1;
  EXPECT_EQ(engine->pushExternalVideoFrame(&odd), rtc::kInvalidParameter);
  odd.missing = -1;
  odd.stride = 31;
  EXPECT_EQ(engine->pushExternalVideoFrame(&odd), rtc::kInvalidParameter);
  EXPECT_EQ(odd.releases, 3);
  EXPECT_TRUE(shown.pictures().empty());
  odd.stride = 64;
  EXPECT_EQ(engine->pushExternalVideoFrame(&odd), rtc::kSuccess);
  EXPECT_TRUE(shown.waitFor([](const TestPicture& each) { return each.at(0, 5, 5) == 77; }));
  rtc::destroyRTCVideo();
  EXPECT_EQ(odd.releases, 4);
}

TEST_F(PushedFramesTest, ReachTheSinkInTheMemoryTheyWereBuiltIn) {
  rtc::IVideoFrame* frame = rtc::buildVideoFrame(quartered(640, 360).builder());
  ASSERT_NE(frame, nullptr);
  const uint8_t* built_in = frame->planeData(0);
  ASSERT_EQ(engine->pushExternalVideoFrame(frame), rtc::kSuccess);
  ASSERT_TRUE(shown.waitFor([](const TestPicture& each) { return each.width == 640; }));
  EXPECT_EQ(shown.lastMemory(), built_in);
}

TEST_F(PushedFramesTest, TakeTurnsWithTheCamera) {
  show(quartered(64, 48));
  EXPECT_TRUE(events.waitFor("stream 0 1 0"));
  EXPECT_TRUE(events.waitFor("first 0 64x48"));
  show(quartered(48, 64));
  EXPECT_TRUE(events.waitFor("size 0 48x64"));
  EXPECT_EQ(engine->startVideoCapture(), rtc::kWrongState);

  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeInternal), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("stream 0 0 0"));
  EXPECT_EQ(push(quartered(64, 48).builder()), rtc::kWrongState);
  const std::string camera = "test:?width=80&height=60&fps=60";
  capture(camera);
  EXPECT_TRUE(events.waitFor("first 0 80x60"));
  ASSERT_TRUE(sink.waitForFrames(2));
  EXPECT_EQ(push(quartered(64, 48).builder()), rtc::kWrongState);

  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &shown, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeExternal), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("device " + camera + " 2 0"));
  EXPECT_TRUE(events.waitFor("stream 0 0 0"));
  shown.forget();
  show(quartered(64, 48));
  EXPECT_TRUE(events.waitFor("first 0 64x48"));
  for (const TestPicture& each : shown.pictures()) EXPECT_EQ(each.width, 64);

  EXPECT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, 2), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setVideoSourceType(2, rtc::kVideoSourceTypeExternal), rtc::kInvalidParameter);
  EXPECT_EQ(engine->setVideoSourceType(rtc::kStreamIndexScreen, rtc::kVideoSourceTypeExternal), rtc::kNotSupported);
}

TEST_F(PushedFramesTest, GiveWayInOrderWhenTheyComeTooFast) {
  TestPicture picture = quartered(640, 360);
  for (int64_t stamp = 1; stamp <= 300; ++stamp) {
    picture.timestamp_us = stamp;
    ASSERT_EQ(push(picture.builder()), rtc::kSuccess);
  }
  ASSERT_TRUE(shown.waitFor([](const TestPicture& each) { return each.timestamp_us == 300; }));
  const std::vector<TestPicture> seen = shown.pictures();
  EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end(), [](const TestPicture& left, const TestPicture& right) {
    return left.timestamp_us < right.timestamp_us;
  }));
  EXPECT_EQ(seen.back().planes, picture.planes);
}

TEST_F(PushedFramesTest, AreFreedWhereverTheyAreWhenTheEngineEnds) {
  RecordingSink holding(8);
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &holding, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  const TestPicture picture = quartered(64, 48);
  for (int count = 0; count < 20; ++count) ASSERT_EQ(push(picture.builder()), rtc::kSuccess);
  ASSERT_TRUE(holding.waitForFrames(1));
  rtc::destroyRTCVideo();
  for (rtc::IVideoFrame* frame : holding.takeHeld()) {
    EXPECT_EQ(copyOf(*frame).planes, picture.planes);
    frame->release();
  }
}

}  // namespace
}  // namespace corvane::test
