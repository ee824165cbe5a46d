#include "media/sound_mixer.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace corvane::rtc {

namespace {

// From one block to another that follows it, in the time of one.
void fadeOver(SoundBlock& block, const SoundBlock& to) {
  auto next = to.samples().begin();
  auto sample = block.samples().begin();
  for (int32_t frame = 0; frame < kBlockFrames; ++frame) {
    for (int32_t channel = 0; channel < block.channels; ++channel, ++sample, ++next) {
      *sample = static_cast<int16_t>((*sample * (kBlockFrames - frame) + *next * frame) / kBlockFrames);
    }
  }
}

}  // namespace

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
  bool is_shortened = false;
  {
    const std::lock_guard lock(mutex_);
    if (is_dry_ && count_ < kReserve) return false;
    is_dry_ = count_ == 0;
    if (is_dry_) {
      watched_ = 0;
      return false;
    }
    block = blocks_[first_];
    first_ = (first_ + 1) % kCapacity;
    --count_;
    is_shortened = origin_ != Origin::kHere && shorten(block);
  }
  if (is_shortened) fadeOver(block, next_);
  applied_.apply(block, gain_.load(std::memory_order_relaxed));
  return true;
}

bool SoundMixer::Input::shorten(SoundBlock& block) {
  if (watched_ == 0) least_ = kCapacity;
  least_ = std::min(least_, count_);
  if (++watched_ < kWatched) return false;
  watched_ = 0;
  if (least_ < kReserve || blocks_[first_].channels != block.channels) return false;
  next_ = blocks_[first_];
  first_ = (first_ + 1) % kCapacity;
  --count_;
  return true;
}

std::shared_ptr<SoundMixer::Input> SoundMixer::addInput(Origin origin) {
  auto input = std::make_shared<Input>(origin);
  {
    const std::lock_guard lock(mutex_);
    forgetEnded();
    sources_.push_back({input, origin});
  }
  if (on_input_) on_input_();
  return input;
}

void SoundMixer::forgetEnded() {
  std::erase_if(sources_, [](const Source& source) { return source.input.expired(); });
}

bool SoundMixer::hasInputs() {
  const std::lock_guard lock(mutex_);
  forgetEnded();
  return !sources_.empty();
}

bool SoundMixer::add(Origin origin) {
  bool added = false;
  const std::lock_guard lock(mutex_);
  std::erase_if(sources_, [&](const Source& source) {
    const std::shared_ptr<Input> input = source.input.lock();
    if (input == nullptr) return true;
    if (source.origin != origin || !input->take(taken_)) return false;
    const auto samples = std::as_const(taken_).samples();
    const size_t repeat = static_cast<size_t>(kMaxSoundChannels / taken_.channels);
    for (size_t index = 0; index < sum_.size(); ++index) sum_[index] += samples[index / repeat];
    added = true;
    return false;
  });
  return added;
}

void SoundMixer::writeSum(SoundBlock& mixed) const {
  std::transform(sum_.begin(), sum_.end(), mixed.storage.begin(), [](int32_t sample) {
    return static_cast<int16_t>(
        std::clamp<int32_t>(sample, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
  });
}

void SoundMixer::mixRemote(SoundBlock& mixed) {
  mixed.channels = kMaxSoundChannels;
  mixed.muted = false;
  sum_.fill(0);
  add(Origin::kRemote);
  writeSum(mixed);
  applied_gain_.apply(mixed, gain_.load(std::memory_order_relaxed));
}

void SoundMixer::addRest(SoundBlock& mixed) {
  std::copy(mixed.storage.begin(), mixed.storage.end(), sum_.begin());
  if (add(Origin::kHere)) writeSum(mixed);
  applied_ducking_.apply(mixed, ducking_);
  taps_.deliver(mixed);
  std::copy(mixed.storage.begin(), mixed.storage.end(), sum_.begin());
  if (add(Origin::kEarMonitor)) writeSum(mixed);
  applied_device_gain_.apply(mixed, device_gain_.load(std::memory_order_relaxed));
}

}  // namespace corvane::rtc
