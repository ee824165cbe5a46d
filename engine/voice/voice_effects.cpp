#include "voice/voice_effects.h"

#include <algorithm>
#include <cmath>

#include "corvane_rtc/common.h"
#include "voice/pitch_shifter.h"
#include "voice/reverb.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kSemitones = 12;
constexpr int32_t kBandDecibels = 15;
constexpr float kFullScale = 32768.0F;

bool isWithin(int32_t value, int32_t least, int32_t most) {
  return value >= least && value <= most;
}

bool isPercent(int32_t value) {
  return isWithin(value, 0, 100);
}

bool isReverbGain(int32_t decibels) {
  return isWithin(decibels, -20, 10);
}

template <class T>
void turn(std::unique_ptr<T>& effect, bool on) {
  if (!on) {
    effect.reset();
  } else if (effect == nullptr) {
    effect = std::make_unique<T>();
  }
}

}  // namespace

VoiceEffects::VoiceEffects() = default;
VoiceEffects::~VoiceEffects() = default;

template <class F>
void VoiceEffects::change(F&& function) {
  const std::lock_guard lock(mutex_);
  function(settings_);
  changed_.store(true, std::memory_order_relaxed);
}

int32_t VoiceEffects::setPitch(int32_t semitones) {
  if (!isWithin(semitones, -kSemitones, kSemitones)) return kInvalidParameter;
  change([&](Settings& settings) { settings.semitones = semitones; });
  return kSuccess;
}

int32_t VoiceEffects::setBand(const VoiceEqualizationConfig& config) {
  if (!isWithin(config.frequency, 0, Equalizer::kBands - 1) || !isWithin(config.gain, -kBandDecibels, kBandDecibels)) {
    return kInvalidParameter;
  }
  change([&](Settings& settings) { settings.gains[static_cast<size_t>(config.frequency)] = config.gain; });
  return kSuccess;
}

int32_t VoiceEffects::setReverb(const VoiceReverbConfig& config) {
  constexpr int32_t kLongestPreDelay = 200;
  if (!isPercent(config.room_size) || !isPercent(config.decay_time) || !isPercent(config.damping) ||
      !isReverbGain(config.wet_gain) || !isReverbGain(config.dry_gain) ||
      !isWithin(config.pre_delay, 0, kLongestPreDelay)) {
    return kInvalidParameter;
  }
  change([&](Settings& settings) { settings.reverb = config; });
  return kSuccess;
}

void VoiceEffects::enableReverb(bool enable) {
  change([&](Settings& settings) { settings.reverb_on = enable; });
}

void VoiceEffects::adopt() {
  const std::lock_guard lock(mutex_);
  changed_.store(false, std::memory_order_relaxed);
  const Equalizer::Gains& gains = settings_.gains;
  turn(equalizer_, std::any_of(gains.begin(), gains.end(), [](int32_t gain) { return gain != 0; }));
  turn(pitch_, settings_.semitones != 0);
  turn(reverb_, settings_.reverb_on);
  if (equalizer_ != nullptr) equalizer_->set(gains);
  if (pitch_ != nullptr) pitch_->set(settings_.semitones);
  if (reverb_ != nullptr) reverb_->set(settings_.reverb);
}

void VoiceEffects::process(SoundBlock& block) {
  if (changed_.load(std::memory_order_relaxed)) adopt();
  if ((equalizer_ == nullptr && pitch_ == nullptr && reverb_ == nullptr) || block.channels != 1) return;
  const auto samples = block.samples();
  std::transform(samples.begin(), samples.end(), samples_.begin(),
                 [](int16_t sample) { return static_cast<float>(sample) / kFullScale; });
  if (equalizer_ != nullptr) equalizer_->process(samples_);
  if (pitch_ != nullptr) pitch_->process(samples_);
  if (reverb_ != nullptr) reverb_->process(samples_);
  std::transform(samples_.begin(), samples_.end(), samples.begin(), [](float sample) {
    return static_cast<int16_t>(std::nearbyint(std::clamp(sample * kFullScale, -kFullScale, kFullScale - 1.0F)));
  });
}

}  // namespace corvane::rtc
