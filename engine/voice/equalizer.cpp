#include "voice/equalizer.h"

#include <cmath>
#include <numbers>

#include "media/sound_block.h"

namespace corvane::rtc {

namespace {

constexpr double kLowestCentre = 31.25;  // Hz
constexpr double kOctaveQ = std::numbers::sqrt2;

}  // namespace

void Equalizer::set(const Gains& gains) {
  double centre = kLowestCentre;
  for (size_t index = 0; index < kBands; ++index, centre *= 2.0) {
    Band& band = bands_[index];
    const bool on = gains[index] != 0;
    if (on && !band.on) band.first = band.second = 0.0;
    band.on = on;
    if (!on) continue;
    // A second-order filter with a peak, or a dip, at the centre and no effect far from it.
    const double amplitude = std::pow(10.0, gains[index] / 40.0);
    const double turn = 2.0 * std::numbers::pi * centre / kSoundRate;
    const double width = std::sin(turn) / (2.0 * kOctaveQ);
    const double scale = 1.0 / (1.0 + width / amplitude);
    band.b0 = (1.0 + width * amplitude) * scale;
    band.b1 = -2.0 * std::cos(turn) * scale;
    band.b2 = (1.0 - width * amplitude) * scale;
    band.a1 = band.b1;
    band.a2 = (1.0 - width / amplitude) * scale;
  }
}

void Equalizer::process(std::span<float> samples) {
  for (Band& band : bands_) {
    if (!band.on) continue;
    for (float& sample : samples) {
      const double in = sample;
      const double out = band.b0 * in + band.first;
      band.first = band.b1 * in - band.a1 * out + band.second;
      band.second = band.b2 * in - band.a2 * out;
      sample = static_cast<float>(out);
    }
    // Silence takes for ever to come to nothing, in numbers that are slow to work with.
    constexpr double kNothing = 1e-20;
    if (std::abs(band.first) < kNothing) band.first = 0.0;
    if (std::abs(band.second) < kNothing) band.second = 0.0;
  }
}

}  // namespace corvane::rtc
