// What becomes of the screen's sound: volume, the application's processor, silence while muted, and then the stream it
// goes with.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "capture/sound_pump.h"
#include "corvane_rtc/audio_frame.h"
#include "media/hook_path.h"
#include "media/sound_block.h"
#include "media/sound_gain.h"
#include "media/sound_hooks.h"
#include "media/sound_mixer.h"
#include "media/sound_taps.h"

namespace corvane::rtc {

/// Any thread, but for deliver(). Outlives what captures.
class ScreenSound final : public SoundReceiver {
 public:
  /// `hooks` and `taps`, those of the screen's stream, outlive this.
  ScreenSound(SoundHooks& hooks, SoundTaps& taps) : hooks_(hooks), taps_(taps) {}

  /// A factor: 1 leaves the sound as it is.
  void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }
  void setMuted(bool muted) { muted_.store(muted, std::memory_order_relaxed); }
  /// Of what is sent: 1 or 2. Hooks get both, unless they ask for one.
  void setChannels(int32_t channels) { channels_.store(channels, std::memory_order_relaxed); }
  /// It goes there, and no longer with the screen's stream; null takes that back.
  void setMix(std::shared_ptr<SoundMixer::Input> mix);

  /// kInvalidParameter for a shape that no frames can have.
  int32_t enableProcessor(const AudioFormat& format);
  void disableProcessor() { processor_.off(); }
  int32_t enableObserver(const AudioFormat& format);
  void disableObserver() { observer_.off(); }

  /// Takes one block of two channels, and may change it. On the capture's thread; none but one at a time.
  void deliver(SoundBlock& block) override;

 private:
  void send(const SoundBlock& block);

  SoundHooks& hooks_;
  SoundTaps& taps_;
  std::atomic<float> gain_ = 1.0F;
  std::atomic<bool> muted_ = false;
  std::atomic<int32_t> channels_ = kMaxSoundChannels;
  HookSwitch<ProcessingPath> processor_;
  HookSwitch<OutgoingPath> observer_;
  std::mutex mutex_;  // of mix_
  std::shared_ptr<SoundMixer::Input> mix_;

  // The capture's thread's.
  SoundGain applied_gain_;
  SoundBlock single_;
};

}  // namespace corvane::rtc
