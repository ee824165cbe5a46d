#include "media/hook_path.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvane::rtc {
namespace {

constexpr int64_t kStart = 5'000'000;

int16_t wave(int64_t sample) {
  return static_cast<int16_t>(
      std::lround(10'000.0 * std::sin(2.0 * std::numbers::pi * 500.0 * static_cast<double>(sample) / kSoundRate)));
}

// Block number `index` of a tone of 500 Hz.
SoundBlock toneBlock(int64_t index, int32_t channels) {
  SoundBlock block;
  block.channels = channels;
  block.time_us = kStart + index * 10'000;
  for (int64_t frame = 0; frame < kBlockFrames; ++frame) {
    for (int32_t channel = 0; channel < channels; ++channel) {
      block.storage[static_cast<size_t>(frame * channels + channel)] = wave(index * kBlockFrames + frame);
    }
  }
  return block;
}

class HookPathTest : public testing::TestWithParam<AudioFormat> {
 protected:
  void SetUp() override { gst_init(nullptr, nullptr); }
};

TEST_P(HookPathTest, LosesNothingOnTheWayThereAndBack) {
  for (const int32_t channels : {1, 2}) {
    const FrameShape shape = readFrameShape(GetParam(), channels).value();
    ProcessingPath path(channels, shape);
    int64_t frames = 0;
    std::vector<int16_t> back;
    for (int64_t index = 0; index < 300; ++index) {
      SoundBlock block = toneBlock(index, channels);
      path.process(block, [&](LentAudioFrame& frame) {
        EXPECT_EQ(frame.sampleRate(), shape.format.sample_rate);
        EXPECT_EQ(frame.channels(), shape.format.channels);
        EXPECT_EQ(frame.dataSize(), shape.frames * shape.format.channels * 2);
        // Whole frames one after the other: each begins where the last one ended, the filter's length aside.
        const double due = static_cast<double>(frames * shape.frames) * 1e6 / shape.format.sample_rate;
        EXPECT_NEAR(static_cast<double>(frame.timestampUs() - kStart), due, 5000.0);
        ++frames;
      });
      ASSERT_EQ(block.samples().size(), static_cast<size_t>(kBlockFrames * channels));
      for (size_t at = 0; at < block.samples().size(); at += static_cast<size_t>(channels)) {
        back.push_back(block.storage[at]);
        ASSERT_EQ(block.storage[at], block.storage[at + static_cast<size_t>(channels) - 1]);
      }
    }
    EXPECT_GE(frames * shape.frames, int64_t{299} * shape.format.sample_rate / 100 - shape.frames - 200);

    // The tone is whole from some moment on: every sample follows from the two before it.
    const double follow = 2.0 * std::cos(2.0 * std::numbers::pi * 500.0 / kSoundRate);
    for (size_t at = 7200; at < back.size(); ++at) {
      ASSERT_NEAR(back[at], follow * back[at - 1] - back[at - 2], 40.0) << "sample " << at << " of " << channels;
    }
    EXPECT_GT(*std::max_element(back.begin() + 7200, back.end()), 9'000);
  }
}

TEST_P(HookPathTest, HandsBlocksOutInFrames) {
  const FrameShape shape = readFrameShape(GetParam(), 1).value();
  OutgoingPath path(1, shape);
  int64_t frames = 0;
  int64_t last_us = 0;
  for (int64_t index = 0; index < 300; ++index) {
    SoundBlock block = toneBlock(index, 1);
    block.muted = index >= 200;
    path.take(block, [&](const LentAudioFrame& frame) {
      EXPECT_GT(frame.timestampUs(), last_us);
      EXPECT_EQ(frame.isMuted(), block.muted);
      last_us = frame.timestampUs();
      ++frames;
    });
  }
  EXPECT_NEAR(static_cast<double>(frames * shape.frames), 3.0 * shape.format.sample_rate, shape.frames + 200.0);
}

INSTANTIATE_TEST_SUITE_P(Formats, HookPathTest,
                         testing::Values(AudioFormat{0, 0, 0}, AudioFormat{0, 2, 0}, AudioFormat{0, 1, 48},
                                         AudioFormat{0, 0, 4800}, AudioFormat{48000, 1, 1024}, AudioFormat{16000, 1, 0},
                                         AudioFormat{44100, 2, 1024}, AudioFormat{22050, 1, 777},
                                         AudioFormat{8000, 1, 800}, AudioFormat{96000, 2, 0}));

}  // namespace
}  // namespace corvane::rtc
