// Frames over GStreamer's buffers: the pixels stay where the pipeline put them.
#pragma once

#include <gst/video/video.h>

#include <atomic>
#include <cstdint>
#include <memory>

#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

/// How many frames one receiver may have at a time. Outlives the receiver with the last of its frames.
struct FrameBudget {
  explicit FrameBudget(int32_t limit) : left(limit) {}
  std::atomic<int32_t> left;
};

/// One frame's share of a budget, given back when it goes. Empty when there was none left.
class FrameTicket {
 public:
  static FrameTicket take(std::shared_ptr<FrameBudget> budget);
  FrameTicket() = default;
  FrameTicket(FrameTicket&&) = default;
  FrameTicket& operator=(FrameTicket&& other) noexcept {
    budget_.swap(other.budget_);
    return *this;
  }
  ~FrameTicket();

  explicit operator bool() const { return budget_ != nullptr; }

 private:
  std::shared_ptr<FrameBudget> budget_;
};

/// A mapped buffer. Holds a reference to the buffer until release(), which may come long after the pipeline is gone.
class BufferFrame final : public IVideoFrame {
 public:
  /// Null when the buffer cannot be read. `info` describes I420, RGBA or BGRA pixels.
  static BufferFrame* make(GstBuffer* buffer, const GstVideoInfo& info, int64_t timestamp_us, int32_t rotation,
                           FrameTicket ticket);

  int32_t frameType() const override { return kVideoFrameRawMemory; }
  int32_t pixelFormat() const override;
  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t width() const override { return GST_VIDEO_FRAME_WIDTH(&frame_); }
  int32_t height() const override { return GST_VIDEO_FRAME_HEIGHT(&frame_); }
  int32_t rotation() const override { return rotation_; }
  uint8_t* planeData(int32_t plane) const override;
  int32_t planeStride(int32_t plane) const override;
  void release() override;

 private:
  BufferFrame() = default;
  ~BufferFrame() = default;

  bool hasPlane(int32_t plane) const {
    return plane >= 0 && plane < static_cast<int32_t>(GST_VIDEO_FRAME_N_PLANES(&frame_));
  }

  GstVideoFrame frame_;  // filled by make()
  int64_t timestamp_us_ = 0;
  int32_t rotation_ = 0;
  FrameTicket ticket_;
};

/// GStreamer's name of a VideoPixelFormat, or GST_VIDEO_FORMAT_UNKNOWN.
GstVideoFormat gstFormat(int32_t pixel_format);

}  // namespace corvane::rtc
