#include "recording/recorded_pictures.h"

#include <cstring>
#include <utility>

#include "capture/pipeline.h"

namespace corvane::rtc {

namespace {

// Not as short as to repeat pictures of a stream of few a second.
constexpr GstClockTime kGap = GST_SECOND / 2;
constexpr GstClockTime kKeyFrameInterval = GST_SECOND;

Picture share(const Picture& picture) {
  return {GstPtr<GstBuffer>(gst_buffer_ref(picture.buffer.get())), picture.info, picture.timestamp_us,
          picture.rotation};
}

Picture blackPicture(int32_t width, int32_t height) {
  Picture picture;
  picture.info = pictureInfo(GST_VIDEO_FORMAT_I420, width, height);
  picture.buffer.reset(gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&picture.info), nullptr));
  constexpr guint8 kBlack = 16;
  constexpr guint8 kColourless = 128;
  const auto luma = static_cast<gsize>(GST_VIDEO_INFO_PLANE_OFFSET(&picture.info, 1));
  gst_buffer_memset(picture.buffer.get(), 0, kBlack, luma);
  gst_buffer_memset(picture.buffer.get(), luma, kColourless, GST_VIDEO_INFO_SIZE(&picture.info) - luma);
  return picture;
}

}  // namespace

RecordedPictures::RecordedPictures(std::function<void(int32_t width, int32_t height)> first)
    : first_(std::move(first)) {}

void RecordedPictures::begin(GstAppSrc* source, GstElement* encoder, GstClockTime origin) {
  const std::lock_guard lock(mutex_);
  source_ = source;
  encoder_ = encoder;
  origin_ = origin;
  key_frame_at_ = origin;
  if (last_.buffer != nullptr) push(origin);
}

void RecordedPictures::end() {
  const std::lock_guard lock(mutex_);
  source_ = nullptr;
  last_ = {};
}

void RecordedPictures::fillGap(int32_t width, int32_t height) {
  const std::lock_guard lock(mutex_);
  const GstClockTime now = clockNow();
  if (source_ == nullptr || (last_.buffer != nullptr && now - pushed_at_ < kGap)) return;
  if (last_.buffer == nullptr) last_ = blackPicture(width, height);
  push(now);
}

void RecordedPictures::onPicture(const Picture& picture) {
  Picture upright = share(picture);
  if (upright.rotation != 0) shaper_.turn(upright, upright.rotation, false);
  const int32_t width = GST_VIDEO_INFO_WIDTH(&upright.info);
  const int32_t height = GST_VIDEO_INFO_HEIGHT(&upright.info);
  {
    const std::lock_guard lock(mutex_);
    last_ = std::move(upright);
    if (source_ != nullptr) push(clockNow());
    if (std::exchange(told_, true)) return;
  }
  first_(width, height);
}

void RecordedPictures::push(GstClockTime now) {
  if (fed_info_.finfo == nullptr || !gst_video_info_is_equal(&last_.info, &fed_info_)) {
    fed_info_ = last_.info;
    const GstPtr<GstCaps> caps(gst_video_info_to_caps(&fed_info_));
    gst_app_src_set_caps(source_, caps.get());
  }
  if (now - key_frame_at_ >= kKeyFrameInterval) {
    key_frame_at_ = now;
    gst_element_send_event(encoder_, gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, TRUE, 0));
  }
  pushed_at_ = now;
  // Shares the pixels. The application's pictures have times of its own, so that the present counts.
  GstBuffer* fed = shareForElements(last_).release();
  GST_BUFFER_PTS(fed) = now - origin_;
  GST_BUFFER_DTS(fed) = GST_CLOCK_TIME_NONE;
  GST_BUFFER_DURATION(fed) = GST_CLOCK_TIME_NONE;
  gst_app_src_push_buffer(source_, fed);
}

}  // namespace corvane::rtc
