// Brings the sound of several sources together: what remote users and players send, for the speaker.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
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
  /// Where sound comes from. Here: a source of this machine's time, which knows what it is ahead by. The others run by
  /// clocks of their own, and what waits of theirs longer than it has to is shortened bit by bit: after a burst of late
  /// packets it would be late for ever. The ear monitor is for the speaker alone: neither taps nor ducking have to do
  /// with it.
  enum class Origin { kHere, kRemote, kEarMonitor };

  /// One source. It is mixed in for as long as its owner keeps it.
  class Input {
   public:
    explicit Input(Origin origin = Origin::kHere) : origin_(origin) {}

    /// Takes 10 ms of one or two channels. They wait, for as long as the source is ahead; of more than 80 ms the oldest
    /// go. One thread at a time.
    void push(const SoundBlock& block);
    /// A factor: 1 leaves the sound as it is.
    void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }
    /// False when it has nothing to play just now. The mixing thread's.
    bool take(SoundBlock& block);

   private:
    static constexpr size_t kCapacity = 8;
    // A source that had run dry starts again with this much, so that the next small delay is not heard.
    static constexpr size_t kReserve = 2;
    // Two seconds of blocks, in which so much was always left, that sound may be shortened by one.
    static constexpr int32_t kWatched = 200;

    // With mutex_ held. Takes one more block when too much waits; false when it does not.
    bool shorten(SoundBlock& block);

    const Origin origin_;
    std::mutex mutex_;
    std::array<SoundBlock, kCapacity> blocks_;
    size_t first_ = 0;
    size_t count_ = 0;
    bool is_dry_ = true;
    int32_t watched_ = 0;       // blocks taken since least_ was begun
    size_t least_ = kCapacity;  // that were left
    std::atomic<float> gain_ = 1.0F;
    // The mixing thread's.
    SoundGain applied_;
    SoundBlock next_;
  };

  std::shared_ptr<Input> addInput(Origin origin = Origin::kHere);
  /// Whether anyone keeps an input, and so may have something to play.
  bool hasInputs();
  /// Told of every input that is added, on the thread that adds it. Set before the first.
  void onInput(std::function<void()> listener) { on_input_ = std::move(listener); }

  /// Factors: of all remote sound, which the application sets, and the speaker's own of everything.
  void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }
  void setDeviceGain(float gain) { device_gain_.store(gain, std::memory_order_relaxed); }
  /// A factor of everything but the ear monitor, for the next block. The mixing thread's.
  void setDucking(float factor) { ducking_ = factor; }

  /// Where meters, recorders and an echo canceller take what is played, after the application's volumes and before the
  /// speaker's own.
  SoundTaps& taps() { return taps_; }

  /// Makes the next 10 ms: two channels, the one of a source with one channel in both; silence where there is nothing.
  /// Loud sources together are cut at full scale. `time_us`: when it will be played. change(SoundBlock&) gets all
  /// remote sound, with its volume, before the rest is added. One thread at a time.
  template <class F>
  void mix(SoundBlock& mixed, int64_t time_us, F&& change) {
    mixed.time_us = time_us;
    mixRemote(mixed);
    change(mixed);
    addRest(mixed);
  }
  void mix(SoundBlock& mixed, int64_t time_us) {
    mix(mixed, time_us, [](SoundBlock&) {});
  }

 private:
  struct Source {
    std::weak_ptr<Input> input;
    Origin origin = Origin::kHere;
  };

  // An entry keeps the memory of its input. The mutex is held.
  void forgetEnded();
  void mixRemote(SoundBlock& mixed);
  void addRest(SoundBlock& mixed);
  // Adds what the sources of that origin have to sum_. False when they have nothing.
  bool add(Origin origin);
  void writeSum(SoundBlock& mixed) const;

  std::mutex mutex_;
  std::vector<Source> sources_;
  std::function<void()> on_input_;
  std::atomic<float> gain_ = 1.0F;
  std::atomic<float> device_gain_ = 1.0F;
  SoundTaps taps_;

  // The mixing thread's.
  std::array<int32_t, static_cast<size_t>(kBlockFrames) * kMaxSoundChannels> sum_;
  SoundBlock taken_;
  float ducking_ = 1.0F;
  SoundGain applied_gain_;
  SoundGain applied_ducking_;
  SoundGain applied_device_gain_;
};

}  // namespace corvane::rtc
