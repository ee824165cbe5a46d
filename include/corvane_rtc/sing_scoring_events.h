// What scoring reports while someone sings.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// How the singing goes just now. Pitches are MIDI note numbers, scores 0 to 100.
struct SingScoringRealtimeInfo {
  int32_t current_position;  ///< milliseconds from the song's start
  int32_t user_pitch;        ///< 0 without a voice
  int32_t standard_pitch;    ///< 0 where the melody rests
  int32_t sentence_index;    ///< from 0
  int32_t sentence_score;    ///< of the last finished sentence; negative before there is one
  int32_t total_score;       ///< sum over all finished sentences, so it may exceed 100
  int32_t average_score;     ///< over all finished sentences
};

/// Handler given to ISingScoringManager::initSingScoring(). Called on a thread of the library, one report at a time,
/// at the interval given to startSingScoring(); a record is valid during the call only. The handler stays the
/// caller's and lives until replaced or until destroyRTCVideo() has returned.
class ISingScoringEventHandler {
 public:
  virtual void onCurrentScoringInfo([[maybe_unused]] const SingScoringRealtimeInfo& info) {}

 protected:
  ~ISingScoringEventHandler() = default;
};

}  // namespace corvane::rtc
