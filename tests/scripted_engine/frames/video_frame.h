// Pictures that the scripted engine makes, by a test's wish or from a builder, and whose lifetime it watches.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "core/fields.h"
#include "corvane_rtc/video_frame.h"
#include "frames/frame_statistics.h"
#include "frames/pixel_block.h"

namespace corvane::scripted {

inline constexpr size_t kMaxPlanes = 3;

/// What a test asks for. The texts of tests/README.md name the fields as they are named in JavaScript.
struct VideoFrameSpec {
  int32_t width = 64;
  int32_t height = 48;
  int32_t pixel_format = rtc::kVideoPixelFormatI420;
  int32_t frame_type = rtc::kVideoFrameRawMemory;
  int32_t rotation = 0;
  int64_t timestamp_us = 0;
  uint32_t seed = 0;
  /// What planeStride() answers. Left out: exactly a row. 0 or less than a row: the memory is as if left out.
  std::vector<int32_t> strides;
  /// Unused bytes before each plane.
  std::vector<int32_t> gaps;
  /// Planes for which planeData() answers null.
  std::vector<int32_t> null_planes;
};

VideoFrameSpec readVideoFrameSpec(const Value& value);

/// Rows of a plane, and bytes of its pixels in each row.
struct PlaneSize {
  int32_t row_bytes;
  int32_t rows;
};
PlaneSize planeSize(int32_t pixel_format, int32_t width, int32_t height, size_t plane);
size_t planeCount(int32_t pixel_format);

/// Through the public operations: { width, ..., planes: [bytes without gaps or null] }.
Value describeFrame(const rtc::IVideoFrame& frame);
Value describeBuilder(const rtc::VideoFrameBuilder& builder);

class ScriptedVideoFrame;

/// Where frames that are used again go at their release, on the releasing thread.
class FrameHome {
 public:
  virtual ~FrameHome() = default;
  virtual void comeHome(std::unique_ptr<ScriptedVideoFrame> frame) = 0;
};

class ScriptedVideoFrame final : public rtc::IVideoFrame {
 public:
  /// In whose hand a frame is.
  enum State { kWithEngine, kGiven, kLent, kBuilt, kReleased };

  explicit ScriptedVideoFrame(const VideoFrameSpec& spec);
  /// Copies the planes of a builder that has a size and a known format.
  explicit ScriptedVideoFrame(const rtc::VideoFrameBuilder& builder);

  int32_t frameType() const override { return seen(spec_.frame_type); }
  int32_t pixelFormat() const override { return seen(spec_.pixel_format); }
  int64_t timestampUs() const override { return seen(spec_.timestamp_us); }
  int32_t width() const override { return seen(spec_.width); }
  int32_t height() const override { return seen(spec_.height); }
  int32_t rotation() const override { return seen(spec_.rotation); }
  uint8_t* planeData(int32_t plane) const override;
  int32_t planeStride(int32_t plane) const override;
  void release() override;

  /// To the module, in one of the ways of having a frame.
  void handOut(State state);
  /// Back from a callback that it was lent to, for good or to be used again.
  void takeBack();
  void takeBackForUse() { state_ = kWithEngine; }

  /// From now on the frame is not poisoned at its release but goes home.
  void setHome(std::shared_ptr<FrameHome> home) { home_ = std::move(home); }
  /// The home has closed: the frame ends like any other.
  static void retire(std::unique_ptr<ScriptedVideoFrame> frame);
  void setTimestamp(int64_t timestamp_us) { spec_.timestamp_us = timestamp_us; }
  uint8_t* firstByte() const { return planes_[0]; }
  size_t memorySize() const { return memory_.size(); }

 private:
  template <class T>
  T seen(T value) const {
    if (state_ == kReleased) {
      ++FrameStatistics::instance().touched_after_release;
    }
    return value;
  }

  VideoFrameSpec spec_;
  PixelBlock memory_;
  std::array<uint8_t*, kMaxPlanes> planes_{};
  std::array<int32_t, kMaxPlanes> strides_{};
  std::shared_ptr<FrameHome> home_;
  std::atomic<State> state_{kWithEngine};
};

}  // namespace corvane::scripted
