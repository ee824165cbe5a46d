// The pictures of a recording: a stream's own as they come, and the last one again while none come.
#pragma once

#include <gst/app/app.h>

#include <cstdint>
#include <functional>
#include <mutex>

#include "effects/picture_shaper.h"
#include "media/picture.h"
#include "media/picture_taps.h"

namespace corvane::rtc {

/// Any thread, but for what is marked otherwise.
class RecordedPictures final : public PictureTap {
 public:
  /// `first` is told the size of the first picture as it is seen upright, once, on the stream's thread.
  explicit RecordedPictures(std::function<void(int32_t width, int32_t height)> first);

  /// Pictures go to `source` from now on, and `encoder` is asked for a key frame every second: a file that ends early
  /// can be played up to the last of them. Both live until end().
  void begin(GstAppSrc* source, GstElement* encoder, GstClockTime origin);
  /// No picture goes to the source any more when this returns.
  void end();

  /// Pushes the last picture once more if it is old, or a black one of that size if there has been none: a muxer waits
  /// for each of its streams.
  void fillGap(int32_t width, int32_t height);

  /// The stream's thread.
  void onPicture(const Picture& picture) override;

 private:
  void push(GstClockTime now);

  const std::function<void(int32_t width, int32_t height)> first_;
  PictureShaper shaper_;  // the stream's thread's

  std::mutex mutex_;
  Picture last_;
  bool told_ = false;
  GstAppSrc* source_ = nullptr;
  GstElement* encoder_ = nullptr;
  GstClockTime origin_ = 0;
  GstClockTime pushed_at_ = 0;
  GstClockTime key_frame_at_ = 0;
  GstVideoInfo fed_info_ = {};
};

}  // namespace corvane::rtc
