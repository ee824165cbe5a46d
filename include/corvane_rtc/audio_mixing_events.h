// Constants in reports of audio mixing.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// States of one file that is mixed in.
enum AudioMixingState : int32_t {
  kAudioMixingStatePreloaded = 0,
  kAudioMixingStatePlaying = 1,
  kAudioMixingStatePaused = 2,
  kAudioMixingStateStopped = 3,
  kAudioMixingStateFailed = 4,
  kAudioMixingStateFinished = 5,  ///< played to its end as often as asked for
};

enum AudioMixingError : int32_t {
  kAudioMixingErrorOk = 0,
  kAudioMixingErrorPreloadFailed = 1,
  kAudioMixingErrorStartFailed = 2,
  kAudioMixingErrorIdNotFound = 3,
  kAudioMixingErrorSetPositionFailed = 4,
  kAudioMixingErrorInvalidVolume = 5,
  kAudioMixingErrorLoadConflict = 6,  ///< another file is loaded under the id
};

}  // namespace corvane::rtc
