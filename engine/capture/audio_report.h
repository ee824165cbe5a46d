// Reports of audio properties, at the interval that the application asked for.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include "core/engine_context.h"
#include "corvane_rtc/audio_config.h"
#include "media/sound_meter.h"
#include "media/sound_taps.h"
#include "playback/active_speakers.h"
#include "playback/remote_sounds.h"

namespace corvane::rtc {

/// Whether an application may ask for this.
bool isAudioPropertiesConfig(const AudioPropertiesConfig& config);

/// Engine thread only.
class AudioReport {
 public:
  /// `sent`: what rooms are sent, with everything that is added to the microphone.
  AudioReport(EngineContext& context, SoundTaps& microphone, SoundTaps& sent, RemoteSounds& remote);
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
  SoundTaps& microphone_;
  SoundTaps& sent_;
  RemoteSounds& remote_;
  AudioPropertiesConfig config_ = {};
  SoundTaps* measured_ = nullptr;    // one of the two
  std::optional<SoundMeter> meter_;  // attached to that while reports run
  std::vector<RemoteAudioPropertiesInfo> heard_;
  ActiveSpeakers active_speakers_;
  std::chrono::steady_clock::time_point due_;
  AttachedSource timer_;
};

}  // namespace corvane::rtc
