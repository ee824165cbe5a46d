#include "media/voice_detector.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::rtc {

namespace {

constexpr double kLowRate = 8000.0;
constexpr double kPassHz = 3400.0;

// Levels in dB of full scale.
constexpr float kFaintestVoice = -60.0F;
constexpr float kQuietRoom = -70.0F;
constexpr float kAboveBackground = 9.0F;
// What goes on and on becomes background: 3 dB a second up, at once down.
constexpr float kBackgroundRise = 0.03F;

// Lag of 400 Hz; a sound that repeats itself more often is no voice.
constexpr size_t kVoiceLag = 20;
constexpr float kLeastLikeness = 0.6F;
// Sound that repeats itself does so at every multiple of its period, too: the first that is as good counts.
constexpr float kAsGood = 0.9F;
// Part of the power that following each sample from the two before it leaves over: next to nothing of one sine.
constexpr float kToneResidue = 3e-4F;

float decibels(float power) {
  return 10.0F * std::log10(power + 1e-12F);
}

}  // namespace

VoiceDetector::VoiceDetector() : background_db_(kQuietRoom) {
  double sum = 0.0;
  std::array<double, kTaps> taps;
  for (size_t index = 0; index < kTaps; ++index) {
    const double at = static_cast<double>(index) - (kTaps - 1) / 2.0;
    const double cutoff = 2.0 * std::numbers::pi * kPassHz / kSoundRate;
    const double window = 0.54 + 0.46 * std::cos(2.0 * std::numbers::pi * at / (kTaps - 1));
    taps[index] = window * (at == 0.0 ? cutoff : std::sin(cutoff * at) / at);
    sum += taps[index];
  }
  std::transform(taps.begin(), taps.end(), filter_.begin(),
                 [sum](double tap) { return static_cast<float>(tap / sum); });
}

std::optional<float> VoiceDetector::detect(std::span<const float, kBlockFrames> samples) {
  decimate(samples);
  if (!isAboveBackground() || isPureTone()) return std::nullopt;
  return findPitch();
}

void VoiceDetector::decimate(std::span<const float, kBlockFrames> samples) {
  std::copy(input_.end() - (kTaps - 1), input_.end(), input_.begin());
  std::copy(samples.begin(), samples.end(), input_.begin() + (kTaps - 1));
  std::copy(history_.begin() + kHop, history_.end(), history_.begin());
  for (size_t index = 0; index < kHop; ++index) {
    const float* from = input_.data() + index * kDecimation;
    float sum = 0.0F;
    for (size_t tap = 0; tap < kTaps; ++tap) sum += filter_[tap] * from[tap];
    history_[kHistory - kHop + index] = sum;
  }
}

bool VoiceDetector::isAboveBackground() {
  float power = 0.0F;
  for (size_t index = kHistory - kHop; index < kHistory; ++index) power += history_[index] * history_[index];
  const float level = decibels(power / kHop);
  background_db_ = std::clamp(level, kQuietRoom, background_db_ + kBackgroundRise);
  return level > std::max(kFaintestVoice, background_db_ + kAboveBackground);
}

bool VoiceDetector::isPureTone() const {
  // The best x[n] = a * (x[n-1]) - x[n-2], which every sine follows without a rest.
  float power = 0.0F;
  float cross = 0.0F;
  float middle = 0.0F;
  for (size_t index = kHistory - kWindow; index < kHistory; ++index) {
    const float ends = history_[index] + history_[index - 2];
    cross += ends * history_[index - 1];
    middle += history_[index - 1] * history_[index - 1];
    power += ends * ends;
  }
  if (middle <= 0.0F) return true;
  const float rest = power - cross * cross / middle;
  return rest < kToneResidue * middle;
}

std::optional<float> VoiceDetector::findPitch() {
  const float* const now = history_.data() + kHistory - kWindow;
  float now_power = 0.0F;
  for (size_t index = 0; index < kWindow; ++index) now_power += now[index] * now[index];
  float best = 0.0F;
  for (size_t lag = kShortestLag - 1; lag < likeness_.size(); ++lag) {
    const float* const then = now - lag;
    float product = 0.0F;
    float then_power = 0.0F;
    for (size_t index = 0; index < kWindow; ++index) {
      product += now[index] * then[index];
      then_power += then[index] * then[index];
    }
    likeness_[lag] = product / std::sqrt(now_power * then_power + 1e-12F);
    best = std::max(best, likeness_[lag]);
  }
  if (best < kLeastLikeness) return std::nullopt;

  for (size_t lag = kShortestLag; lag <= kLongestLag; ++lag) {
    const float before = likeness_[lag - 1];
    const float here = likeness_[lag];
    const float after = likeness_[lag + 1];
    if (here < kAsGood * best || here < before || here < after) continue;
    if (lag < kVoiceLag) return std::nullopt;
    const float bend = before - 2.0F * here + after;
    const float shift = bend < 0.0F ? 0.5F * (before - after) / bend : 0.0F;
    return static_cast<float>(kLowRate) / (static_cast<float>(lag) + shift);
  }
  return std::nullopt;
}

}  // namespace corvane::rtc
