// What the application makes of the local voice, seen in its spectrum and in how it dies away.
#include "voice/voice_effects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "corvane_rtc/common.h"
#include "media/sound_level.h"
#include "media/sound_spectrum.h"
#include "support/signals.h"

namespace corvane::rtc {
namespace {

using test::Signal;

constexpr double kBinHertz = 93.75;

std::vector<int16_t> through(VoiceEffects& effects, const Signal& signal, int64_t blocks) {
  std::vector<int16_t> all;
  SoundBlock block;
  for (int64_t index = 0; index < blocks; ++index) {
    for (int64_t sample = 0; sample < kBlockFrames; ++sample) {
      block.storage[static_cast<size_t>(sample)] =
          static_cast<int16_t>(32767.0 * signal(index * kBlockFrames + sample));
    }
    effects.process(block);
    all.insert(all.end(), block.samples().begin(), block.samples().end());
  }
  return all;
}

std::span<const int16_t> blocksOf(const std::vector<int16_t>& sound, size_t from, size_t to) {
  return std::span(sound).subspan(from * kBlockFrames, (to - from) * kBlockFrames);
}

double decibels(std::span<const int16_t> samples) {
  SoundLevel level;
  level.add(samples);
  return 20.0 * std::log10(level.amplitude() + 1e-9);
}

PowerSpectrum spectrum(std::span<const int16_t> samples) {
  SpectrumAnalyzer analyzer;
  PowerSpectrum sum = {};
  std::vector<float> block(kBlockFrames);
  for (size_t at = 0; at + kBlockFrames <= samples.size(); at += kBlockFrames) {
    std::transform(samples.begin() + static_cast<ptrdiff_t>(at),
                   samples.begin() + static_cast<ptrdiff_t>(at + kBlockFrames), block.begin(),
                   [](int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
    analyzer.analyze(block, sum);
  }
  return sum;
}

size_t loudest(const PowerSpectrum& powers) {
  return static_cast<size_t>(std::max_element(powers.begin(), powers.end()) - powers.begin());
}

TEST(VoiceEffects, ShiftsThePitchWithoutGaps) {
  for (const int32_t semitones : {-12, -5, -1, 1, 4, 7, 12}) {
    VoiceEffects effects;
    ASSERT_EQ(effects.setPitch(semitones), kSuccess);
    const std::vector<int16_t> sound = through(effects, test::sine(kBinHertz * 16, 0.5), 400);
    const auto settled = blocksOf(sound, 50, 400);
    EXPECT_EQ(loudest(spectrum(settled)), std::lround(16.0 * std::pow(2.0, semitones / 12.0))) << semitones;
    // Every 10 ms are as loud as the others.
    for (size_t block = 50; block < 400; ++block) {
      ASSERT_NEAR(decibels(blocksOf(sound, block, block + 1)), -6.0, 2.0) << semitones << " block " << block;
    }
  }
}

TEST(VoiceEffects, TurnsOneBandAndLeavesTheOthers) {
  for (const int32_t gain : {-15, -6, 6, 15}) {
    for (int32_t band = 0; band < 10; ++band) {
      VoiceEffects effects;
      ASSERT_EQ(effects.setBand({band, gain}), kSuccess);
      const double centre = 31.25 * std::pow(2.0, band);
      const auto gain_at = [&](double hertz) {
        const std::vector<int16_t> sound = through(effects, test::sine(hertz, 0.1), 60);
        return decibels(blocksOf(sound, 20, 60)) + 20.0;
      };
      EXPECT_NEAR(gain_at(centre), gain, 0.3) << band;
      EXPECT_NEAR(gain_at(band < 5 ? centre * 8.0 : centre / 8.0), 0.0, 1.0) << band;
    }
  }
}

// A tenth of a second of noise, then nothing: what is heard after it.
std::vector<int16_t> clap(const VoiceReverbConfig& config) {
  VoiceEffects effects;
  EXPECT_EQ(effects.setReverb(config), kSuccess);
  effects.enableReverb(true);
  const Signal hiss = test::noise(0.3);
  return through(
      effects, [hiss](int64_t sample) { return sample < 4800 ? hiss(sample) : 0.0; }, 300);
}

TEST(VoiceEffects, ReverberatesAsLongAsAsked) {
  // 20 % of the longest decay, 5 s, are about a second for 60 dB.
  const std::vector<int16_t> room = clap({50, 17, 0, 0, 0, 0});
  const double early = decibels(blocksOf(room, 15, 25));
  const double late = decibels(blocksOf(room, 65, 75));
  EXPECT_NEAR(early - late, 30.0, 5.0);
  const std::vector<int16_t> hall = clap({50, 100, 0, 0, 0, 0});
  EXPECT_NEAR(decibels(blocksOf(hall, 15, 25)) - decibels(blocksOf(hall, 65, 75)), 6.0, 3.0);

  // Damping takes the high sound first.
  const auto brightness = [](const std::vector<int16_t>& sound) {
    const PowerSpectrum powers = spectrum(blocksOf(sound, 20, 60));
    float low = 0.0F;
    float high = 0.0F;
    for (size_t bin = 2; bin < 20; ++bin) low += powers[bin];
    for (size_t bin = 80; bin < 98; ++bin) high += powers[bin];
    return high / low;
  };
  EXPECT_LT(brightness(clap({50, 30, 100, 0, 0, 0})), 0.1F * brightness(clap({50, 30, 0, 0, 0, 0})));

  // The room alone answers later by the pre-delay.
  const std::vector<int16_t> delayed = clap({50, 30, 0, 0, -20, 200});
  EXPECT_LT(decibels(blocksOf(delayed, 0, 10)), -25.0);
  EXPECT_LT(decibels(blocksOf(delayed, 11, 20)), -90.0);
  EXPECT_GT(decibels(blocksOf(delayed, 23, 30)), -25.0);
}

TEST(VoiceEffects, AreOffUntilAskedForAndRefuseWhatIsOutOfRange) {
  VoiceEffects effects;
  EXPECT_EQ(effects.setReverb({50, 50, 50, 10, 10, 0}), kSuccess);
  const Signal tone = test::sine(440.0, 0.5);
  VoiceEffects untouched;
  const std::vector<int16_t> plain = through(untouched, tone, 20);
  EXPECT_EQ(through(effects, tone, 20), plain);
  effects.enableReverb(true);
  effects.setPitch(3);
  effects.setBand({4, 10});
  EXPECT_NE(through(effects, tone, 20), plain);
  effects.enableReverb(false);
  effects.setPitch(0);
  effects.setBand({4, 0});
  EXPECT_EQ(through(effects, tone, 20), plain);

  for (const int32_t semitones : {-13, 13}) EXPECT_EQ(effects.setPitch(semitones), kInvalidParameter);
  for (const VoiceEqualizationConfig& config : {VoiceEqualizationConfig{-1, 0}, {10, 0}, {0, -16}, {0, 16}}) {
    EXPECT_EQ(effects.setBand(config), kInvalidParameter);
  }
  for (const VoiceReverbConfig& config : {VoiceReverbConfig{-1, 0, 0, 0, 0, 0},
                                          {0, 101, 0, 0, 0, 0},
                                          {0, 0, 101, 0, 0, 0},
                                          {0, 0, 0, 11, 0, 0},
                                          {0, 0, 0, 0, -21, 0},
                                          {0, 0, 0, 0, 0, 201}}) {
    EXPECT_EQ(effects.setReverb(config), kInvalidParameter);
  }
  EXPECT_EQ(through(effects, tone, 20), plain);
}

}  // namespace
}  // namespace corvane::rtc
