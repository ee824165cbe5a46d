#include "media/sound_gain.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane::rtc {

namespace {

int16_t scale(int16_t sample, float gain) {
  constexpr float kLow = std::numeric_limits<int16_t>::min();
  constexpr float kHigh = std::numeric_limits<int16_t>::max();
  return static_cast<int16_t>(std::clamp(std::nearbyint(static_cast<float>(sample) * gain), kLow, kHigh));
}

}  // namespace

void SoundGain::apply(SoundBlock& block, float gain) {
  const float from = last_.value_or(gain);
  last_ = gain;
  if (from == 1.0F && gain == 1.0F) return;
  if (from == gain) {
    for (int16_t& sample : block.samples()) sample = scale(sample, gain);
    return;
  }
  const float step = (gain - from) / static_cast<float>(kBlockFrames);
  float now = from;
  auto sample = block.samples().begin();
  for (int32_t frame = 0; frame < kBlockFrames; ++frame) {
    now += step;
    for (int32_t channel = 0; channel < block.channels; ++channel, ++sample) *sample = scale(*sample, now);
  }
}

}  // namespace corvane::rtc
