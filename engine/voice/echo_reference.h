// What the speaker plays, on its way to the thread that takes its echo out of the microphone's sound.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "media/sound_block.h"

namespace corvane::rtc {

/// 10 ms of one channel.
struct PlayedBlock {
  std::array<int16_t, kBlockFrames> samples;
  int64_t time_us;  ///< when it is heard
};

/// A tap of playback. One thread at each end.
class EchoReference final : public SoundTap {
 public:
  /// While it is off nothing is kept. What was kept is gone when it is turned on again.
  void turn(bool on);

  void onSound(const SoundBlock& block) override;

  /// The oldest block; false when there is none.
  bool pop(PlayedBlock& block);

 private:
  // A capture that falls behind by more loses the oldest.
  static constexpr size_t kCapacity = 32;

  std::atomic<bool> on_ = false;
  std::mutex mutex_;
  std::array<PlayedBlock, kCapacity> blocks_;
  size_t first_ = 0;
  size_t count_ = 0;
};

}  // namespace corvane::rtc
