// Scores for singing along.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

class ISingScoringEventHandler;

/// Which sound is scored.
enum SingScoringMode : int32_t {
  kSingScoringModeInternal = 0,  ///< the microphone
};

struct SingScoringConfig {
  int32_t sample_rate;  ///< 44100 or 48000
  int32_t mode;         ///< SingScoringMode
  const char* lyrics_filepath;
  const char* midi_filepath;  ///< the melody
};

/// One note of the melody.
struct StandardPitchInfo {
  int32_t start_time;  ///< milliseconds from the song's start
  int32_t duration;    ///< milliseconds
  int32_t pitch;       ///< MIDI note number, 0 to 127
};

/// A melody's notes in order of time. Owned by the caller until release(); any one thread at a time.
class IStandardPitchCollection {
 public:
  virtual int32_t getCount() = 0;
  /// kInvalidParameter outside 0 to getCount() - 1; `info` is then unchanged.
  virtual int32_t getStandardPitchInfo(int32_t index, StandardPitchInfo& info) = 0;
  virtual void release() = 0;

 protected:
  ~IStandardPitchCollection() = default;
};

/// Scores. Belongs to the engine; threads as for IRTCVideo. Scores run from 0 to 100.
class ISingScoringManager {
 public:
  /// The handler replaces the previous one and stays the caller's.
  virtual int32_t initSingScoring(const char* sing_scoring_appkey, const char* sing_scoring_token,
                                  ISingScoringEventHandler* event_handler) = 0;
  virtual int32_t setSingScoringConfig(const SingScoringConfig& config) = 0;
  /// position: of the song when scoring starts; scoring_info_interval: between reports, at least 20. Milliseconds.
  virtual int32_t startSingScoring(int32_t position, int32_t scoring_info_interval) = 0;
  virtual int32_t stopSingScoring() = 0;

  // The score, or a negative ReturnStatus before there is one.

  virtual int32_t getLastSentenceScore() = 0;
  virtual int32_t getTotalScore() = 0;  ///< sum over all sentences so far, so it may exceed 100
  virtual int32_t getAverageScore() = 0;

  /// Null for a file that cannot be read as a melody.
  virtual IStandardPitchCollection* getStandardPitchInfo(const char* midi_filepath) = 0;

 protected:
  ~ISingScoringManager() = default;
};

}  // namespace corvane::rtc
