#include "players/pcm.h"

#include <algorithm>

namespace corvane::rtc {

PcmMemorySource::PcmMemorySource(std::shared_ptr<const PcmMemory> memory, int32_t play_count, int64_t start_frame)
    : memory_(std::move(memory)),
      passes_left_(play_count > 0 ? play_count : -1),
      next_(static_cast<size_t>(start_frame) * kPcmChannels) {}

void PcmMemorySource::seek(int64_t frame) {
  const std::lock_guard lock(mutex_);
  next_ = static_cast<size_t>(frame) * kPcmChannels;
}

size_t PcmMemorySource::read(std::span<int16_t> samples) {
  const std::lock_guard lock(mutex_);
  size_t count = 0;
  while (count < samples.size() && passes_left_ != 0) {
    const size_t part = std::min(samples.size() - count, memory_->samples.size() - next_);
    std::copy_n(memory_->samples.begin() + static_cast<ptrdiff_t>(next_), part, samples.data() + count);
    count += part;
    next_ += part;
    if (next_ < memory_->samples.size()) continue;
    if (passes_left_ > 0) --passes_left_;
    if (passes_left_ != 0) next_ = 0;
  }
  return count;
}

bool PcmMemorySource::ended() {
  const std::lock_guard lock(mutex_);
  return passes_left_ == 0;
}

int64_t PcmMemorySource::position() {
  const std::lock_guard lock(mutex_);
  return static_cast<int64_t>(next_ / kPcmChannels);
}

}  // namespace corvane::rtc
