// What becomes of sound that is played: volumes, the application's processor, and then everyone who hears it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "corvane_rtc/audio_frame.h"
#include "media/hook_path.h"
#include "media/sound_block.h"
#include "media/sound_hooks.h"
#include "media/sound_mixer.h"
#include "media/sound_taps.h"
#include "playback/ducking.h"

namespace corvane::rtc {

/// Any thread, but for mix(). While a hook is on, sound is mixed even if there is none to play.
class PlayedSound {
 public:
  /// `microphone`: what is sent of it. All outlive this.
  PlayedSound(SoundMixer& mixer, SoundHooks& hooks, SoundTaps& microphone);
  ~PlayedSound();
  PlayedSound(const PlayedSound&) = delete;
  PlayedSound& operator=(const PlayedSound&) = delete;

  // Of all remote sound together. kInvalidParameter for a shape that no frames can have.

  int32_t enableProcessor(const AudioFormat& format);
  void disableProcessor();
  int32_t enableObserver(const AudioFormat& format);
  void disableObserver();

  // Of remote sound and the microphone's together.

  int32_t enableMixedObserver(const AudioFormat& format);
  void disableMixedObserver();

  Ducking& ducking() { return ducking_; }

  bool hasSources() { return mixer_.hasInputs(); }
  /// Makes the next block for the speaker, which hears it at `time_us`. The playback thread's.
  void mix(SoundBlock& block, int64_t time_us);

 private:
  // The microphone's sound on its way from its thread to that of playback.
  class Microphone final : public SoundTap {
   public:
    void onSound(const SoundBlock& block) override { input_.push(block); }
    bool take(SoundBlock& block) { return input_.take(block); }

   private:
    SoundMixer::Input input_{SoundMixer::Origin::kRemote};  // of another clock: it must not come to wait ever longer
  };

  void observe(SoundBlock& remote);
  void observeMixed(const SoundBlock& remote);
  void keepMixing();

  SoundMixer& mixer_;
  SoundHooks& hooks_;
  SoundTaps& microphone_taps_;
  Ducking ducking_{microphone_taps_};
  HookSwitch<ProcessingPath> processor_;
  HookSwitch<OutgoingPath> observer_;
  HookSwitch<OutgoingPath> mixed_observer_;

  std::mutex mutex_;
  std::shared_ptr<SoundMixer::Input> kept_;  // there while a hook is on
  bool hears_microphone_ = false;
  Microphone microphone_;

  // The playback thread's.
  SoundBlock heard_;
  SoundBlock mixed_;
};

}  // namespace corvane::rtc
