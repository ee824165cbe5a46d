#include "trials/kept_sound.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

void silence(SoundBlock& block) {
  const auto samples = block.samples();
  std::fill(samples.begin(), samples.end(), int16_t{0});
}

}  // namespace

void RecordedSound::add(const SoundBlock& block) {
  const auto samples = block.samples();
  if (samples_.size() + samples.size() <= kLongest) samples_.insert(samples_.end(), samples.begin(), samples.end());
}

bool RecordedSound::next(SoundBlock& block) {
  const auto samples = block.samples();
  if (played_ + samples.size() > samples_.size()) {
    silence(block);
    return false;
  }
  std::copy_n(samples_.begin() + static_cast<ptrdiff_t>(played_), samples.size(), samples.begin());
  played_ += samples.size();
  return true;
}

// A second more than the delay, for clocks that do not agree.
DelayedSound::DelayedSound(int32_t seconds)
    : delay_(static_cast<size_t>(seconds) * kSoundRate), ring_(delay_ + kSoundRate) {}

void DelayedSound::add(const SoundBlock& block) {
  const std::lock_guard lock(mutex_);
  for (const int16_t sample : block.samples()) ring_[written_++ % ring_.size()] = sample;
  // What no speaker took in time is left out.
  if (written_ - read_ > ring_.size()) read_ = written_ - delay_;
}

bool DelayedSound::next(SoundBlock& block) {
  constexpr int16_t kFaint = 100;
  const auto samples = block.samples();
  const std::lock_guard lock(mutex_);
  comes_back_ = comes_back_ || written_ >= delay_;
  if (!comes_back_ || written_ - read_ < samples.size()) {
    silence(block);
    return false;
  }
  for (int16_t& sample : samples) sample = ring_[read_++ % ring_.size()];
  return std::any_of(samples.begin(), samples.end(), [](int16_t sample) { return sample > kFaint; });
}

}  // namespace corvane::rtc
