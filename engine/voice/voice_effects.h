// What the application makes of the local voice: its timbre, its pitch, the room it is heard in.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "corvane_rtc/audio_config.h"
#include "media/sound_block.h"
#include "voice/equalizer.h"

namespace corvane::rtc {

class PitchShifter;
class Reverb;

/// Any thread, but for process(). What is off costs nothing.
class VoiceEffects {
 public:
  VoiceEffects();
  ~VoiceEffects();
  VoiceEffects(const VoiceEffects&) = delete;
  VoiceEffects& operator=(const VoiceEffects&) = delete;

  // kInvalidParameter for values out of their ranges.

  int32_t setPitch(int32_t semitones);
  int32_t setBand(const VoiceEqualizationConfig& config);
  int32_t setReverb(const VoiceReverbConfig& config);
  void enableReverb(bool enable);

  /// Changes one block of one channel in place: equaliser, pitch, reverberation. On the capture's thread; none but one
  /// at a time.
  void process(SoundBlock& block);

 private:
  struct Settings {
    int32_t semitones = 0;
    Equalizer::Gains gains = {};
    bool reverb_on = false;
    VoiceReverbConfig reverb = {50, 30, 50, -6, 0, 0};
  };

  template <class F>
  void change(F&& function);
  void adopt();

  std::mutex mutex_;
  Settings settings_;
  std::atomic<bool> changed_ = false;

  // The capture's thread's. Null while off.
  std::unique_ptr<Equalizer> equalizer_;
  std::unique_ptr<PitchShifter> pitch_;
  std::unique_ptr<Reverb> reverb_;
  std::array<float, kBlockFrames> samples_;
};

}  // namespace corvane::rtc
