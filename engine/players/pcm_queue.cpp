#include "players/pcm_queue.h"

#include <algorithm>

namespace corvane::rtc {

PcmQueue::PcmQueue() : ring_(kCapacity), marks_{{0, 0}} {}

bool PcmQueue::write(std::span<const int16_t> samples, int64_t frame) {
  std::unique_lock lock(mutex_);
  while (!samples.empty()) {
    // Not for every sample that was read: the writer is woken for something worth decoding.
    const size_t wanted = std::min(samples.size(), kCapacity / 4);
    changed_.wait(lock, [&] { return flushing_ || closed_ || room() >= wanted; });
    if (flushing_ || closed_) return false;
    if (wants_mark_) {
      wants_mark_ = false;
      marks_.push_back({written_, frame});
      passMarks();
    }
    if (sought_flushed_) {
      sought_flushed_ = false;
      sought_ = -1;
    }
    const size_t part = std::min(samples.size(), room());
    append(samples.first(part));
    samples = samples.subspan(part);
  }
  return true;
}

bool PcmQueue::tryWrite(std::span<const int16_t> samples) {
  const std::lock_guard lock(mutex_);
  if (closed_ || samples.size() > room()) return false;
  append(samples);
  return true;
}

void PcmQueue::append(std::span<const int16_t> samples) {
  const size_t at = static_cast<size_t>(written_) % kCapacity;
  const size_t first = std::min(samples.size(), kCapacity - at);
  std::copy_n(samples.begin(), first, ring_.begin() + static_cast<ptrdiff_t>(at));
  std::copy(samples.begin() + static_cast<ptrdiff_t>(first), samples.end(), ring_.begin());
  written_ += static_cast<int64_t>(samples.size());
}

void PcmQueue::passMarks() {
  while (marks_.size() > 1 && marks_[1].at <= read_) marks_.pop_front();
}

void PcmQueue::beginFlush() {
  const std::lock_guard lock(mutex_);
  flushing_ = true;
  ended_ = false;
  const int64_t was_at = marks_.front().frame + (read_ - marks_.front().at) / int64_t{kPcmChannels};
  read_ = written_;
  marks_.assign(1, {written_, was_at});
  wants_mark_ = true;
  sought_flushed_ = sought_ >= 0;
  changed_.notify_all();
}

void PcmQueue::endFlush() {
  const std::lock_guard lock(mutex_);
  flushing_ = false;
}

void PcmQueue::beginPass() {
  const std::lock_guard lock(mutex_);
  wants_mark_ = true;
}

void PcmQueue::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
}

void PcmQueue::announceSeek(int64_t frame) {
  const std::lock_guard lock(mutex_);
  sought_ = frame;
  sought_flushed_ = false;
}

void PcmQueue::cancelSeek() {
  const std::lock_guard lock(mutex_);
  sought_ = -1;
  sought_flushed_ = false;
}

void PcmQueue::close() {
  const std::lock_guard lock(mutex_);
  closed_ = true;
  changed_.notify_all();
}

size_t PcmQueue::read(std::span<int16_t> samples) {
  const std::lock_guard lock(mutex_);
  const size_t count = std::min(samples.size(), static_cast<size_t>(written_ - read_));
  const size_t at = static_cast<size_t>(read_) % kCapacity;
  const size_t first = std::min(count, kCapacity - at);
  std::copy_n(ring_.begin() + static_cast<ptrdiff_t>(at), first, samples.begin());
  std::copy_n(ring_.begin(), count - first, samples.begin() + static_cast<ptrdiff_t>(first));
  read_ += static_cast<int64_t>(count);
  passMarks();
  if (count > 0) changed_.notify_one();
  return count;
}

bool PcmQueue::ended() {
  const std::lock_guard lock(mutex_);
  return ended_ && read_ == written_;
}

int64_t PcmQueue::position() {
  const std::lock_guard lock(mutex_);
  if (sought_ >= 0) return sought_;
  return marks_.front().frame + (read_ - marks_.front().at) / int64_t{kPcmChannels};
}

}  // namespace corvane::rtc
