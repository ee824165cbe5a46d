#include "players/loudness.h"

#include <cmath>
#include <limits>

#include "media/sound_block.h"

namespace corvane::rtc {

namespace {

// A filter of second order in its transposed form.
struct Biquad {
  double b0, b1, b2, a1, a2;

  double run(double sample, double& first, double& second) const {
    const double out = b0 * sample + first;
    first = b1 * sample - a1 * out + second;
    second = b2 * sample - a2 * out;
    return out;
  }
};

// The recommendation's filters at 48 kHz: the head, and how little of low tones is heard.
constexpr Biquad kHead = {1.53512485958697, -2.69169618940638, 1.19839281085285, -1.69065929318241, 0.73248077421585};
constexpr Biquad kLowTones = {1.0, -2.0, 1.0, -1.99004745483398, 0.99007225036621};

constexpr int32_t kWindowFrames = kSoundRate * 4 / 10;
constexpr double kOffset = -0.691;
constexpr double kSilence = -70.0;  // LUFS
constexpr double kFullScale = -double{std::numeric_limits<int16_t>::min()};

double toLoudness(double power) {
  return kOffset + 10.0 * std::log10(power);
}

}  // namespace

double LoudnessMeter::Channel::weigh(double sample) {
  return kLowTones.run(kHead.run(sample, state[0], state[1]), state[2], state[3]);
}

void LoudnessMeter::hear(std::span<const int16_t> samples) {
  for (size_t index = 0; index + 1 < samples.size(); index += 2) {
    const double left = channels_[0].weigh(samples[index] / kFullScale);
    const double right = channels_[1].weigh(samples[index + 1] / kFullScale);
    window_power_ += left * left + right * right;
    if (++window_frames_ < kWindowFrames) continue;
    const double power = window_power_ / kWindowFrames;
    if (power > 0.0 && toLoudness(power) > kSilence) {
      power_ += power;
      ++windows_;
    }
    window_power_ = 0.0;
    window_frames_ = 0;
  }
}

std::optional<double> LoudnessMeter::loudness() const {
  if (windows_ == 0) return std::nullopt;
  return toLoudness(power_ / static_cast<double>(windows_));
}

}  // namespace corvane::rtc
