// Who takes one stream's sound.
#pragma once

#include <algorithm>
#include <mutex>
#include <vector>

#include "media/sound_block.h"

namespace corvane::rtc {

/// Any thread. Taps are the engine's own, so that they may be called under the lock; they add and remove none.
class SoundTaps {
 public:
  void add(SoundTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.push_back(&tap);
  }

  /// The tap is not called any more when this returns.
  void remove(SoundTap& tap) {
    const std::lock_guard lock(mutex_);
    taps_.erase(std::remove(taps_.begin(), taps_.end(), &tap), taps_.end());
  }

  void deliver(const SoundBlock& block) {
    const std::lock_guard lock(mutex_);
    for (SoundTap* tap : taps_) tap->onSound(block);
  }

 private:
  std::mutex mutex_;
  std::vector<SoundTap*> taps_;
};

}  // namespace corvane::rtc
