#include "support/signals.h"

#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace corvane::test {

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kRate = 48000.0;

double seconds(int64_t sample) {
  return static_cast<double>(sample) / kRate;
}

}  // namespace

Signal silence() {
  return [](int64_t) { return 0.0; };
}

Signal sine(double hertz, double amplitude) {
  return [=](int64_t sample) { return amplitude * std::sin(kTurn * hertz * seconds(sample)); };
}

Signal noise(double amplitude) {
  return [=, random = std::minstd_rand(1)](int64_t) mutable {
    return amplitude * std::uniform_real_distribution<double>(-1.0, 1.0)(random);
  };
}

Signal vowel(double hertz) {
  return [=](int64_t sample) {
    const double in_period = std::fmod(seconds(sample), 1.0 / hertz);
    const double syllable = 0.6 + 0.4 * std::sin(kTurn * 3.0 * seconds(sample));
    return 0.3 * syllable *
           (std::exp(-in_period * 300.0) * std::sin(kTurn * 700.0 * in_period) +
            0.5 * std::exp(-in_period * 500.0) * std::sin(kTurn * 1200.0 * in_period));
  };
}

Signal words(double amplitude, double on, double period) {
  return [=](int64_t sample) {
    const double in_word = std::fmod(seconds(sample), period);
    if (sample < 0 || in_word >= on) return 0.0;
    const auto word = static_cast<int64_t>(seconds(sample) / period);
    const double pitch = 95.0 + 23.0 * static_cast<double>(word % 5);
    const double swell = std::sin(std::numbers::pi * in_word / on);
    return amplitude * swell * vowel(pitch)(sample) / 0.3;
  };
}

Signal sum(Signal a, Signal b) {
  return [a = std::move(a), b = std::move(b)](int64_t sample) { return a(sample) + b(sample); };
}

Signal scaled(Signal signal, double factor) {
  return [signal = std::move(signal), factor](int64_t sample) { return factor * signal(sample); };
}

Signal delayed(Signal signal, int64_t samples) {
  return [signal = std::move(signal), samples](int64_t sample) { return signal(sample - samples); };
}

}  // namespace corvane::test
