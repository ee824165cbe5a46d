// How loud sound is to listeners, after ITU-R BS.1770.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace corvane::rtc {

/// Of all that was heard so far, in windows of 400 ms, without the silent ones. One thread at a time.
class LoudnessMeter {
 public:
  /// Two channels at 48 kHz, interleaved.
  void hear(std::span<const int16_t> samples);
  /// LUFS; none before the first window that is not silent.
  std::optional<double> loudness() const;

 private:
  struct Channel {
    std::array<double, 4> state = {};  // of the two filters, two each
    double weigh(double sample);
  };

  std::array<Channel, 2> channels_;
  double window_power_ = 0.0;  // sum over the frames of the window
  int32_t window_frames_ = 0;
  double power_ = 0.0;  // sum over windows that count
  int64_t windows_ = 0;
};

}  // namespace corvane::rtc
