// What operations of all players accept.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "corvane_rtc/media_player.h"

namespace corvane::rtc {

constexpr bool isOutputType(int32_t type) {
  return type >= kPlayerOutputPlayout && type <= kPlayerOutputPlayoutAndPublish;
}

constexpr bool isVolume(int32_t volume) {
  return volume >= 0 && volume <= 400;
}

constexpr bool isPitch(int32_t pitch) {
  return pitch >= -12 && pitch <= 12;
}

constexpr bool isSpeed(int32_t speed) {
  return speed >= 50 && speed <= 200;
}

constexpr bool isDualMonoMode(int32_t mode) {
  return mode >= kPlayerDualMonoAuto && mode <= kPlayerDualMonoMix;
}

/// LUFS; false for what is not a number, too.
constexpr bool isLoudness(double loudness) {
  return loudness >= -70.0 && loudness <= 0.0;
}

/// Milliseconds; 0 and below for none.
constexpr bool isProgressInterval(int64_t interval, int64_t least) {
  return interval <= 0 || interval >= least;
}

/// An hour stands for everything above.
constexpr int64_t progressInterval(int64_t interval) {
  return std::min<int64_t>(interval, 3'600'000);
}

constexpr float gainOf(int32_t volume) {
  return static_cast<float>(volume) / 100.0F;
}

inline int32_t volumeOf(float gain) {
  return static_cast<int32_t>(std::lround(gain * 100.0F));
}

/// As 32 bits hold it: a getter's value, or its negative status.
inline int32_t asResult(int64_t value) {
  return static_cast<int32_t>(std::min<int64_t>(value, std::numeric_limits<int32_t>::max()));
}

/// Null text means "".
inline const char* textOf(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace corvane::rtc
