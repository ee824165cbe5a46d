// Brings the sound of several sources together: what remote users and players send, for the speaker.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "media/sound_block.h"
#include "media/sound_gain.h"
#include "media/sound_taps.h"

namespace corvane::rtc {

/// Any thread, but for what is marked otherwise.
class SoundMixer {
 public:
  /// One source. It is mixed in for as long as its owner keeps it.
  class Input {
   public:
    /// Takes 10 ms of one or two channels. They wait, for as long as the source is ahead; of more than 80 ms the oldest
    /// go. One thread at a time.
    void push(const SoundBlock& block);
    /// A factor: 1 leaves the sound as it is.
    void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }

   private:
    friend class SoundMixer;

    // False when it has nothing to play just now. The mixing thread's.
    bool take(SoundBlock& block);

    static constexpr size_t kCapacity = 8;
    // A source that had run dry starts again with this much, so that the next small delay is not heard.
    static constexpr size_t kReserve = 2;

    std::mutex mutex_;
    std::array<SoundBlock, kCapacity> blocks_;
    size_t first_ = 0;
    size_t count_ = 0;
    bool is_dry_ = true;
    std::atomic<float> gain_ = 1.0F;
    SoundGain applied_;  // the mixing thread's
  };

  std::shared_ptr<Input> addInput();
  /// Whether anyone keeps an input, and so may have something to play.
  bool hasInputs();

  /// Factors of everything together: what the application set, and the speaker's own volume.
  void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }
  void setDeviceGain(float gain) { device_gain_.store(gain, std::memory_order_relaxed); }

  /// Where meters, recorders and an echo canceller take what is played, after the application's volume and before the
  /// speaker's own.
  SoundTaps& taps() { return taps_; }

  /// Makes the next 10 ms: two channels, the one of a source with one channel in both; silence where there is nothing.
  /// Loud sources together are cut at full scale. `time_us`: when it will be played. One thread at a time.
  void mix(SoundBlock& mixed, int64_t time_us);

 private:
  std::mutex mutex_;
  std::vector<std::weak_ptr<Input>> inputs_;
  std::atomic<float> gain_ = 1.0F;
  std::atomic<float> device_gain_ = 1.0F;
  SoundTaps taps_;

  // The mixing thread's.
  std::array<int32_t, static_cast<size_t>(kBlockFrames) * kMaxSoundChannels> sum_;
  SoundBlock taken_;
  SoundGain applied_gain_;
  SoundGain applied_device_gain_;
};

}  // namespace corvane::rtc
