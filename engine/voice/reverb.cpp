#include "voice/reverb.h"

#include <algorithm>
#include <cmath>

#include "media/sound_block.h"

namespace corvane::rtc {

namespace {

// Samples in a room of middling size, without common divisors, so that echoes do not fall together.
constexpr std::array<size_t, 8> kEchoes = {1213, 1291, 1390, 1475, 1548, 1622, 1694, 1759};
constexpr std::array<size_t, 4> kSpreaders = {605, 480, 371, 245};
constexpr float kSpread = 0.5F;

constexpr double kSmallestRoom = 0.3;
constexpr double kLargestRoom = 1.7;
// Seconds until the room is 60 dB softer.
constexpr double kShortestDecay = 0.2;
constexpr double kLongestDecay = 5.0;
// What remains of the last sample in the next, at a damping of 100 %.
constexpr float kMostDamping = 0.85F;
constexpr size_t kLongestPreDelay = kSoundRate / 5;

constexpr double kPercent = 100.0;

float factor(int32_t decibels) {
  return static_cast<float>(std::pow(10.0, decibels / 20.0));
}

}  // namespace

void Reverb::Line::setLength(size_t length) {
  length_ = length;
  if (at_ >= length_) at_ = 0;
}

Reverb::Reverb() : pre_delay_(kLongestPreDelay) {
  const auto longest = [](size_t length) {
    return static_cast<size_t>(static_cast<double>(length) * kLargestRoom) + 1;
  };
  for (const size_t length : kEchoes) echoes_.push_back({Line(longest(length))});
  for (const size_t length : kSpreaders) {
    spreaders_.emplace_back(length);
    spreaders_.back().setLength(length);
  }
}

void Reverb::set(const VoiceReverbConfig& config) {
  const double room = kSmallestRoom + (kLargestRoom - kSmallestRoom) * config.room_size / kPercent;
  const double decay = kShortestDecay + (kLongestDecay - kShortestDecay) * config.decay_time / kPercent;
  double power = 0.0;
  for (size_t index = 0; index < kEchoes.size(); ++index) {
    const auto length = static_cast<size_t>(static_cast<double>(kEchoes[index]) * room);
    const double feedback = std::pow(10.0, -3.0 * static_cast<double>(length) / (kSoundRate * decay));
    echoes_[index].line.setLength(length);
    echoes_[index].feedback = static_cast<float>(feedback);
    power += 1.0 / (1.0 - feedback * feedback);
  }
  damping_ = kMostDamping * static_cast<float>(config.damping / kPercent);
  wet_ = factor(config.wet_gain) / static_cast<float>(std::sqrt(power));
  dry_ = factor(config.dry_gain);
  const auto pre_delay = static_cast<size_t>(config.pre_delay) * kSoundRate / 1000;
  has_pre_delay_ = pre_delay > 0;
  pre_delay_.setLength(std::max<size_t>(pre_delay, 1));
}

void Reverb::process(std::span<float> samples) {
  for (float& sample : samples) {
    float late = sample;
    if (has_pre_delay_) {
      late = pre_delay_.oldest();
      pre_delay_.push(sample);
    }
    sample = dry_ * sample + wet_ * reverberate(late);
  }
}

float Reverb::reverberate(float sample) {
  // Nothing is so soft that it takes slow numbers to hold it.
  constexpr float kNothing = 1e-15F;
  float sum = 0.0F;
  for (Echo& echo : echoes_) {
    const float heard = echo.line.oldest();
    sum += heard;
    echo.damped = heard * (1.0F - damping_) + echo.damped * damping_;
    if (std::abs(echo.damped) < kNothing) echo.damped = 0.0F;
    echo.line.push(sample + echo.damped * echo.feedback);
  }
  for (Line& spreader : spreaders_) {
    const float heard = spreader.oldest();
    float in = sum + kSpread * heard;
    if (std::abs(in) < kNothing) in = 0.0F;
    spreader.push(in);
    sum = heard - kSpread * in;
  }
  return sum;
}

}  // namespace corvane::rtc
