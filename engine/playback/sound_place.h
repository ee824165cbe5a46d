// Sound that comes from somewhere: louder in one ear than in the other, and fainter from afar.
#pragma once

#include <atomic>

#include "media/sound_block.h"

namespace corvane::rtc {

/// Factors, 0 to 1: 1 leaves the sound as it is.
struct SoundPlace {
  float left = 1.0F;
  float right = 1.0F;
};

class PlacedSound {
 public:
  /// Any thread. Sound moves there within a tenth of a second.
  void set(const SoundPlace& place) {
    left_.store(place.left, std::memory_order_relaxed);
    right_.store(place.right, std::memory_order_relaxed);
  }

  /// The sound as it is heard: of two channels, unless there is nothing to change. It is kept until the next call. One
  /// thread at a time.
  const SoundBlock& apply(const SoundBlock& block);

 private:
  std::atomic<float> left_ = 1.0F;
  std::atomic<float> right_ = 1.0F;
  // apply()'s.
  bool has_begun_ = false;
  SoundPlace now_;
  SoundBlock placed_;
};

}  // namespace corvane::rtc
