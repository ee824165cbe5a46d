// Turns pictures into another pixel format, or the engine's own colours, of the same size.
#pragma once

#include <gst/video/video.h>

#include <memory>

#include "core/gst_pointers.h"
#include "media/picture.h"

namespace corvane::rtc {

/// Keeps its tables and recycles the memory of pictures that have been given back. One thread at a time.
class FrameConverter {
 public:
  /// The picture in `format`, described by outInfo(). Null when it cannot be made.
  GstPtr<GstBuffer> convert(GstBuffer* picture, const GstVideoInfo& info, GstVideoFormat format);
  const GstVideoInfo& outInfo() const { return out_info_; }

 private:
  struct FreeConverter {
    void operator()(GstVideoConverter* converter) const { gst_video_converter_free(converter); }
  };

  bool prepare(const GstVideoInfo& info, GstVideoFormat format);

  GstVideoInfo in_info_ = {};
  GstVideoInfo out_info_ = {};
  std::unique_ptr<GstVideoConverter, FreeConverter> converter_;
  PicturePool pool_;
};

}  // namespace corvane::rtc
