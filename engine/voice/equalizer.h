// Ten bands of a voice, an octave each, louder or softer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane::rtc {

/// One thread at a time.
class Equalizer {
 public:
  static constexpr size_t kBands = 10;  ///< centres 31.25 Hz to 16 kHz

  using Gains = std::array<int32_t, kBands>;  ///< dB, -15 to 15

  /// A change is heard at once; what is under way rings out.
  void set(const Gains& gains);

  /// Changes one channel of samples, -1 to 1, in place.
  void process(std::span<float> samples);

 private:
  struct Band {
    bool on = false;
    // Factors of the last samples in and out, and what of them is still to come.
    double b0, b1, b2, a1, a2;
    double first = 0.0;
    double second = 0.0;
  };

  std::array<Band, kBands> bands_ = {};
};

}  // namespace corvane::rtc
