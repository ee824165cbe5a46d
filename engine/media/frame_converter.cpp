#include "media/frame_converter.h"

namespace corvane::rtc {

GstPtr<GstBuffer> FrameConverter::convert(GstBuffer* picture, const GstVideoInfo& info, GstVideoFormat format) {
  if (!prepare(info, format)) return nullptr;
  GstPtr<GstBuffer> converted = pool_.acquire(out_info_);
  if (converted == nullptr) return nullptr;
  PicturePixels in(picture, in_info_, GST_MAP_READ);
  PicturePixels out(converted.get(), out_info_, GST_MAP_WRITE);
  if (!in || !out) return nullptr;
  gst_video_converter_frame(converter_.get(), in.frame(), out.frame());
  return converted;
}

bool FrameConverter::prepare(const GstVideoInfo& info, GstVideoFormat format) {
  if (converter_ != nullptr && gst_video_info_is_equal(&info, &in_info_) &&
      GST_VIDEO_INFO_FORMAT(&out_info_) == format) {
    return true;
  }
  in_info_ = info;
  out_info_ = pictureInfo(format, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info));
  // The converter refuses to change the rate, whether or not it means anything to it.
  GST_VIDEO_INFO_FPS_N(&out_info_) = GST_VIDEO_INFO_FPS_N(&info);
  GST_VIDEO_INFO_FPS_D(&out_info_) = GST_VIDEO_INFO_FPS_D(&info);
  converter_.reset(gst_video_converter_new(&in_info_, &out_info_, nullptr));
  return converter_ != nullptr;
}

}  // namespace corvane::rtc
