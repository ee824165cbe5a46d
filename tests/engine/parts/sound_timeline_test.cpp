#include "recording/sound_timeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/gstreamer.h"

namespace corvane::rtc {
namespace {

constexpr int64_t kBegin = 5'000'000;

SoundBlock level(int64_t ms, int16_t left, int16_t right, int32_t channels = 2) {
  SoundBlock block;
  block.channels = channels;
  block.time_us = kBegin + ms * 1000;
  for (size_t index = 0; index < block.samples().size(); ++index) {
    block.storage[index] = channels == 2 && index % 2 == 1 ? right : left;
  }
  return block;
}

/// What stands before that time, one entry for each millisecond.
std::vector<std::pair<int, int>> take(SoundTimeline& timeline, int64_t ms) {
  std::vector<std::pair<int, int>> taken;
  while (const GstPtr<GstBuffer> buffer = timeline.take(kBegin + ms * 1000)) {
    std::vector<int16_t> samples(gst_buffer_get_size(buffer.get()) / sizeof(int16_t));
    gst_buffer_extract(buffer.get(), 0, samples.data(), samples.size() * sizeof(int16_t));
    for (size_t at = 0; at < samples.size(); at += 96) taken.emplace_back(samples[at], samples[at + 1]);
  }
  return taken;
}

class SoundTimelineTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string problem;
    ASSERT_TRUE(startGStreamer(problem));
    first.onSound(level(-10, 7, 7));
    timeline.begin(kBegin);
  }

  SoundTimeline timeline;
  SoundTimeline::Source first{timeline};
  SoundTimeline::Source second{timeline};
};

TEST_F(SoundTimelineTest, AddsUpSourcesAtTheirTimesAndIsSilentElsewhere) {
  first.onSound(level(-5, 100, 200));
  first.onSound(level(50, 1000, -1000));
  second.onSound(level(55, 30, 0, 1));
  second.onSound(level(200, 30000, -30000));
  first.onSound(level(200, 30000, -30000));
  const auto taken = take(timeline, 250);
  ASSERT_EQ(taken.size(), 250U);
  using Pair = std::pair<int, int>;
  // Within a stream's usual jitter of the beginning: the whole block.
  EXPECT_EQ(taken[9], Pair(100, 200));
  EXPECT_EQ(taken[12], Pair(0, 0));
  EXPECT_EQ(taken[54], Pair(1000, -1000));
  EXPECT_EQ(taken[55], Pair(1030, -970));
  EXPECT_EQ(taken[64], Pair(30, 30));
  EXPECT_EQ(taken[199], Pair(0, 0));
  EXPECT_EQ(taken[200], Pair(32767, -32768));
  EXPECT_TRUE(take(timeline, 250).empty());
}

TEST_F(SoundTimelineTest, JoinsBlocksWhoseTimesJumpALittleAndFollowsLongerJumps) {
  for (const int64_t ms : {0, 13, 17, 35, 40}) first.onSound(level(ms, 500, 500));
  auto taken = take(timeline, 50);
  EXPECT_EQ(std::count(taken.begin(), taken.end(), std::pair(500, 500)), 50);
  first.onSound(level(100, 500, 500));
  taken = take(timeline, 120);
  EXPECT_EQ(std::count(taken.begin(), taken.end(), std::pair(500, 500)), 10);
  EXPECT_EQ(taken[50].first, 500);
}

TEST_F(SoundTimelineTest, LeavesOutWhatComesTooLateOrFromFarAhead) {
  first.onSound(level(4000, 500, 500));
  EXPECT_EQ(take(timeline, 4500).size(), 4500U);
  first.onSound(level(4490, 500, 500));
  second.onSound(level(4495, 500, 500));
  const auto taken = take(timeline, 5000);
  EXPECT_EQ(std::count(taken.begin(), taken.end(), std::pair(500, 500)), 5);
}

}  // namespace
}  // namespace corvane::rtc
