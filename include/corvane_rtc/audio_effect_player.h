// Short sounds played over everything else.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Who hears an effect or a media player.
enum PlayerOutputType : int32_t {
  kPlayerOutputPlayout = 0,
  kPlayerOutputPublish = 1,
  kPlayerOutputPlayoutAndPublish = 2,
};

/// States of an effect and of a media player.
enum PlayerState : int32_t {
  kPlayerStateIdle = 0,
  kPlayerStatePreloaded = 1,
  kPlayerStateOpened = 2,
  kPlayerStatePlaying = 3,
  kPlayerStatePaused = 4,
  kPlayerStateStopped = 5,
  kPlayerStateFinished = 6,  ///< played to its end as often as asked for
  kPlayerStateFailed = 7,    ///< PlayerError tells why
};

enum PlayerError : int32_t {
  kPlayerErrorOk = 0,
  kPlayerErrorFormatNotSupported = 1,
  kPlayerErrorInvalidPath = 2,
  kPlayerErrorInvalidState = 3,
  kPlayerErrorInvalidPosition = 4,
  kPlayerErrorInvalidVolume = 5,
  kPlayerErrorInvalidPitch = 6,
  kPlayerErrorInvalidTrack = 7,
  kPlayerErrorInvalidSpeed = 8,
  kPlayerErrorInvalidEffectId = 9,
  kPlayerErrorNotPreloaded = 10,
  kPlayerErrorMediaFailure = 11,
};

/// How an effect is played.
struct AudioEffectPlayerConfig {
  int32_t type;        ///< PlayerOutputType
  int32_t play_count;  ///< 0 or less repeats for ever
  int32_t pitch;       ///< semitones, -12 to 12
  int32_t start_pos;   ///< milliseconds from the start
};

/// Handler of the effect player. Called on threads of the library, in order for each effect; a callback returns soon
/// and calls no engine operation.
class IAudioEffectPlayerEventHandler {
 public:
  /// state: PlayerState, error: PlayerError.
  virtual void onAudioEffectPlayerStateChanged([[maybe_unused]] int32_t effect_id, [[maybe_unused]] int32_t state,
                                               [[maybe_unused]] int32_t error) {}

 protected:
  ~IAudioEffectPlayerEventHandler() = default;
};

/// Plays several effects at once, told apart by effect_id (any number of the caller's). Belongs to the engine;
/// threads as for IRTCVideo. All times in milliseconds; volumes in percent, 0 to 400; file paths or http(s) addresses.
/// kNotFound: no effect with the effect_id plays or is preloaded.
class IAudioEffectPlayer {
 public:
  /// Preloaded effects need no path (""). An effect_id that already plays starts anew.
  virtual int32_t start(int32_t effect_id, const char* file_path, const AudioEffectPlayerConfig& config) = 0;
  virtual int32_t stop(int32_t effect_id) = 0;
  virtual int32_t stopAll() = 0;
  virtual int32_t preload(int32_t effect_id, const char* file_path) = 0;  ///< files up to 20 seconds
  virtual int32_t unload(int32_t effect_id) = 0;
  virtual int32_t unloadAll() = 0;
  virtual int32_t pause(int32_t effect_id) = 0;
  virtual int32_t pauseAll() = 0;
  virtual int32_t resume(int32_t effect_id) = 0;
  virtual int32_t resumeAll() = 0;
  virtual int32_t setPosition(int32_t effect_id, int32_t position) = 0;
  virtual int32_t getPosition(int32_t effect_id) = 0;  ///< 0 or above, or a negative ReturnStatus
  virtual int32_t setVolume(int32_t effect_id, int32_t volume) = 0;
  virtual int32_t setVolumeAll(int32_t volume) = 0;
  virtual int32_t getVolume(int32_t effect_id) = 0;    ///< 0 or above, or a negative ReturnStatus
  virtual int32_t getDuration(int32_t effect_id) = 0;  ///< 0 or above, or a negative ReturnStatus
  /// The handler replaces the previous one and stays the caller's; null detaches. No call is inside the previous
  /// handler any more when this returns.
  virtual int32_t setEventHandler(IAudioEffectPlayerEventHandler* handler) = 0;

 protected:
  ~IAudioEffectPlayer() = default;
};

}  // namespace corvane::rtc
