#include "capture/sound_queue.h"

#include <algorithm>

namespace corvane::rtc {

SoundQueue::SoundQueue() : ring_(kCapacity) {}

bool SoundQueue::pushWhenRoom(std::span<const int16_t> samples, const std::stop_token& stop) {
  while (!samples.empty()) {
    {
      std::unique_lock lock(mutex_);
      if (!changed_.wait(lock, stop, [this] { return stored() < kCapacity; })) return false;
      const size_t part = std::min(samples.size(), kCapacity - stored());
      write(samples.first(part));
      samples = samples.subspan(part);
    }
    changed_.notify_all();
  }
  return true;
}

void SoundQueue::pushNewest(std::span<const int16_t> samples, GstClockTime time) {
  if (samples.size() > kCapacity) {
    time += gst_util_uint64_scale_int(samples.size() - kCapacity, GST_SECOND, kSoundRate);
    samples = samples.last(kCapacity);
  }
  {
    const std::lock_guard lock(mutex_);
    const size_t room = kCapacity - stored();
    if (samples.size() > room) read_ += static_cast<int64_t>(samples.size() - room);
    timed_sample_ = written_;
    timed_at_ = time;
    write(samples);
  }
  changed_.notify_all();
}

bool SoundQueue::hasRoom(size_t samples) {
  const std::lock_guard lock(mutex_);
  return samples <= kCapacity - stored();
}

void SoundQueue::clear() {
  const std::lock_guard lock(mutex_);
  read_ = written_;
}

bool SoundQueue::pop(SoundBlock& block, const std::stop_token& stop) {
  {
    std::unique_lock lock(mutex_);
    if (!changed_.wait(lock, stop, [this] { return stored() >= kBlockFrames; })) return false;
    block.channels = 1;
    const size_t at = static_cast<size_t>(read_) % kCapacity;
    const size_t until_end = std::min<size_t>(kBlockFrames, kCapacity - at);
    std::copy_n(ring_.begin() + static_cast<ptrdiff_t>(at), until_end, block.storage.begin());
    std::copy_n(ring_.begin(), kBlockFrames - until_end, block.storage.begin() + static_cast<ptrdiff_t>(until_end));
    constexpr int64_t kMicroseconds = 1'000'000;
    block.time_us =
        static_cast<int64_t>(GST_TIME_AS_USECONDS(timed_at_)) + (read_ - timed_sample_) * kMicroseconds / kSoundRate;
    read_ += kBlockFrames;
  }
  changed_.notify_all();
  return true;
}

void SoundQueue::write(std::span<const int16_t> samples) {
  const size_t at = static_cast<size_t>(written_) % kCapacity;
  const size_t until_end = std::min(samples.size(), kCapacity - at);
  std::copy_n(samples.begin(), until_end, ring_.begin() + static_cast<ptrdiff_t>(at));
  std::copy(samples.begin() + static_cast<ptrdiff_t>(until_end), samples.end(), ring_.begin());
  written_ += static_cast<int64_t>(samples.size());
}

}  // namespace corvane::rtc
