#include "effects/local_video.h"

#include <utility>

namespace corvane::rtc {

void LocalVideo::setRotation(int32_t degrees) {
  const std::lock_guard lock(mutex_);
  settings_.rotation = degrees;
}

void LocalVideo::setMirror(bool mirror) {
  const std::lock_guard lock(mutex_);
  settings_.mirror = mirror;
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
  const bool mirrors_later = now.mirror && processor_.isAttached();
  const bool mirrors_now = now.mirror && !mirrors_later;
  if (now.rotation != 0 || mirrors_now) turner_.turn(picture, now.rotation, mirrors_now);
  const VideoFrameInfo shown = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info),
                                picture.rotation};
  if (!processor_.process(picture)) return shown;
  if (mirrors_later) mirrorer_.turn(picture, 0, true);
  if (now.watermark != nullptr && now.watermark->config.visible_in_preview) blender_.blend(picture, now.watermark);
  showAsIs(std::move(picture));
  return shown;
}

void LocalVideo::showAsIs(Picture picture) {
  snapshots_.offer(kStreamIndexMain, picture);
  sink_.deliver(picture);
}

}  // namespace corvane::rtc
