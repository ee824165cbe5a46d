#include "capture/clip_timeline.h"

#include <gtest/gtest.h>

namespace corvane::rtc {
namespace {

constexpr GstClockTime kMs = GST_MSECOND;
constexpr GstClockTime kNone = GST_CLOCK_TIME_NONE;

TEST(ClipTimeline, FollowsTheClipFromWhereverItStarts) {
  ClipTimeline timeline;
  EXPECT_EQ(timeline.place(3000 * kMs, 40 * kMs, 500 * kMs), 500 * kMs);
  EXPECT_EQ(timeline.place(3040 * kMs, 40 * kMs, 501 * kMs), 540 * kMs);
  EXPECT_EQ(timeline.place(3100 * kMs, 40 * kMs, 502 * kMs), 600 * kMs);
}

TEST(ClipTimeline, JoinsPassesByTheLastPicturesDuration) {
  ClipTimeline timeline;
  timeline.place(0, 40 * kMs, 0);
  timeline.place(40 * kMs, 40 * kMs, 1);
  timeline.beginPass();
  EXPECT_EQ(timeline.place(0, 40 * kMs, 2), 80 * kMs);
  EXPECT_EQ(timeline.place(40 * kMs, 40 * kMs, 3), 120 * kMs);
}

TEST(ClipTimeline, ManagesWithoutDurationsOrPositions) {
  ClipTimeline spaced;
  spaced.place(0, kNone, 0);
  spaced.place(50 * kMs, kNone, 0);
  spaced.beginPass();
  EXPECT_EQ(spaced.place(0, kNone, 0), 100 * kMs);

  ClipTimeline bare;
  EXPECT_EQ(bare.place(kNone, kNone, 7 * kMs), 7 * kMs);
  EXPECT_EQ(bare.place(kNone, kNone, 8 * kMs), 47 * kMs);
}

TEST(ClipTimeline, NeverRunsBackwards) {
  ClipTimeline timeline;
  timeline.place(0, 40 * kMs, 0);
  EXPECT_EQ(timeline.place(80 * kMs, 40 * kMs, 0), 80 * kMs);
  EXPECT_EQ(timeline.place(40 * kMs, 40 * kMs, 0), 80 * kMs);
  EXPECT_EQ(timeline.place(120 * kMs, 40 * kMs, 0), 120 * kMs);
}

TEST(ClipTimeline, GoesOnFromNowAfterAStall) {
  ClipTimeline timeline;
  timeline.place(0, 40 * kMs, 0);
  EXPECT_EQ(timeline.place(40 * kMs, 40 * kMs, 200 * kMs), 40 * kMs);  // a little late: catches up
  EXPECT_EQ(timeline.place(80 * kMs, 40 * kMs, 5000 * kMs), 5000 * kMs);
  EXPECT_EQ(timeline.place(120 * kMs, 40 * kMs, 5001 * kMs), 5040 * kMs);
}

}  // namespace
}  // namespace corvane::rtc
