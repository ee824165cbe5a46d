#include "media/sound_mixer.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace corvane::rtc {

void SoundMixer::Input::push(const SoundBlock& block) {
  const std::lock_guard lock(mutex_);
  if (count_ == kCapacity) {
    first_ = (first_ + 1) % kCapacity;
    --count_;
  }
  blocks_[(first_ + count_) % kCapacity] = block;
  ++count_;
}

bool SoundMixer::Input::take(SoundBlock& block) {
  {
    const std::lock_guard lock(mutex_);
    if (is_dry_ && count_ < kReserve) return false;
    is_dry_ = count_ == 0;
    if (is_dry_) return false;
    block = blocks_[first_];
    first_ = (first_ + 1) % kCapacity;
    --count_;
  }
  applied_.apply(block, gain_.load(std::memory_order_relaxed));
  return true;
}

std::shared_ptr<SoundMixer::Input> SoundMixer::addInput() {
  auto input = std::make_shared<Input>();
  const std::lock_guard lock(mutex_);
  inputs_.push_back(input);
  return input;
}

bool SoundMixer::hasInputs() {
  const std::lock_guard lock(mutex_);
  std::erase_if(inputs_, [](const std::weak_ptr<Input>& input) { return input.expired(); });
  return !inputs_.empty();
}

void SoundMixer::mix(SoundBlock& mixed, int64_t time_us) {
  sum_.fill(0);
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(inputs_, [this](const std::weak_ptr<Input>& candidate) {
      const std::shared_ptr<Input> input = candidate.lock();
      if (input == nullptr) return true;
      if (!input->take(taken_)) return false;
      const auto samples = std::as_const(taken_).samples();
      const size_t repeat = static_cast<size_t>(kMaxSoundChannels / taken_.channels);
      for (size_t index = 0; index < sum_.size(); ++index) sum_[index] += samples[index / repeat];
      return false;
    });
  }
  mixed.channels = kMaxSoundChannels;
  mixed.time_us = time_us;
  mixed.muted = false;
  std::transform(sum_.begin(), sum_.end(), mixed.storage.begin(), [](int32_t sample) {
    return static_cast<int16_t>(
        std::clamp<int32_t>(sample, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
  });
  applied_gain_.apply(mixed, gain_.load(std::memory_order_relaxed));
  taps_.deliver(mixed);
  applied_device_gain_.apply(mixed, device_gain_.load(std::memory_order_relaxed));
}

}  // namespace corvane::rtc
