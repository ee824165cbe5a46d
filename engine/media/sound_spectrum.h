// What sound is made of, by frequency.
#pragma once

#include <gst/fft/gstfftf32.h>

#include <array>
#include <memory>
#include <span>

#include "corvane_rtc/audio_properties.h"

namespace corvane::rtc {

/// Powers, from 0 Hz to half the sample rate; the root of one is an amplitude on a scale on which a sine at full scale
/// is 1.
using PowerSpectrum = std::array<float, kAudioSpectrumSize>;

/// One thread at a time.
class SpectrumAnalyzer {
 public:
  SpectrumAnalyzer();

  /// Adds the powers of the last 512 samples, the newest of which are `samples`, to `sum`. Samples are -1 to 1.
  void analyze(std::span<const float> samples, PowerSpectrum& sum);

 private:
  static constexpr size_t kLength = (kAudioSpectrumSize - 1) * 2;

  struct FreeFft {
    void operator()(GstFFTF32* fft) const { gst_fft_f32_free(fft); }
  };

  std::unique_ptr<GstFFTF32, FreeFft> fft_;
  std::array<float, kLength> window_;
  std::array<float, kLength> recent_ = {};
  std::array<float, kLength> windowed_;
  std::array<GstFFTF32Complex, kAudioSpectrumSize> bins_;
  float scale_;  // from a bin's power to that of the sine that made it
};

}  // namespace corvane::rtc
