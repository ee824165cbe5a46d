// Who sends or stores what an encoder makes.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "core/gst_pointers.h"

namespace corvane::rtc {

class EncodedTap {
 public:
  /// On the encoder's thread: it must not wait. One picture, or one packet of sound; the buffer is the encoder's.
  virtual void onEncoded(GstBuffer* buffer) = 0;

 protected:
  ~EncodedTap() = default;
};

/// Any thread. Taps are the engine's own, so that they may be called under the lock; they add and remove none.
class EncodedTaps {
 public:
  void add(EncodedTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.push_back(&tap);
  }

  /// The tap is not called any more when this returns.
  void remove(EncodedTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.erase(std::remove(taps_.begin(), taps_.end(), &tap), taps_.end());
  }

  void deliver(GstBuffer* buffer) {
    const std::lock_guard lock(mutex_);
    for (EncodedTap* tap : taps_) tap->onEncoded(buffer);
  }

 private:
  std::mutex mutex_;
  std::vector<EncodedTap*> taps_;
};

}  // namespace corvane::rtc
