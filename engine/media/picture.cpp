#include "media/picture.h"

namespace corvane::rtc {

GstVideoInfo pictureInfo(GstVideoFormat format, int32_t width, int32_t height) {
  GstVideoInfo info;
  gst_video_info_set_format(&info, format, static_cast<guint>(width), static_cast<guint>(height));
  // What GStreamer takes for granted of a YUV picture depends on its size.
  if (GST_VIDEO_INFO_IS_YUV(&info)) gst_video_colorimetry_from_string(&info.colorimetry, GST_VIDEO_COLORIMETRY_BT601);
  return info;
}

GstPtr<GstBuffer> shareForElements(const Picture& picture) {
  GstPtr<GstBuffer> shared(gst_buffer_copy(picture.buffer.get()));
  if (gst_buffer_get_video_meta(shared.get()) == nullptr) {
    GstVideoInfo info = picture.info;
    gst_buffer_add_video_meta_full(shared.get(), GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_INFO_FORMAT(&info),
                                   static_cast<guint>(GST_VIDEO_INFO_WIDTH(&info)),
                                   static_cast<guint>(GST_VIDEO_INFO_HEIGHT(&info)), GST_VIDEO_INFO_N_PLANES(&info),
                                   info.offset, info.stride);
  }
  return shared;
}

GstPtr<GstBuffer> PicturePool::acquire(const GstVideoInfo& info) {
  if (!prepare(info)) return nullptr;
  GstBuffer* acquired = nullptr;
  if (gst_buffer_pool_acquire_buffer(pool_.get(), &acquired, nullptr) != GST_FLOW_OK) return nullptr;
  return GstPtr<GstBuffer>(acquired);
}

bool PicturePool::prepare(const GstVideoInfo& info) {
  if (pool_ != nullptr && gst_video_info_is_equal(&info, &info_)) return true;
  reset();
  info_ = info;
  pool_.reset(gst_video_buffer_pool_new());
  const GstPtr<GstCaps> caps(gst_video_info_to_caps(&info_));
  GstStructure* config = gst_buffer_pool_get_config(pool_.get());
  gst_buffer_pool_config_set_params(config, caps.get(), static_cast<guint>(GST_VIDEO_INFO_SIZE(&info_)), 0, 0);
  if (gst_buffer_pool_set_config(pool_.get(), config) && gst_buffer_pool_set_active(pool_.get(), TRUE)) return true;
  reset();
  return false;
}

void PicturePool::reset() {
  // Pictures that are still out keep the pool alive and are freed as they come back.
  if (pool_ != nullptr) gst_buffer_pool_set_active(pool_.get(), FALSE);
  pool_.reset();
}

bool makeWritable(Picture& picture, PicturePool& pool) {
  if (gst_buffer_is_writable(picture.buffer.get()) && gst_buffer_is_all_memory_writable(picture.buffer.get())) {
    return true;
  }
  const GstVideoInfo info = pictureInfo(GST_VIDEO_INFO_FORMAT(&picture.info), GST_VIDEO_INFO_WIDTH(&picture.info),
                                        GST_VIDEO_INFO_HEIGHT(&picture.info));
  GstPtr<GstBuffer> copy = pool.acquire(info);
  if (copy == nullptr) return false;
  {
    PicturePixels from(picture.buffer.get(), picture.info, GST_MAP_READ);
    PicturePixels to(copy.get(), info, GST_MAP_WRITE);
    if (!from || !to || !gst_video_frame_copy(to.frame(), from.frame())) return false;
  }
  picture.buffer = std::move(copy);
  picture.info = info;
  return true;
}

}  // namespace corvane::rtc
