#include "trials/echo_finder.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "media/sound_level.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kBlockUs = 10'000;
// A device may tell times that are wrong by something, and hear later by what its server holds.
constexpr ptrdiff_t kEarliest = -10;
constexpr ptrdiff_t kLatest = 60;
constexpr float kSilence = -70.0F;
// What goes up and down by less, in dB, cannot be recognised.
constexpr double kLeastChange = 3.0;
// Unrelated speech comes to 0.4 at its best delay.
constexpr double kLikeness = 0.6;

struct Spread {
  double mean;
  double deviation;
};

Spread spreadOf(std::span<const float> values) {
  double sum = 0.0;
  double squares = 0.0;
  for (const float value : values) {
    sum += value;
    squares += static_cast<double>(value) * value;
  }
  const auto count = static_cast<double>(values.size());
  const double mean = sum / count;
  return {mean, std::sqrt(std::max(0.0, squares / count - mean * mean))};
}

double likeness(std::span<const float> a, std::span<const float> b) {
  const Spread of_a = spreadOf(a);
  const Spread of_b = spreadOf(b);
  if (of_a.deviation < kLeastChange || of_b.deviation < kLeastChange) return 0.0;
  double sum = 0.0;
  for (size_t index = 0; index < a.size(); ++index) sum += (a[index] - of_a.mean) * (b[index] - of_b.mean);
  return sum / (static_cast<double>(a.size()) * of_a.deviation * of_b.deviation);
}

}  // namespace

void EchoFinder::add(const SoundBlock& block, Side& side) {
  SoundLevel level;
  level.add(block.samples());
  const auto decibels = static_cast<float>(20.0 * std::log10(level.amplitude() + 1e-6));
  const std::lock_guard lock(mutex_);
  if (start_us_ < 0) start_us_ = block.time_us;
  const int64_t number = std::clamp<int64_t>((block.time_us - start_us_) / kBlockUs, 0, kBlocks - 1);
  // What was left out in between was as loud as this.
  for (int64_t at = std::min(side.last + 1, number); at <= number; ++at) {
    side.levels[static_cast<size_t>(at)] = std::max(kSilence, decibels);
  }
  side.last = std::max(side.last, number);
}

std::optional<HardwareEchoDetectionResult> EchoFinder::result() {
  const std::lock_guard lock(mutex_);
  constexpr auto kLast = static_cast<int64_t>(kBlocks) - 1;
  if (played_.last < kLast || heard_.last < kLast) return std::nullopt;
  if (spreadOf(played_.levels).deviation < kLeastChange) return kHardwareEchoDetectionUnknown;
  double best = 0.0;
  for (ptrdiff_t delay = kEarliest; delay <= kLatest; ++delay) {
    const auto skipped = static_cast<size_t>(std::abs(delay));
    const std::span played = std::span(played_.levels).subspan(delay < 0 ? skipped : 0, kBlocks - skipped);
    const std::span heard = std::span(heard_.levels).subspan(delay > 0 ? skipped : 0, kBlocks - skipped);
    best = std::max(best, likeness(played, heard));
  }
  return best > kLikeness ? kHardwareEchoDetectionPresent : kHardwareEchoDetectionNone;
}

}  // namespace corvane::rtc
