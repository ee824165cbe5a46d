// What becomes of the microphone's sound: cleaning, volumes, the application's processor, silence while muted, and then
// everyone who takes it.
#pragma once

#include <atomic>
#include <cstdint>

#include "capture/sound_pump.h"
#include "corvane_rtc/audio_frame.h"
#include "media/hook_path.h"
#include "media/sound_block.h"
#include "media/sound_gain.h"
#include "media/sound_hooks.h"
#include "media/sound_taps.h"
#include "voice/voice_cleaner.h"
#include "voice/voice_effects.h"

namespace corvane::rtc {

/// Any thread, but for deliver(). Outlives what captures and what is attached to taps().
class CapturedSound final : public SoundReceiver {
 public:
  /// `hooks`: the engine's, and outlives this.
  explicit CapturedSound(SoundHooks& hooks) : hooks_(hooks) {}

  /// Factors: 1 leaves the sound as it is.
  void setDeviceGain(float gain) { device_gain_.store(gain, std::memory_order_relaxed); }
  void setGain(float gain) { gain_.store(gain, std::memory_order_relaxed); }
  /// Everyone gets silence, the processor included; capture goes on. Returns whether that is a change.
  bool setMuted(bool muted) { return muted_.exchange(muted) != muted; }

  /// Echo, noise, automatic gain: after the device's volume, before all else.
  VoiceCleaner& cleaner() { return cleaner_; }
  /// After cleaning.
  VoiceEffects& effects() { return effects_; }

  /// kInvalidParameter for a shape that no frames can have.
  int32_t enableProcessor(const AudioFormat& format);
  void disableProcessor() { processor_.off(); }
  int32_t enableObserver(const AudioFormat& format);
  void disableObserver() { observer_.off(); }

  /// Where a meter, or what rooms are sent (SentSound), takes the microphone's sound: 10 ms at a time, 16 bit, 48 kHz,
  /// one channel, with its time, and silent while muted. Nothing comes while capture is off; after a pause, or another
  /// microphone, the times have a gap.
  SoundTaps& taps() { return taps_; }

  /// Takes one block of one channel, and may change it. On the capture's thread; none but one at a time.
  void deliver(SoundBlock& block) override;

 private:
  SoundHooks& hooks_;
  std::atomic<float> device_gain_ = 1.0F;
  std::atomic<float> gain_ = 1.0F;
  std::atomic<bool> muted_ = false;
  HookSwitch<ProcessingPath> processor_;
  HookSwitch<OutgoingPath> observer_;
  VoiceCleaner cleaner_;
  VoiceEffects effects_;
  SoundTaps taps_;

  // The capture's thread's.
  SoundGain applied_device_gain_;
  SoundGain applied_gain_;
};

}  // namespace corvane::rtc
