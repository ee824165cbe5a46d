// A voice that is higher or lower than it was spoken, at the same speed.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace soundtouch {
class SoundTouch;
}

namespace corvane::rtc {

/// One thread at a time.
class PitchShifter {
 public:
  PitchShifter();
  ~PitchShifter();
  PitchShifter(const PitchShifter&) = delete;
  PitchShifter& operator=(const PitchShifter&) = delete;

  void set(int32_t semitones);  ///< -12 to 12

  /// Changes one channel of 10 ms in place. It comes out later than it went in, by some 60 ms; until then it stays as
  /// it is.
  void process(std::span<float> samples);

 private:
  const std::unique_ptr<soundtouch::SoundTouch> library_;
  bool is_ahead_ = false;  // enough is there that no block will want for samples
};

}  // namespace corvane::rtc
