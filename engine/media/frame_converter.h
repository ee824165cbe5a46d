// Turns pictures into another pixel format of the same size.
#pragma once

#include <gst/video/video.h>

#include <memory>

#include "core/gst_pointers.h"

namespace corvane::rtc {

/// Keeps its tables and recycles the memory of pictures that have been given back. One thread at a time.
class FrameConverter {
 public:
  FrameConverter() = default;
  ~FrameConverter() { reset(); }
  FrameConverter(const FrameConverter&) = delete;
  FrameConverter& operator=(const FrameConverter&) = delete;

  /// The picture in `format`, described by outInfo(). Null when it cannot be made.
  GstPtr<GstBuffer> convert(GstBuffer* picture, const GstVideoInfo& info, GstVideoFormat format);
  const GstVideoInfo& outInfo() const { return out_info_; }

 private:
  struct FreeConverter {
    void operator()(GstVideoConverter* converter) const { gst_video_converter_free(converter); }
  };

  bool prepare(const GstVideoInfo& info, GstVideoFormat format);
  void reset();

  GstVideoInfo in_info_ = {};
  GstVideoInfo out_info_ = {};
  std::unique_ptr<GstVideoConverter, FreeConverter> converter_;
  GstPtr<GstBufferPool> pool_;
};

}  // namespace corvane::rtc
