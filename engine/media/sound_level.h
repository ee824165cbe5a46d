// How loud sound is.
#pragma once

#include <cstdint>
#include <span>

namespace corvane::rtc {

/// Gathers the power of samples.
class SoundLevel {
 public:
  void add(std::span<const int16_t> samples);
  void clear() { *this = {}; }

  /// Root of the mean square of what was added, on a scale on which a sine at full scale is 1. 0 of nothing.
  double amplitude() const;

 private:
  double squares_ = 0.0;
  int64_t count_ = 0;
};

/// An amplitude in the terms of audio properties: 0 to 255, and -127 to 0 dB. A square wave may come to more than a
/// sine at full scale; it counts as that.
int32_t linearVolume(double amplitude);
int32_t decibelVolume(double amplitude);

}  // namespace corvane::rtc
