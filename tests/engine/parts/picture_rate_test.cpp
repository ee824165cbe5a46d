#include "media/picture_rate.h"

#include <gtest/gtest.h>

#include <vector>

namespace corvane::rtc {
namespace {

int taken(PictureRate& rate, const std::vector<GstClockTime>& milliseconds) {
  int count = 0;
  for (const GstClockTime time : milliseconds) count += rate.take(time * GST_MSECOND) ? 1 : 0;
  return count;
}

std::vector<GstClockTime> evenly(GstClockTime from, GstClockTime per_second, GstClockTime count) {
  std::vector<GstClockTime> times;
  for (GstClockTime index = 0; index < count; ++index) times.push_back(from + index * 1000 / per_second);
  return times;
}

TEST(PictureRate, TakesAllThatComeAtTheWantedRateHoweverUnevenly) {
  PictureRate rate(30);
  std::vector<GstClockTime> times;
  for (const GstClockTime time : evenly(5000, 30, 90)) times.push_back(time + (time % 5) * 3);
  EXPECT_EQ(taken(rate, times), 90);
  PictureRate all(0);
  EXPECT_EQ(taken(all, evenly(0, 500, 100)), 100);
}

TEST(PictureRate, LeavesOutWhatIsTooMuchAlsoAfterAPause) {
  PictureRate rate(15);
  EXPECT_NEAR(taken(rate, evenly(1000, 60, 120)), 30, 1);
  EXPECT_NEAR(taken(rate, evenly(60'000, 20, 40)), 30, 2);
  EXPECT_NEAR(taken(rate, evenly(90'000, 15, 30)), 30, 1);
}

}  // namespace
}  // namespace corvane::rtc
