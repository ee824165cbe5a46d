// Pictures that tests push, and a sink that keeps what becomes of them.
#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "corvane_rtc/entry_points.h"
#include "corvane_rtc/rtc_video.h"
#include "support/recorders.h"

namespace corvane::test {

/// I420 without padding, or one plane of four bytes a pixel.
struct TestPicture {
  int32_t format = rtc::kVideoPixelFormatI420;
  int32_t width = 0;
  int32_t height = 0;
  int32_t rotation = 0;
  int64_t timestamp_us = 0;
  std::array<std::vector<uint8_t>, 3> planes;

  int32_t rowBytes(size_t plane) const;
  int32_t rows(size_t plane) const;
  size_t planeCount() const { return format == rtc::kVideoPixelFormatI420 ? 3 : 1; }
  uint8_t at(size_t plane, int32_t x, int32_t y) const;
  rtc::VideoFrameBuilder builder() const;
};

/// Brightness and colours of a picture's four quarters, first row first.
using Quarters = std::array<std::array<uint8_t, 3>, 4>;
inline constexpr Quarters kQuarters = {{{40, 90, 110}, {90, 120, 200}, {150, 180, 80}, {210, 128, 128}}};

/// A picture of four plain quarters.
TestPicture quartered(int32_t width, int32_t height, const Quarters& quarters = kQuarters);
/// What stands in the middle of each quarter.
Quarters quartersOf(const TestPicture& picture);
/// Whether no value is more than `tolerance` off.
bool isLike(const Quarters& left, const Quarters& right, int tolerance = 0);

/// Keeps copies of the pictures it is given, the last few of them.
class PictureSink final : public rtc::IVideoSink {
 public:
  bool onFrame(rtc::IVideoFrame* frame) override;

  /// The first picture that fits, of those that came or come; nothing when none comes.
  std::optional<TestPicture> waitFor(const std::function<bool(const TestPicture&)>& fits,
                                     std::chrono::milliseconds patience = kPatience);
  std::vector<TestPicture> pictures();
  void forget();
  /// Where the first plane of the last frame stood.
  const uint8_t* lastMemory();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<TestPicture> pictures_;
  const uint8_t* last_memory_ = nullptr;
};

/// Copies a frame's pixels.
TestPicture copyOf(const rtc::IVideoFrame& frame);

}  // namespace corvane::test
