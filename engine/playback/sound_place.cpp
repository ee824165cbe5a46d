#include "playback/sound_place.h"

#include <algorithm>
#include <cmath>

namespace corvane::rtc {

namespace {

// Of a factor, in one block: who jumps across the room is not heard to click.
constexpr float kLargestStep = 0.1F;

float nextFactor(float now, float wanted) {
  return std::clamp(wanted, now - kLargestStep, now + kLargestStep);
}

int16_t scale(int16_t sample, float factor) {
  return static_cast<int16_t>(std::nearbyint(static_cast<float>(sample) * factor));
}

}  // namespace

const SoundBlock& PlacedSound::apply(const SoundBlock& block) {
  const SoundPlace wanted = {left_.load(std::memory_order_relaxed), right_.load(std::memory_order_relaxed)};
  if (!has_begun_) now_ = wanted;
  has_begun_ = true;
  const SoundPlace from = now_;
  now_ = {nextFactor(from.left, wanted.left), nextFactor(from.right, wanted.right)};
  if (from.left == 1.0F && from.right == 1.0F && now_.left == 1.0F && now_.right == 1.0F) return block;

  placed_.channels = kMaxSoundChannels;
  placed_.time_us = block.time_us;
  placed_.muted = block.muted;
  const float left_step = (now_.left - from.left) / static_cast<float>(kBlockFrames);
  const float right_step = (now_.right - from.right) / static_cast<float>(kBlockFrames);
  const bool is_stereo = block.channels == kMaxSoundChannels;
  SoundPlace at = from;
  const auto samples = block.samples();
  for (size_t frame = 0; frame < static_cast<size_t>(kBlockFrames); ++frame) {
    at.left += left_step;
    at.right += right_step;
    const int16_t left = samples[is_stereo ? 2 * frame : frame];
    const int16_t right = is_stereo ? samples[2 * frame + 1] : left;
    placed_.storage[2 * frame] = scale(left, at.left);
    placed_.storage[2 * frame + 1] = scale(right, at.right);
  }
  return placed_;
}

}  // namespace corvane::rtc
