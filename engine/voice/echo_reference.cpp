#include "voice/echo_reference.h"

#include <algorithm>

namespace corvane::rtc {

void EchoReference::turn(bool on) {
  if (on_.load(std::memory_order_relaxed) == on) return;
  const std::lock_guard lock(mutex_);
  count_ = 0;
  on_.store(on, std::memory_order_relaxed);
}

void EchoReference::onSound(const SoundBlock& block) {
  if (!on_.load(std::memory_order_relaxed)) return;
  const std::lock_guard lock(mutex_);
  if (count_ == kCapacity) {
    first_ = (first_ + 1) % kCapacity;
    --count_;
  }
  PlayedBlock& kept = blocks_[(first_ + count_) % kCapacity];
  ++count_;
  kept.time_us = block.time_us;
  const auto samples = block.samples();
  if (block.channels == 1) {
    std::copy(samples.begin(), samples.end(), kept.samples.begin());
    return;
  }
  for (size_t frame = 0; frame < kept.samples.size(); ++frame) {
    kept.samples[frame] = static_cast<int16_t>((samples[2 * frame] + samples[2 * frame + 1]) / 2);
  }
}

bool EchoReference::pop(PlayedBlock& block) {
  const std::lock_guard lock(mutex_);
  if (count_ == 0) return false;
  block = blocks_[first_];
  first_ = (first_ + 1) % kCapacity;
  --count_;
  return true;
}

}  // namespace corvane::rtc
