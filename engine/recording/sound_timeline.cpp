#include "recording/sound_timeline.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace corvane::rtc {

namespace {

constexpr int64_t kMicroseconds = 1'000'000;
// Devices tell times that jump a little: a stream's blocks stand side by side unless one is further off than this.
constexpr int64_t kJitter = kSoundRate / 50;

int16_t sum(int16_t left, int16_t right) {
  return static_cast<int16_t>(
      std::clamp<int32_t>(left + right, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
}

}  // namespace

int64_t SoundTimeline::positionOf(int64_t time_us) const {
  return (time_us - begin_us_) * kSoundRate / kMicroseconds;
}

void SoundTimeline::begin(int64_t time_us) {
  const std::lock_guard lock(mutex_);
  begin_us_ = time_us;
  ring_.assign(static_cast<size_t>(kCapacity) * kMaxSoundChannels, 0);
}

void SoundTimeline::add(const SoundBlock& block, int64_t& next) {
  const auto samples = block.samples();
  const auto channels = static_cast<size_t>(block.channels);
  const std::lock_guard lock(mutex_);
  if (ring_.empty()) return;
  const int64_t timed = positionOf(block.time_us);
  const int64_t start = std::abs(timed - next) <= kJitter ? next : timed;
  next = start + kBlockFrames;
  const int64_t first = std::max(start, read_);
  const int64_t end = std::min(next, read_ + kCapacity);
  for (int64_t at = first; at < end; ++at) {
    const int16_t* from = &samples[static_cast<size_t>(at - start) * channels];
    int16_t* to = &ring_[static_cast<size_t>(at % kCapacity) * kMaxSoundChannels];
    to[0] = sum(to[0], from[0]);
    to[1] = sum(to[1], from[channels - 1]);
  }
}

GstPtr<GstBuffer> SoundTimeline::take(int64_t until_us) {
  const std::lock_guard lock(mutex_);
  const int64_t count = ring_.empty() ? 0 : std::min(positionOf(until_us) - read_, kCapacity);
  if (count <= 0) return nullptr;
  constexpr size_t kFrameBytes = sizeof(int16_t) * kMaxSoundChannels;
  const size_t bytes = static_cast<size_t>(count) * kFrameBytes;
  GstPtr<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, bytes, nullptr));
  GST_BUFFER_PTS(buffer.get()) = gst_util_uint64_scale(static_cast<guint64>(read_), GST_SECOND, kSoundRate);
  GST_BUFFER_DURATION(buffer.get()) = gst_util_uint64_scale(static_cast<guint64>(count), GST_SECOND, kSoundRate);
  const auto at = static_cast<size_t>(read_ % kCapacity) * kMaxSoundChannels;
  const size_t until_end = std::min(bytes, (ring_.size() - at) * sizeof(int16_t));
  gst_buffer_fill(buffer.get(), 0, &ring_[at], until_end);
  gst_buffer_fill(buffer.get(), until_end, ring_.data(), bytes - until_end);
  std::memset(&ring_[at], 0, until_end);
  std::memset(ring_.data(), 0, bytes - until_end);
  read_ += count;
  return buffer;
}

}  // namespace corvane::rtc
