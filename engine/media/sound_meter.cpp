#include "media/sound_meter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr float kFullScale = 32768.0F;
constexpr double kLoudestMagnitude = 255.0;
// A syllable is longer; a knock that happens to repeat itself is not.
constexpr int32_t kVoicedBlocks = 3;
// More than there are blocks between two reports that are far apart; further pitches are not kept.
constexpr size_t kMaxPitches = 1000;

}  // namespace

SoundMeter::SoundMeter(const SoundMeterSettings& settings) : settings_(settings) {
  pitches_.reserve(kMaxPitches);
  taken_pitches_.reserve(kMaxPitches);
}

void SoundMeter::onSound(const SoundBlock& block) {
  PowerSpectrum powers = {};
  std::optional<float> pitch;
  if (settings_.spectrum || settings_.voice_activity || settings_.voice_pitch) {
    auto sample = block.samples().begin();
    for (float& mono : mono_) {
      int32_t sum = 0;
      for (int32_t channel = 0; channel < block.channels; ++channel) sum += *sample++;
      mono = static_cast<float>(sum) / (kFullScale * static_cast<float>(block.channels));
    }
    if (settings_.spectrum) spectrum_.analyze(mono_, powers);
    if (settings_.voice_activity || settings_.voice_pitch) pitch = voice_.detect(mono_);
  }

  voiced_in_a_row_ = pitch ? voiced_in_a_row_ + 1 : 0;
  const std::lock_guard lock(mutex_);
  gathered_.level.add(block.samples());
  ++gathered_.blocks;
  gathered_.muted = block.muted;
  if (settings_.spectrum) {
    std::transform(powers.begin(), powers.end(), gathered_.powers.begin(), gathered_.powers.begin(), std::plus<>());
  }
  if (voiced_in_a_row_ < kVoicedBlocks) return;
  gathered_.has_voice = true;
  if (pitches_.size() < kMaxPitches) pitches_.push_back(*pitch);
}

std::optional<AudioPropertiesInfo> SoundMeter::take() {
  Gathered heard;
  taken_pitches_.clear();
  {
    const std::lock_guard lock(mutex_);
    heard = std::exchange(gathered_, {});
    pitches_.swap(taken_pitches_);
  }
  if (heard.blocks == 0 || heard.muted) {
    has_last_ = false;
    return std::nullopt;
  }

  AudioPropertiesInfo info = {};
  const double amplitude = smoothed(heard.level.amplitude(), last_amplitude_);
  info.linear_volume = linearVolume(amplitude);
  info.nonlinear_volume = decibelVolume(amplitude);
  if (settings_.spectrum) {
    for (size_t bin = 0; bin < heard.powers.size(); ++bin) {
      const double magnitude = std::sqrt(static_cast<double>(heard.powers[bin]) / heard.blocks);
      info.spectrum[bin] =
          static_cast<float>(std::min(smoothed(magnitude, last_spectrum_[bin]) * kLoudestMagnitude, kLoudestMagnitude));
    }
  }
  has_last_ = true;
  if (settings_.voice_activity) info.vad = heard.has_voice ? kAudioVoiceActivityVoice : kAudioVoiceActivityNone;
  if (settings_.voice_pitch && !taken_pitches_.empty()) {
    const auto middle = taken_pitches_.begin() + static_cast<ptrdiff_t>(taken_pitches_.size() / 2);
    std::nth_element(taken_pitches_.begin(), middle, taken_pitches_.end());
    info.voice_pitch = static_cast<double>(*middle);
  }
  return info;
}

double SoundMeter::smoothed(double newest, double& last) const {
  last = has_last_ ? settings_.smooth * newest + (1.0 - settings_.smooth) * last : newest;
  return last;
}

}  // namespace corvane::rtc
