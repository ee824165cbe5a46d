// Plays sound higher or lower, faster or slower, each without the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvane::rtc {

/// Of two channels at 48 kHz, interleaved. One thread at a time. Needs a tenth of a second of sound before it gives
/// any.
class Stretcher {
 public:
  Stretcher();
  ~Stretcher();
  Stretcher(const Stretcher&) = delete;
  Stretcher& operator=(const Stretcher&) = delete;

  /// semitones: -12 to 12; speed: percent, 50 to 200.
  void set(int32_t semitones, int32_t speed);
  void put(std::span<const int16_t> samples);
  /// Nothing follows: what was put in comes out to its end.
  void flush();
  /// Forgets what was put in.
  void clear();
  size_t available() const;  ///< samples of both channels
  /// Fills `samples` from its start and returns how many it wrote.
  size_t take(std::span<int16_t> samples);
  /// How much of what was put in has not come out, in frames.
  int64_t held() const;

 private:
  struct Parts;
  const std::unique_ptr<Parts> parts_;
};

}  // namespace corvane::rtc
