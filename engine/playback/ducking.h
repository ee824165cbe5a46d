// Makes what is played softer while the local user talks.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

#include "media/sound_taps.h"
#include "media/voice_detector.h"

namespace corvane::rtc {

/// Any thread, but for what is marked otherwise. While it is off nobody listens to the microphone for it.
class Ducking final : private SoundTap {
 public:
  /// `microphone` outlives this.
  explicit Ducking(SoundTaps& microphone) : microphone_(microphone) {}
  ~Ducking() { turn(false); }
  Ducking(const Ducking&) = delete;
  Ducking& operator=(const Ducking&) = delete;

  void turn(bool on);

  /// The factor for the block that is played at `time_us`. The playback thread's, once for each block.
  float next(int64_t time_us);

 private:
  void onSound(const SoundBlock& block) override;

  SoundTaps& microphone_;
  std::mutex mutex_;
  bool on_ = false;
  std::atomic<int64_t> until_us_ = 0;  // until when the voice that was heard last counts

  // The microphone's thread's.
  VoiceDetector voice_;
  std::array<float, kBlockFrames> samples_;
  int32_t voiced_in_a_row_ = 0;

  float factor_ = 1.0F;  // the playback thread's
};

}  // namespace corvane::rtc
