// Sound files mixed into playback and into what is sent.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Who hears a mixed file.
enum AudioMixingType : int32_t {
  kAudioMixingTypePlayout = 0,
  kAudioMixingTypePublish = 1,
  kAudioMixingTypePlayoutAndPublish = 2,
};

/// Which channels of a stereo file are heard.
enum AudioMixingDualMonoMode : int32_t {
  kAudioMixingDualMonoModeAuto = 0,  ///< both, as in the file
  kAudioMixingDualMonoModeLeft = 1,
  kAudioMixingDualMonoModeRight = 2,
  kAudioMixingDualMonoModeMix = 3,  ///< both, added up
};

/// How a file is mixed.
struct AudioMixingConfig {
  int32_t type;                           ///< AudioMixingType
  int32_t play_count;                     ///< 0 or less repeats for ever
  int32_t position;                       ///< milliseconds from the start
  int32_t callback_on_progress_interval;  ///< milliseconds between progress events, at least 10; 0 or less for none
  bool sync_progress_to_record_frame;     ///< sends the progress along for setAudioAlignmentProperty()
};

/// Mixes several files at once, told apart by mix_id (any number of the caller's). Belongs to the engine; threads
/// as for IRTCVideo. States and progress come as onAudioMixingStateChanged and onAudioMixingPlayingProgress.
/// kNotFound: no file with the mix_id plays or is preloaded. All times in milliseconds; file paths or http(s)
/// addresses.
class IAudioMixingManager {
 public:
  /// A mix_id that already plays starts anew. Failures come as onAudioMixingStateChanged.
  virtual void startAudioMixing(int32_t mix_id, const char* file_path, const AudioMixingConfig& config) = 0;
  virtual int32_t stopAudioMixing(int32_t mix_id) = 0;
  virtual int32_t pauseAudioMixing(int32_t mix_id) = 0;
  virtual int32_t resumeAudioMixing(int32_t mix_id) = 0;
  virtual int32_t stopAllAudioMixing() = 0;
  virtual int32_t pauseAllAudioMixing() = 0;
  virtual int32_t resumeAllAudioMixing() = 0;
  virtual int32_t preloadAudioMixing(int32_t mix_id, const char* file_path) = 0;  ///< files of up to 20 s
  virtual int32_t unloadAudioMixing(int32_t mix_id) = 0;                          ///< stops it, too

  /// volume: percent, 0 to 400; type: AudioMixingType.
  virtual int32_t setAudioMixingVolume(int32_t mix_id, int32_t volume, int32_t type) = 0;
  virtual int32_t setAudioMixingPosition(int32_t mix_id, int32_t position) = 0;
  virtual int32_t setAudioMixingDualMonoMode(int32_t mix_id, int32_t mode) = 0;    ///< AudioMixingDualMonoMode
  virtual int32_t setAudioMixingPitch(int32_t mix_id, int32_t pitch) = 0;          ///< semitones, -12 to 12
  virtual int32_t setAudioMixingPlaybackSpeed(int32_t mix_id, int32_t speed) = 0;  ///< percent, 50 to 200
  virtual int32_t setAudioMixingLoudness(int32_t mix_id, double loudness) = 0;  ///< the file's own, LUFS; 0 for unknown
  virtual int32_t setAudioMixingProgressInterval(int32_t mix_id, int32_t interval) = 0;
  virtual int32_t selectAudioTrack(int32_t mix_id, int32_t audio_track_index) = 0;  ///< 0 to getAudioTrackCount() - 1

  // The value, or a negative ReturnStatus.

  virtual int32_t getAudioMixingDuration(int32_t mix_id) = 0;
  virtual int32_t getAudioMixingCurrentPosition(int32_t mix_id) = 0;
  virtual int32_t getAudioMixingPlaybackDuration(int32_t mix_id) = 0;  ///< time played, pauses not counted
  virtual int32_t getAudioTrackCount(int32_t mix_id) = 0;

 protected:
  ~IAudioMixingManager() = default;
};

}  // namespace corvane::rtc
