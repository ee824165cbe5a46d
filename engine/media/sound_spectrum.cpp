#include "media/sound_spectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::rtc {

SpectrumAnalyzer::SpectrumAnalyzer() : fft_(gst_fft_f32_new(static_cast<gint>(kLength), FALSE)) {
  float sum = 0.0F;
  for (size_t index = 0; index < kLength; ++index) {
    const double turn = 2.0 * std::numbers::pi * static_cast<double>(index) / kLength;
    window_[index] = static_cast<float>(0.5 - 0.5 * std::cos(turn));
    sum += window_[index];
  }
  scale_ = 4.0F / (sum * sum);
}

void SpectrumAnalyzer::analyze(std::span<const float> samples, PowerSpectrum& sum) {
  const size_t kept = kLength - std::min(samples.size(), kLength);
  std::copy(recent_.end() - static_cast<ptrdiff_t>(kept), recent_.end(), recent_.begin());
  std::copy(samples.end() - static_cast<ptrdiff_t>(kLength - kept), samples.end(),
            recent_.begin() + static_cast<ptrdiff_t>(kept));
  for (size_t index = 0; index < kLength; ++index) windowed_[index] = recent_[index] * window_[index];
  gst_fft_f32_fft(fft_.get(), windowed_.data(), bins_.data());
  for (size_t bin = 0; bin < sum.size(); ++bin) {
    sum[bin] += scale_ * (bins_[bin].r * bins_[bin].r + bins_[bin].i * bins_[bin].i);
  }
}

}  // namespace corvane::rtc
