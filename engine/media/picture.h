// One picture on its way through the engine, and access to its pixels.
#pragma once

#include <gst/video/video.h>

#include <cstdint>
#include <utility>

#include "core/gst_pointers.h"

namespace corvane::rtc {

struct Picture {
  GstPtr<GstBuffer> buffer;
  GstVideoInfo info = {};
  int64_t timestamp_us = 0;
  int32_t rotation = 0;  ///< degrees clockwise that turn it upright: 0, 90, 180, 270
};

/// The engine's own layout of pictures: rows of multiples of four bytes, I420 in BT.601's limited range.
GstVideoInfo pictureInfo(GstVideoFormat format, int32_t width, int32_t height);

/// A buffer of its own over the same pixels, for elements: it says itself where the planes stand, as the caps do not.
GstPtr<GstBuffer> shareForElements(const Picture& picture);

/// A picture's planes, mapped for as long as this lives.
class PicturePixels {
 public:
  /// For GST_MAP_WRITE the buffer must have no other owner.
  PicturePixels(GstBuffer* buffer, const GstVideoInfo& info, GstMapFlags access)
      : mapped_(gst_video_frame_map(&frame_, &info, buffer, access)) {}
  ~PicturePixels() {
    if (mapped_) gst_video_frame_unmap(&frame_);
  }
  PicturePixels(const PicturePixels&) = delete;
  PicturePixels& operator=(const PicturePixels&) = delete;

  /// Whether the buffer could be mapped.
  explicit operator bool() const { return mapped_ != FALSE; }

  int32_t width() const { return GST_VIDEO_FRAME_WIDTH(&frame_); }
  int32_t height() const { return GST_VIDEO_FRAME_HEIGHT(&frame_); }
  int32_t planes() const { return static_cast<int32_t>(GST_VIDEO_FRAME_N_PLANES(&frame_)); }
  uint8_t* plane(int32_t index) const { return static_cast<uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, index)); }
  int32_t stride(int32_t index) const { return GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, index); }
  GstVideoFrame* frame() { return &frame_; }

 private:
  GstVideoFrame frame_ = {};
  gboolean mapped_;
};

/// Pictures of one layout whose memory is used again when they have been given back. One thread at a time.
class PicturePool {
 public:
  PicturePool() = default;
  ~PicturePool() { reset(); }
  PicturePool(const PicturePool&) = delete;
  PicturePool& operator=(const PicturePool&) = delete;

  /// A picture with whatever pixels, or null when there is no memory for it.
  GstPtr<GstBuffer> acquire(const GstVideoInfo& info);

 private:
  bool prepare(const GstVideoInfo& info);
  void reset();

  GstVideoInfo info_ = {};
  GstPtr<GstBufferPool> pool_;
};

/// Sees to it that the picture's I420 pixels are its own and may be written; copies them only when they are shared with
/// a decoder, a repeated picture or a reader.
bool makeWritable(Picture& picture, PicturePool& pool);

}  // namespace corvane::rtc
