// Reports of audio properties, at the interval that the application asked for.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "capture/captured_sound.h"
#include "core/engine_context.h"
#include "corvane_rtc/audio_config.h"
#include "media/sound_meter.h"
#include "playback/active_speakers.h"
#include "playback/remote_sounds.h"

namespace corvane::rtc {

/// Whether an application may ask for this.
bool isAudioPropertiesConfig(const AudioPropertiesConfig& config);

/// Engine thread only.
class AudioReport {
 public:
  AudioReport(EngineContext& context, CapturedSound& microphone, RemoteSounds& remote);
  ~AudioReport();
  AudioReport(const AudioReport&) = delete;
  AudioReport& operator=(const AudioReport&) = delete;

  /// Also while reports run: they go on anew. An interval of 0 or less ends them.
  void configure(const AudioPropertiesConfig& config);

 private:
  void stop();
  void scheduleNext();
  void report();
  void reportLocal();
  void reportRemote();

  EngineContext& context_;
  CapturedSound& microphone_;
  RemoteSounds& remote_;
  AudioPropertiesConfig config_ = {};
  std::optional<SoundMeter> meter_;  // attached to the microphone's sound while reports run
  std::vector<RemoteAudioPropertiesInfo> heard_;
  ActiveSpeakers active_speakers_;
  std::chrono::steady_clock::time_point due_;
  AttachedSource timer_;
};

}  // namespace corvane::rtc
