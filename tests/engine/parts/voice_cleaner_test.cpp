// What the microphone's sound is rid of: echo, noise, too little volume.
#include "voice/voice_cleaner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "corvane_rtc/audio_config.h"
#include "media/sound_level.h"
#include "support/signals.h"

namespace corvane::rtc {
namespace {

using test::Signal;

constexpr int64_t kBlockUs = 10'000;

void fill(SoundBlock& block, const Signal& signal, int64_t index) {
  for (int64_t sample = 0; sample < kBlockFrames; ++sample) {
    const double value = signal(index * kBlockFrames + sample);
    for (int32_t channel = 0; channel < block.channels; ++channel) {
      block.storage[static_cast<size_t>(sample * block.channels + channel)] = static_cast<int16_t>(32767.0 * value);
    }
  }
}

double decibels(const SoundLevel& level) {
  return 20.0 * std::log10(level.amplitude() + 1e-9);
}

/// How loud the blocks from `from` on are that `counts` names, after and before, in dB.
struct Levels {
  double before;
  double after;
};

struct Passage {
  Signal microphone;
  int64_t seconds;
  int64_t from;                                                        // seconds that are for getting used to it
  std::function<bool(int64_t)> counts = [](int64_t) { return true; };  // by block in a second
  Signal speaker = {};
};

Levels clean(VoiceCleaner& cleaner, const Passage& passage) {
  SoundLevel before;
  SoundLevel after;
  SoundBlock block;
  SoundBlock played;
  played.channels = 2;
  for (int64_t index = 0; index < passage.seconds * 100; ++index) {
    if (passage.speaker != nullptr) {
      // What is mixed now is heard 50 ms later.
      fill(played, passage.speaker, index);
      played.time_us = (index + 5) * kBlockUs;
      cleaner.reference().onSound(played);
    }
    fill(block, passage.microphone, index);
    block.time_us = index * kBlockUs;
    const bool counts = index >= passage.from * 100 && passage.counts(index % 100);
    if (counts) before.add(block.samples());
    cleaner.process(block);
    if (counts) after.add(block.samples());
  }
  return {decibels(before), decibels(after)};
}

// Words of 400 ms, one a second; noise is heard alone well after each.
bool isWord(int64_t block) {
  return block >= 5 && block < 35;
}
bool isPause(int64_t block) {
  return block >= 60 && block < 95;
}

TEST(VoiceCleaner, TakesNoiseOutByModeAndLeavesSpeech) {
  double last = 0.0;
  for (const int32_t mode : {kAnsModeLow, kAnsModeMedium, kAnsModeHigh}) {
    const Signal speech = test::words(0.3, 0.4, 1.0);
    VoiceCleaner cleaner;
    cleaner.setNoiseSuppression(mode);
    const Levels pauses = clean(cleaner, {test::sum(speech, test::noise(0.02)), 6, 3, isPause});
    EXPECT_LT(pauses.after - pauses.before, last - 2.0) << mode;
    last = pauses.after - pauses.before;
    const Levels words = clean(cleaner, {test::sum(speech, test::noise(0.02)), 6, 3, isWord});
    EXPECT_NEAR(words.after, words.before, 2.0) << mode;
  }
  EXPECT_LT(last, -12.0);
}

TEST(VoiceCleaner, SuppressesMoreWhereThereIsMoreNoiseWhenItIsAutomatic) {
  const auto change = [](double amplitude) {
    VoiceCleaner cleaner;
    cleaner.setNoiseSuppression(kAnsModeAutomatic);
    const Levels levels = clean(cleaner, {test::noise(amplitude), 12, 10});
    return levels.after - levels.before;
  };
  const double quiet_room = change(0.0005);
  const double fan = change(0.02);
  EXPECT_LT(quiet_room, -3.0);
  EXPECT_LT(fan, quiet_room - 3.0);
}

TEST(VoiceCleaner, TakesOutTheEchoOfWhatIsPlayedAndLeavesWhoTalks) {
  const Signal far = test::sum(test::words(0.3, 0.7, 1.0), test::noise(0.01));
  for (const int64_t delay_ms : {5, 50, 120}) {
    // Heard 50 ms after it was mixed, and this much later again by the microphone.
    const Signal echo = test::scaled(test::delayed(test::words(0.3, 0.7, 1.0), (50 + delay_ms) * 48), 0.4);
    VoiceCleaner cleaner;
    cleaner.setDevice(true);
    cleaner.setNoiseSuppression(kAnsModeDisable);
    cleaner.setGainControl(false);
    const Levels levels = clean(cleaner, {echo, 12, 8, [](int64_t) { return true; }, far});
    EXPECT_LT(levels.after, levels.before - 20.0) << delay_ms;
    const Levels talk = clean(cleaner, {test::words(0.3, 0.7, 1.0), 4, 1, isWord, test::silence()});
    EXPECT_NEAR(talk.after, talk.before, 2.0) << delay_ms;
  }
}

TEST(VoiceCleaner, MakesQuietSpeechLouderAndLeavesLoudSpeechUncut) {
  VoiceCleaner cleaner;
  cleaner.setGainControl(true);
  const Levels quiet = clean(cleaner, {test::words(0.03, 0.4, 1.0), 12, 8, isWord});
  EXPECT_GT(quiet.after, quiet.before + 6.0);
  const Levels loud = clean(cleaner, {test::words(0.9, 0.4, 1.0), 12, 8, isWord});
  EXPECT_NEAR(loud.after, loud.before, 4.0);
}

TEST(VoiceCleaner, ChangesNothingThatItWasNotAskedFor) {
  const auto changes = [](const std::function<void(VoiceCleaner&)>& prepare) {
    VoiceCleaner cleaner;
    prepare(cleaner);
    SoundBlock block;
    SoundBlock same;
    bool changed = false;
    for (int64_t index = 0; index < 50; ++index) {
      fill(block, test::noise(0.1), index);
      same = block;
      cleaner.process(block);
      changed |= !std::equal(block.samples().begin(), block.samples().end(), same.samples().begin());
    }
    return changed;
  };
  EXPECT_FALSE(changes([](VoiceCleaner&) {}));
  EXPECT_TRUE(changes([](VoiceCleaner& cleaner) { cleaner.setDevice(true); }));
  EXPECT_TRUE(changes([](VoiceCleaner& cleaner) { cleaner.setNoiseSuppression(kAnsModeLow); }));
  EXPECT_FALSE(changes([](VoiceCleaner& cleaner) {
    cleaner.setDevice(true);
    cleaner.setHeadphones(true);
    cleaner.setNoiseSuppression(kAnsModeDisable);
    cleaner.setGainControl(false);
  }));
  EXPECT_FALSE(changes([](VoiceCleaner& cleaner) {
    cleaner.setDevice(true);
    cleaner.setNoiseSuppression(kAnsModeHigh);
    cleaner.setGainControl(true);
    cleaner.leaveToSoundCard(true);
  }));
}

}  // namespace
}  // namespace corvane::rtc
