// Who takes one stream's pictures inside the engine.
#pragma once

#include <gst/video/video.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace corvane::rtc {

/// Takes pictures from one of the engine's streams: what a room's encoder or a recorder is.
class PictureTap {
 public:
  /// On the stream's own thread: it must not wait. `time` is when the picture was due, in nanoseconds on the clock of
  /// all pipelines. The buffer is the stream's: keep a reference, write nothing.
  virtual void onPicture(GstBuffer* picture, const GstVideoInfo& info, GstClockTime time) = 0;

 protected:
  ~PictureTap() = default;
};

/// Any thread. Taps are the engine's own, so that they may be called under the lock; they add and remove none.
class PictureTaps {
 public:
  void add(PictureTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.push_back(&tap);
  }

  /// The tap is not called any more when this returns.
  void remove(PictureTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.erase(std::remove(taps_.begin(), taps_.end(), &tap), taps_.end());
  }

  void deliver(GstBuffer* picture, const GstVideoInfo& info, GstClockTime time) {
    const std::lock_guard lock(mutex_);
    for (PictureTap* tap : taps_) tap->onPicture(picture, info, time);
  }

 private:
  std::mutex mutex_;
  std::vector<PictureTap*> taps_;
};

}  // namespace corvane::rtc
