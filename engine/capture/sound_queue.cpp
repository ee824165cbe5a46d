#include "capture/sound_queue.h"

#include <algorithm>

namespace corvane::rtc {

SoundQueue::SoundQueue(int32_t channels)
    : channels_(channels), capacity_(kCapacity * static_cast<size_t>(channels)), ring_(capacity_) {}

bool SoundQueue::pushWhenRoom(std::span<const int16_t> samples, const std::stop_token& stop) {
  while (!samples.empty()) {
    {
      std::unique_lock lock(mutex_);
      if (!changed_.wait(lock, stop, [this] { return stored() < capacity_; })) return false;
      const size_t part = std::min(samples.size(), capacity_ - stored());
      write(samples.first(part));
      samples = samples.subspan(part);
    }
    changed_.notify_all();
  }
  return true;
}

void SoundQueue::pushNewest(std::span<const int16_t> samples, GstClockTime time) {
  if (samples.size() > capacity_) {
    time += gst_util_uint64_scale_int(samples.size() - capacity_, GST_SECOND, kSoundRate * channels_);
    samples = samples.last(capacity_);
  }
  {
    const std::lock_guard lock(mutex_);
    const size_t room = capacity_ - stored();
    if (samples.size() > room) read_ += static_cast<int64_t>(samples.size() - room);
    timed_sample_ = written_;
    timed_at_ = time;
    write(samples);
  }
  changed_.notify_all();
}

bool SoundQueue::hasRoom(size_t samples) {
  const std::lock_guard lock(mutex_);
  return samples <= capacity_ - stored();
}

void SoundQueue::clear() {
  const std::lock_guard lock(mutex_);
  read_ = written_;
}

bool SoundQueue::pop(SoundBlock& block, const std::stop_token& stop) {
  const auto block_size = static_cast<size_t>(kBlockFrames) * static_cast<size_t>(channels_);
  {
    std::unique_lock lock(mutex_);
    if (!changed_.wait(lock, stop, [&] { return stored() >= block_size; })) return false;
    block.channels = channels_;
    const size_t at = static_cast<size_t>(read_) % capacity_;
    const size_t until_end = std::min(block_size, capacity_ - at);
    std::copy_n(ring_.begin() + static_cast<ptrdiff_t>(at), until_end, block.storage.begin());
    std::copy_n(ring_.begin(), block_size - until_end, block.storage.begin() + static_cast<ptrdiff_t>(until_end));
    constexpr int64_t kMicroseconds = 1'000'000;
    block.time_us = static_cast<int64_t>(GST_TIME_AS_USECONDS(timed_at_)) +
                    (read_ - timed_sample_) / channels_ * kMicroseconds / kSoundRate;
    read_ += static_cast<int64_t>(block_size);
  }
  changed_.notify_all();
  return true;
}

void SoundQueue::write(std::span<const int16_t> samples) {
  const size_t at = static_cast<size_t>(written_) % capacity_;
  const size_t until_end = std::min(samples.size(), capacity_ - at);
  std::copy_n(samples.begin(), until_end, ring_.begin() + static_cast<ptrdiff_t>(at));
  std::copy(samples.begin() + static_cast<ptrdiff_t>(until_end), samples.end(), ring_.begin());
  written_ += static_cast<int64_t>(samples.size());
}

}  // namespace corvane::rtc
