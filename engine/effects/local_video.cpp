#include "effects/local_video.h"

#include <utility>

namespace corvane::rtc {

void LocalVideo::setRotation(int32_t degrees) {
  const std::lock_guard lock(mutex_);
  settings_.rotation = degrees;
}

void LocalVideo::setMirror(int32_t mirror_type) {
  const std::lock_guard lock(mutex_);
  settings_.mirror = mirror_type;
}

void LocalVideo::setZoom(const ZoomArea& area) {
  const std::lock_guard lock(mutex_);
  settings_.zoom = area;
}

void LocalVideo::setWatermark(std::shared_ptr<const Watermark> watermark) {
  const std::lock_guard lock(mutex_);
  settings_.watermark.swap(watermark);
}

LocalVideo::Settings LocalVideo::settings() {
  const std::lock_guard lock(mutex_);
  return settings_;
}

VideoFrameInfo LocalVideo::show(Picture picture) {
  const Settings now = settings();
  // Where memory is short a picture goes on without an effect, but for the processor's: that may hide something.
  if (now.zoom.factor > 1) turner_.zoom(picture, now.zoom, (now.rotation + picture.rotation) % 360);
  const bool sends = taps_.any();
  const bool mirrors_shown_only = sends && now.mirror == kMirrorTypeRender;
  const bool mirrors_all = now.mirror != kMirrorTypeNone && !mirrors_shown_only;
  const bool mirrors_later = mirrors_all && processor_.isAttached();
  const bool mirrors_now = mirrors_all && !mirrors_later;
  if (now.rotation != 0 || mirrors_now) turner_.turn(picture, now.rotation, mirrors_now);
  const VideoFrameInfo shown = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info),
                                picture.rotation};
  if (!processor_.process(picture)) return shown;
  if (mirrors_later) mirrorer_.turn(picture, 0, true);

  const bool marks_shown = now.watermark != nullptr && now.watermark->config.visible_in_preview;
  const bool marks_both = marks_shown && !mirrors_shown_only;
  if (marks_both) blender_.blend(picture, now.watermark);
  if (sends) {
    Picture sent = {GstPtr<GstBuffer>(gst_buffer_ref(picture.buffer.get())), picture.info, picture.timestamp_us,
                    picture.rotation};
    if (now.watermark != nullptr && !marks_both) blender_.blend(sent, now.watermark);
    taps_.deliver(sent);
  }
  if (mirrors_shown_only) mirrorer_.turn(picture, 0, true);
  if (marks_shown && !marks_both) blender_.blend(picture, now.watermark);
  snapshots_.offer(kStreamIndexMain, picture);
  sink_.deliver(picture);
  return shown;
}

void LocalVideo::showAsIs(Picture picture) {
  snapshots_.offer(kStreamIndexMain, picture);
  taps_.deliver(picture);
  sink_.deliver(picture);
}

}  // namespace corvane::rtc
