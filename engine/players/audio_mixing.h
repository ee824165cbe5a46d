// Audio mixing, as applications use it.
#pragma once

#include "corvane_rtc/audio_mixing.h"
#include "players/deck_table.h"

namespace corvane::rtc {

class AudioMixing final : public IAudioMixingManager {
 public:
  AudioMixing(EngineContext& context, VoiceMix& mix);

  void startAudioMixing(int32_t mix_id, const char* file_path, const AudioMixingConfig& config) override;
  int32_t stopAudioMixing(int32_t mix_id) override;
  int32_t pauseAudioMixing(int32_t mix_id) override;
  int32_t resumeAudioMixing(int32_t mix_id) override;
  int32_t stopAllAudioMixing() override;
  int32_t pauseAllAudioMixing() override;
  int32_t resumeAllAudioMixing() override;
  int32_t preloadAudioMixing(int32_t mix_id, const char* file_path) override;
  int32_t unloadAudioMixing(int32_t mix_id) override;
  int32_t setAudioMixingVolume(int32_t mix_id, int32_t volume, int32_t type) override;
  int32_t setAudioMixingPosition(int32_t mix_id, int32_t position) override;
  int32_t setAudioMixingDualMonoMode(int32_t mix_id, int32_t mode) override;
  int32_t setAudioMixingPitch(int32_t mix_id, int32_t pitch) override;
  int32_t setAudioMixingPlaybackSpeed(int32_t mix_id, int32_t speed) override;
  int32_t setAudioMixingLoudness(int32_t mix_id, double loudness) override;
  int32_t setAudioMixingProgressInterval(int32_t mix_id, int32_t interval) override;
  int32_t selectAudioTrack(int32_t mix_id, int32_t audio_track_index) override;
  int32_t getAudioMixingDuration(int32_t mix_id) override;
  int32_t getAudioMixingCurrentPosition(int32_t mix_id) override;
  int32_t getAudioMixingPlaybackDuration(int32_t mix_id) override;
  int32_t getAudioTrackCount(int32_t mix_id) override;

  /// Engine thread, the last call.
  void shutDown() { decks_.shutDown(); }

 private:
  template <class F>
  int32_t change(int32_t mix_id, bool valid, F&& change);

  EngineContext& context_;
  DeckTable decks_;
};

}  // namespace corvane::rtc
