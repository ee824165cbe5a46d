#include "rooms/retry_pause.h"

#include <gtest/gtest.h>

namespace corvane::rtc {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(RetryPause, GrowsWhileNothingHolds) {
  RetryPause pause(milliseconds(1000));
  RetryPause::Clock::time_point now;
  const auto fail = [&](RetryPause::Clock::duration attempt) {
    const milliseconds rest = pause.next(now += attempt);
    now += rest;
    return rest;
  };
  for (const int expected : {1, 2, 4, 8, 16, 16}) EXPECT_EQ(fail(seconds(10)), seconds(expected));
  EXPECT_EQ(fail(seconds(20)), seconds(1)) << "it had held for a while";
  EXPECT_EQ(fail(milliseconds(1)), seconds(2));
  pause.reset();
  EXPECT_EQ(fail(milliseconds(1)), seconds(1));
}

}  // namespace
}  // namespace corvane::rtc
