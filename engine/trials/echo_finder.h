// Finds out whether a microphone hears what a speaker plays.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>

#include "corvane_rtc/device_events.h"
#include "media/sound_block.h"

namespace corvane::rtc {

/// Compares how loud both are, every 10 ms for some seconds, and so at any delay. Any thread.
class EchoFinder {
 public:
  /// Blocks of one channel, with the time at which they are heard, or were captured.
  void addPlayed(const SoundBlock& block) { add(block, played_); }
  void addHeard(const SoundBlock& block) { add(block, heard_); }

  /// None until there was enough of both.
  std::optional<HardwareEchoDetectionResult> result();

 private:
  static constexpr size_t kBlocks = 500;  // 5 s

  using Levels = std::array<float, kBlocks>;  // dB

  struct Side {
    Levels levels;
    int64_t last = -1;  // the number of the last block
  };

  void add(const SoundBlock& block, Side& side);

  std::mutex mutex_;
  int64_t start_us_ = -1;
  Side played_;
  Side heard_;
};

}  // namespace corvane::rtc
