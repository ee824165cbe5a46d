// Who takes one stream's pictures inside the engine.
#pragma once

#include <algorithm>
#include <mutex>
#include <vector>

#include "media/picture.h"

namespace corvane::rtc {

/// Takes pictures from one of the engine's streams: what a room's encoder or a recorder is.
class PictureTap {
 public:
  /// On the stream's own thread: it must not wait. The buffer is the stream's: keep a reference, write nothing.
  virtual void onPicture(const Picture& picture) = 0;

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

  void deliver(const Picture& picture) {
    const std::lock_guard lock(mutex_);
    for (PictureTap* tap : taps_) tap->onPicture(picture);
  }

  bool any() {
    const std::lock_guard lock(mutex_);
    return !taps_.empty();
  }

 private:
  std::mutex mutex_;
  std::vector<PictureTap*> taps_;
};

}  // namespace corvane::rtc
