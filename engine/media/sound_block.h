// Sound inside the engine: ten milliseconds at a time, signed 16-bit samples at 48 kHz, channels interleaved.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane::rtc {

inline constexpr int32_t kSoundRate = 48000;               ///< samples a second of one channel
inline constexpr int32_t kBlockFrames = kSoundRate / 100;  ///< samples of one channel in a block
inline constexpr int32_t kMaxSoundChannels = 2;

struct SoundBlock {
  std::array<int16_t, static_cast<size_t>(kBlockFrames) * kMaxSoundChannels> storage;
  int32_t channels = 1;
  int64_t time_us = 0;  ///< of the first sample, in microseconds on the clock of all pipelines
  bool muted = false;   ///< the samples are silence because the source is muted

  std::span<int16_t> samples() { return {storage.data(), static_cast<size_t>(kBlockFrames * channels)}; }
  std::span<const int16_t> samples() const { return {storage.data(), static_cast<size_t>(kBlockFrames * channels)}; }
};

/// Takes sound from one of the engine's streams, block after block: what a room's publisher, a recorder or a meter is.
class SoundTap {
 public:
  /// On the stream's own thread, which has ten milliseconds for everything: it must not wait. The block is lent.
  virtual void onSound(const SoundBlock& block) = 0;

 protected:
  ~SoundTap() = default;
};

}  // namespace corvane::rtc
