#include "media/sound_level.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::rtc {

namespace {

constexpr double kFullScale = 32768.0;
constexpr int32_t kLoudest = 255;
constexpr int32_t kSilentDb = -127;

}  // namespace

void SoundLevel::add(std::span<const int16_t> samples) {
  int64_t squares = 0;
  for (const int16_t sample : samples) squares += static_cast<int32_t>(sample) * static_cast<int32_t>(sample);
  squares_ += static_cast<double>(squares);
  count_ += static_cast<int64_t>(samples.size());
}

double SoundLevel::amplitude() const {
  if (count_ == 0) return 0.0;
  return std::sqrt(2.0 * squares_ / static_cast<double>(count_)) / kFullScale;
}

int32_t linearVolume(double amplitude) {
  return static_cast<int32_t>(std::lround(std::clamp(amplitude, 0.0, 1.0) * kLoudest));
}

int32_t decibelVolume(double amplitude) {
  if (amplitude <= 0.0) return kSilentDb;
  return std::clamp(static_cast<int32_t>(std::lround(20.0 * std::log10(amplitude))), kSilentDb, 0);
}

}  // namespace corvane::rtc
