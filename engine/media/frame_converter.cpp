#include "media/frame_converter.h"

namespace corvane::rtc {

GstPtr<GstBuffer> FrameConverter::convert(GstBuffer* picture, const GstVideoInfo& info, GstVideoFormat format) {
  if (!prepare(info, format)) return nullptr;
  GstBuffer* acquired = nullptr;
  if (gst_buffer_pool_acquire_buffer(pool_.get(), &acquired, nullptr) != GST_FLOW_OK) return nullptr;
  GstPtr<GstBuffer> converted(acquired);

  GstVideoFrame in;
  if (!gst_video_frame_map(&in, &in_info_, picture, GST_MAP_READ)) return nullptr;
  GstVideoFrame out;
  if (!gst_video_frame_map(&out, &out_info_, converted.get(), GST_MAP_WRITE)) {
    gst_video_frame_unmap(&in);
    return nullptr;
  }
  gst_video_converter_frame(converter_.get(), &in, &out);
  gst_video_frame_unmap(&out);
  gst_video_frame_unmap(&in);
  return converted;
}

bool FrameConverter::prepare(const GstVideoInfo& info, GstVideoFormat format) {
  if (converter_ != nullptr && gst_video_info_is_equal(&info, &in_info_) &&
      GST_VIDEO_INFO_FORMAT(&out_info_) == format) {
    return true;
  }
  reset();
  in_info_ = info;
  const auto width = static_cast<guint>(GST_VIDEO_INFO_WIDTH(&info));
  const auto height = static_cast<guint>(GST_VIDEO_INFO_HEIGHT(&info));
  if (!gst_video_info_set_format(&out_info_, format, width, height)) return false;
  // The converter refuses to change the rate, whether or not it means anything to it.
  GST_VIDEO_INFO_FPS_N(&out_info_) = GST_VIDEO_INFO_FPS_N(&info);
  GST_VIDEO_INFO_FPS_D(&out_info_) = GST_VIDEO_INFO_FPS_D(&info);
  converter_.reset(gst_video_converter_new(&in_info_, &out_info_, nullptr));
  if (converter_ == nullptr) return false;

  pool_.reset(gst_video_buffer_pool_new());
  const GstPtr<GstCaps> caps(gst_video_info_to_caps(&out_info_));
  GstStructure* config = gst_buffer_pool_get_config(pool_.get());
  gst_buffer_pool_config_set_params(config, caps.get(), static_cast<guint>(GST_VIDEO_INFO_SIZE(&out_info_)), 0, 0);
  if (gst_buffer_pool_set_config(pool_.get(), config) && gst_buffer_pool_set_active(pool_.get(), TRUE)) return true;
  reset();
  return false;
}

void FrameConverter::reset() {
  // Pictures that are still out keep the pool alive and are freed as they come back.
  if (pool_ != nullptr) gst_buffer_pool_set_active(pool_.get(), FALSE);
  pool_.reset();
  converter_.reset();
}

}  // namespace corvane::rtc
