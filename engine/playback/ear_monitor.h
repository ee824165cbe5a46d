// The microphone in the local user's own ears.
#pragma once

#include <memory>
#include <mutex>

#include "media/sound_mixer.h"
#include "media/sound_taps.h"

namespace corvane::rtc {

/// Any thread.
class EarMonitor final : private SoundTap {
 public:
  /// Both outlive this.
  EarMonitor(SoundTaps& microphone, SoundMixer& playback) : microphone_(microphone), playback_(playback) {}
  ~EarMonitor() { turn(false); }
  EarMonitor(const EarMonitor&) = delete;
  EarMonitor& operator=(const EarMonitor&) = delete;

  /// While it is on there is something to play.
  void turn(bool on);
  /// A factor; kept while it is off.
  void setVolume(float factor);

 private:
  void onSound(const SoundBlock& block) override { input_->push(block); }

  SoundTaps& microphone_;
  SoundMixer& playback_;
  std::mutex mutex_;
  float volume_ = 1.0F;
  std::shared_ptr<SoundMixer::Input> input_;  // the taps' while this is among them
};

}  // namespace corvane::rtc
