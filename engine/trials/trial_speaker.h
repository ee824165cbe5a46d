// A speaker that is tried out, with what it plays.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>

#include "capture/capture_fault.h"
#include "devices/audio_device_id.h"
#include "media/sound_level.h"
#include "playback/playback_thread.h"
#include "playback/played_sound.h"

namespace corvane::rtc {

/// It plays while it lives.
class TrialSpeaker final : private IAudioFrameProcessor, private SoundTap {
 public:
  /// Makes the next 10 ms of one channel; silence when it has none. On the playback thread.
  using Source = std::function<void(SoundBlock& block)>;
  /// On the playback thread.
  using Failed = std::function<void(const CaptureFault& fault)>;

  TrialSpeaker(const SpeakerId& speaker, Source source, Failed failed);
  /// The source is not called any more when this returns; it must not keep the playback thread waiting then.
  ~TrialSpeaker();
  TrialSpeaker(const TrialSpeaker&) = delete;
  TrialSpeaker& operator=(const TrialSpeaker&) = delete;

  /// How loud it was since the last call, 0 to 255. Any one thread.
  int32_t takeVolume();

 private:
  int32_t onProcessPlayBackAudioFrame(IAudioFrame* frame) override;
  int32_t onProcessRecordAudioFrame(IAudioFrame* /*frame*/) override { return 0; }
  int32_t onProcessRemoteUserAudioFrame(const StreamKey& /*key*/, IAudioFrame* /*frame*/) override { return 0; }
  int32_t onProcessScreenAudioFrame(IAudioFrame* /*frame*/) override { return 0; }
  void onSound(const SoundBlock& block) override;

  const Source source_;
  std::mutex mutex_;
  SoundLevel level_;
  SoundBlock block_;  // the playback thread's
  SoundMixer mixer_;
  SoundHooks hooks_;
  SoundTaps no_microphone_;
  PlayedSound played_{mixer_, hooks_, no_microphone_};
  PlaybackThread thread_{played_};  // the last, as it uses the others
};

}  // namespace corvane::rtc
