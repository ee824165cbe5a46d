// Whether a microphone hears the speaker, by how loud both are.
#include "trials/echo_finder.h"

#include <gtest/gtest.h>

#include "support/signals.h"

namespace corvane::rtc {
namespace {

using test::Signal;

SoundBlock block(const Signal& signal, int64_t index) {
  SoundBlock made;
  made.time_us = 1'000'000 + index * 10'000;
  for (int64_t sample = 0; sample < kBlockFrames; ++sample) {
    made.storage[static_cast<size_t>(sample)] = static_cast<int16_t>(32767.0 * signal(index * kBlockFrames + sample));
  }
  return made;
}

int32_t find(const Signal& played, const Signal& heard) {
  EchoFinder finder;
  for (int64_t index = 0; index < 500; ++index) {
    EXPECT_EQ(finder.result(), std::nullopt);
    finder.addPlayed(block(played, index));
    finder.addHeard(block(heard, index));
  }
  return finder.result().value_or(kHardwareEchoDetectionStopped);
}

TEST(EchoFinder, FindsWhatIsPlayedAtAnyDelayAndNothingElse) {
  const Signal speech = test::words(0.4, 0.5, 0.83);
  for (const int64_t milliseconds : {-60, 0, 90, 450}) {
    const Signal echo = test::delayed(test::scaled(speech, 0.1), milliseconds * 48);
    EXPECT_EQ(find(speech, test::sum(echo, test::noise(0.004))), kHardwareEchoDetectionPresent) << milliseconds;
  }
  EXPECT_EQ(find(speech, test::silence()), kHardwareEchoDetectionNone);
  EXPECT_EQ(find(speech, test::noise(0.1)), kHardwareEchoDetectionNone);
  EXPECT_EQ(find(speech, test::words(0.4, 0.3, 0.52)), kHardwareEchoDetectionNone);
  // What is always as loud cannot be recognised.
  EXPECT_EQ(find(test::sine(440.0, 0.3), test::sine(440.0, 0.1)), kHardwareEchoDetectionUnknown);
}

}  // namespace
}  // namespace corvane::rtc
