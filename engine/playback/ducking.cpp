#include "playback/ducking.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

// 12 dB: still to be followed.
constexpr float kDucked = 0.25F;
// In each 10 ms: down within a tenth of a second, up again within half a second.
constexpr float kDown = 0.075F;
constexpr float kUp = 0.015F;
// Longer than the pauses between words.
constexpr int64_t kHoldUs = 700'000;
// A syllable is longer; a knock that happens to repeat itself is not.
constexpr int32_t kVoicedBlocks = 3;
constexpr float kFullScale = 32768.0F;

}  // namespace

void Ducking::turn(bool on) {
  const std::lock_guard lock(mutex_);
  if (on == on_) return;
  on_ = on;
  if (on) {
    microphone_.add(*this);
  } else {
    microphone_.remove(*this);
    until_us_.store(0, std::memory_order_relaxed);
  }
}

void Ducking::onSound(const SoundBlock& block) {
  if (block.channels != 1) return;
  const auto samples = block.samples();
  std::transform(samples.begin(), samples.end(), samples_.begin(),
                 [](int16_t sample) { return static_cast<float>(sample) / kFullScale; });
  voiced_in_a_row_ = voice_.detect(samples_) ? voiced_in_a_row_ + 1 : 0;
  if (voiced_in_a_row_ >= kVoicedBlocks) until_us_.store(block.time_us + kHoldUs, std::memory_order_relaxed);
}

float Ducking::next(int64_t time_us) {
  factor_ = time_us < until_us_.load(std::memory_order_relaxed) ? std::max(kDucked, factor_ - kDown)
                                                                : std::min(1.0F, factor_ + kUp);
  return factor_;
}

}  // namespace corvane::rtc
