// Between the thread that takes sound from a microphone and the one that hands it on ten milliseconds at a time.
#pragma once

#include <gst/gst.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <stop_token>
#include <vector>

#include "media/sound_block.h"

namespace corvane::rtc {

/// Samples of one or two channels at 48 kHz, in the order in which they came. One thread at each end.
class SoundQueue {
 public:
  explicit SoundQueue(int32_t channels = 1);

  int32_t channels() const { return channels_; }

  /// Waits for room: a clip is decoded ahead of its time, no further than the queue is long. False when stopped.
  bool pushWhenRoom(std::span<const int16_t> samples, const std::stop_token& stop);
  /// Makes room by dropping the oldest. `time`: of the first sample, in nanoseconds on the clock of all pipelines.
  void pushNewest(std::span<const int16_t> samples, GstClockTime time);

  /// Whether so many samples can be pushed without dropping any. For the thread that pushes.
  bool hasRoom(size_t samples);
  /// Drops what waits.
  void clear();

  /// Waits for a whole block and gives it the time of its first sample. False when stopped.
  bool pop(SoundBlock& block, const std::stop_token& stop);

 private:
  // Half a second: what plays on while a clip is wound back to its start.
  static constexpr size_t kCapacity = kSoundRate / 2;  // of one channel

  void write(std::span<const int16_t> samples);
  size_t stored() const { return static_cast<size_t>(written_ - read_); }

  const int32_t channels_;
  const size_t capacity_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<int16_t> ring_;
  // Samples since the start; the ring holds those between the two.
  int64_t written_ = 0;
  int64_t read_ = 0;
  // When the sample of that number was captured; the others' times follow from it.
  int64_t timed_sample_ = 0;
  GstClockTime timed_at_ = 0;
};

}  // namespace corvane::rtc
