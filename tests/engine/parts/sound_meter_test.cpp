#include "media/sound_meter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "media/sound_gain.h"
#include "support/signals.h"

namespace corvane::rtc {
namespace {

using test::noise;
using test::Signal;
using test::sine;
using test::vowel;

void play(SoundMeter& meter, const Signal& signal, int blocks, int32_t channels = 1, bool muted = false) {
  SoundBlock block;
  block.channels = channels;
  block.muted = muted;
  for (int64_t sample = 0; sample < static_cast<int64_t>(blocks) * kBlockFrames;) {
    for (auto at = block.samples().begin(); at != block.samples().end(); ++sample) {
      const auto value = static_cast<int16_t>(std::lround(32767.0 * signal(sample)));
      for (int32_t channel = 0; channel < channels; ++channel) *at++ = value;
    }
    meter.onSound(block);
  }
}

AudioPropertiesInfo measure(const SoundMeterSettings& settings, const Signal& signal, int32_t channels = 1) {
  SoundMeter meter(settings);
  play(meter, signal, 50, channels);
  return meter.take().value();
}

TEST(SoundMeter, MeasuresTheAmplitudeOfASine) {
  for (const double decibels : {0.0, -1.0, -6.0, -20.0, -45.0, -80.0}) {
    const double amplitude = std::pow(10.0, decibels / 20.0);
    for (const int32_t channels : {1, 2}) {
      const AudioPropertiesInfo info = measure({}, sine(1000.0, amplitude), channels);
      EXPECT_EQ(info.nonlinear_volume, std::lround(decibels));
      EXPECT_EQ(info.linear_volume, std::lround(255.0 * amplitude));
      EXPECT_EQ(*std::max_element(info.spectrum, info.spectrum + kAudioSpectrumSize), 0.0F);
    }
  }
  const AudioPropertiesInfo silent = measure({}, [](int64_t) { return 0.0; });
  EXPECT_EQ(silent.linear_volume, 0);
  EXPECT_EQ(silent.nonlinear_volume, -127);
  const AudioPropertiesInfo square = measure({}, [](int64_t sample) { return sample / 50 % 2 == 0 ? 1.0 : -1.0; });
  EXPECT_EQ(square.linear_volume, 255);
  EXPECT_EQ(square.nonlinear_volume, 0);
}

TEST(SoundMeter, ShowsEachToneAtItsFrequencyWithItsAmplitude) {
  const SoundMeterSettings settings = {.spectrum = true};
  constexpr double kBinHertz = 93.75;
  for (const int bin : {4, 40, 128, 250}) {
    const AudioPropertiesInfo info = measure(settings, sine(kBinHertz * bin, 0.5));
    EXPECT_NEAR(info.spectrum[bin], 127.5, 6.0);
    for (int other = 0; other < kAudioSpectrumSize; ++other) {
      EXPECT_TRUE(std::abs(other - bin) <= 2 || info.spectrum[other] < 3.0F) << bin << " " << other;
    }
  }
  // Of both channels alike, and of each by half.
  const AudioPropertiesInfo both = measure(settings, sine(kBinHertz * 40, 1.0), 2);
  EXPECT_NEAR(both.spectrum[40], 255.0, 6.0);
}

TEST(SoundMeter, TellsVoicesFromOtherSoundAndTheirPitch) {
  const SoundMeterSettings settings = {.voice_activity = true, .voice_pitch = true};
  for (const double hertz : {90.0, 130.0, 220.0, 330.0}) {
    const AudioPropertiesInfo info = measure(settings, vowel(hertz));
    EXPECT_EQ(info.vad, kAudioVoiceActivityVoice) << hertz;
    EXPECT_NEAR(info.voice_pitch, hertz, hertz * 0.03);
  }
  const std::pair<const char*, Signal> others[] = {
      {"silence", [](int64_t) { return 0.0; }},
      {"hiss", noise(0.3)},
      {"low tone", sine(200.0, 0.5)},
      {"high tone", sine(1500.0, 0.5)},
      {"beep", [](int64_t sample) { return sample / 24 % 2 == 0 ? 0.3 : -0.3; }},
      {"a knock",
       [](int64_t sample) {
         const double at = static_cast<double>(sample) / kSoundRate;
         return 0.8 * std::exp(-at * 80.0) * std::sin(2.0 * std::numbers::pi * 120.0 * at);
       }},
      {"a voice too faint to matter", [](int64_t sample) { return 0.003 * vowel(130.0)(sample); }},
  };
  for (const auto& [name, signal] : others) {
    const AudioPropertiesInfo info = measure(settings, signal);
    EXPECT_EQ(info.vad, kAudioVoiceActivityNone) << name;
    EXPECT_EQ(info.voice_pitch, 0.0) << name;
  }
  EXPECT_EQ(measure({.voice_pitch = true}, vowel(130.0)).vad, kAudioVoiceActivityNone);
  EXPECT_EQ(measure({.voice_activity = true}, vowel(130.0)).voice_pitch, 0.0);
}

TEST(SoundMeter, HearsAVoiceOverSteadyNoise) {
  SoundMeter meter({.voice_activity = true});
  // The background is known after some time.
  play(meter, noise(0.02), 1000);
  EXPECT_EQ(meter.take()->vad, kAudioVoiceActivityNone);
  const Signal background = noise(0.02);
  play(
      meter, [&](int64_t sample) { return vowel(150.0)(sample) + background(sample); }, 50);
  EXPECT_EQ(meter.take()->vad, kAudioVoiceActivityVoice);
}

TEST(SoundMeter, SmoothsFromReportToReportAndStartsAnewAfterAPause) {
  SoundMeter meter({.smooth = 0.5});
  play(meter, sine(1000.0, 0.8), 10);
  EXPECT_EQ(meter.take()->linear_volume, 204);
  play(meter, sine(1000.0, 0.0), 10);
  EXPECT_EQ(meter.take()->linear_volume, 102);
  play(meter, sine(1000.0, 0.0), 10);
  EXPECT_EQ(meter.take()->linear_volume, 51);
  EXPECT_FALSE(meter.take().has_value());
  play(meter, sine(1000.0, 0.1), 10);
  EXPECT_EQ(meter.take()->linear_volume, 26);
  play(meter, sine(1000.0, 0.0), 10, 1, /*muted=*/true);
  EXPECT_FALSE(meter.take().has_value());
}

TEST(SoundGain, GoesOverToANewVolumeWithoutAStep) {
  SoundGain gain;
  SoundBlock block;
  block.channels = 2;
  const auto fill = [&](int16_t left, int16_t right) {
    for (size_t index = 0; index < block.samples().size(); ++index)
      block.storage[index] = index % 2 == 0 ? left : right;
  };
  fill(1000, -2000);
  gain.apply(block, 0.5F);
  EXPECT_EQ(block.storage[0], 500);
  EXPECT_EQ(block.storage[1], -1000);
  fill(1000, -2000);
  gain.apply(block, 1.0F);
  for (size_t index = 2; index < block.samples().size(); index += 2) {
    EXPECT_GE(block.storage[index], block.storage[index - 2]);
    EXPECT_LE(block.storage[index] - block.storage[index - 2], 3);
    EXPECT_NEAR(block.storage[index + 1], -2 * block.storage[index], 2);
  }
  EXPECT_EQ(block.storage[958], 1000);
  fill(30000, -30000);
  gain.apply(block, 1.0F);
  EXPECT_EQ(block.storage[0], 30000);
  gain.apply(block, 4.0F);
  EXPECT_EQ(block.storage[958], 32767);
  EXPECT_EQ(block.storage[959], -32768);
}

}  // namespace
}  // namespace corvane::rtc
