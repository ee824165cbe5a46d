// Sound that a trial keeps between its microphone and its speaker.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "media/sound_block.h"

namespace corvane::rtc {

/// What was recorded, to be played once. One thread records, and then one plays.
class RecordedSound {
 public:
  /// Its first half minute.
  RecordedSound() { samples_.reserve(kLongest); }

  void add(const SoundBlock& block);
  /// False, and silence, once it is over.
  bool next(SoundBlock& block);

 private:
  static constexpr size_t kLongest = size_t{kSoundRate} * 30;

  std::vector<int16_t> samples_;
  size_t played_ = 0;
};

/// What is recorded comes out again after a while. One thread at each end.
class DelayedSound {
 public:
  explicit DelayedSound(int32_t seconds);

  void add(const SoundBlock& block);
  /// Silence until then. Returns whether there is sound in it.
  bool next(SoundBlock& block);

 private:
  const size_t delay_;
  std::mutex mutex_;
  std::vector<int16_t> ring_;
  // Samples since the start.
  size_t written_ = 0;
  size_t read_ = 0;
  bool comes_back_ = false;
};

}  // namespace corvane::rtc
