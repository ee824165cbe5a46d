#include "players/stretcher.h"

#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "players/pcm.h"

namespace corvane::rtc {

static_assert(std::is_same_v<soundtouch::SAMPLETYPE, float>);

namespace {

constexpr float kFullScale = 32768.0F;

}  // namespace

struct Stretcher::Parts {
  soundtouch::SoundTouch touch;
  std::vector<float> floats;
};

Stretcher::Stretcher() : parts_(std::make_unique<Parts>()) {
  parts_->touch.setSampleRate(kSoundRate);
  parts_->touch.setChannels(kPcmChannels);
}

Stretcher::~Stretcher() = default;

void Stretcher::set(int32_t semitones, int32_t speed) {
  parts_->touch.setPitchSemiTones(static_cast<double>(semitones));
  parts_->touch.setTempo(static_cast<double>(speed) / 100.0);
}

void Stretcher::put(std::span<const int16_t> samples) {
  parts_->floats.resize(samples.size());
  std::transform(samples.begin(), samples.end(), parts_->floats.begin(),
                 [](int16_t sample) { return static_cast<float>(sample) / kFullScale; });
  parts_->touch.putSamples(parts_->floats.data(), static_cast<unsigned>(samples.size() / kPcmChannels));
}

void Stretcher::flush() {
  parts_->touch.flush();
}

void Stretcher::clear() {
  parts_->touch.clear();
}

size_t Stretcher::available() const {
  return parts_->touch.numSamples() * kPcmChannels;
}

size_t Stretcher::take(std::span<int16_t> samples) {
  parts_->floats.resize(samples.size());
  const size_t count =
      parts_->touch.receiveSamples(parts_->floats.data(), static_cast<unsigned>(samples.size() / kPcmChannels)) *
      kPcmChannels;
  std::transform(
      parts_->floats.begin(), parts_->floats.begin() + static_cast<ptrdiff_t>(count), samples.begin(),
      [](float sample) {
        return static_cast<int16_t>(std::clamp(std::nearbyint(sample * kFullScale), -kFullScale, kFullScale - 1.0F));
      });
  return count;
}

int64_t Stretcher::held() const {
  const double ready = parts_->touch.numSamples() / parts_->touch.getInputOutputSampleRatio();
  return static_cast<int64_t>(parts_->touch.numUnprocessedSamples()) + static_cast<int64_t>(ready);
}

}  // namespace corvane::rtc
