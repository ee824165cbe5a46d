#include "rooms/bitrate_control.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace corvane::rtc {
namespace {

constexpr int32_t kLowest = 100;
constexpr int32_t kHighest = 2000;

int32_t feed(BitrateControl& control, int count, const LinkFeedback& feedback) {
  int32_t kbit = 0;
  for (int index = 0; index < count; ++index) kbit = control.update(feedback, kLowest, kHighest);
  return kbit;
}

// A link that holds `width` kbit/s, and up to 300 ms of what is too much; half a second from feedback to feedback.
class NarrowLink {
 public:
  explicit NarrowLink(double width) : width_(width) {}

  LinkFeedback carry(int32_t kbit) {
    queue_ms_ = std::max(queue_ms_ + 500 * (kbit - width_) / width_, 0.0);
    const double lost_ms = std::max(queue_ms_ - 300, 0.0);
    queue_ms_ -= lost_ms;
    return {lost_ms * width_ / (500 * kbit), 20 + static_cast<int32_t>(queue_ms_)};
  }

 private:
  double width_;
  double queue_ms_ = 0;
};

TEST(BitrateControl, SettlesWithinWhatALinkCarriesAndComesBackWhenItWidens) {
  BitrateControl control;
  feed(control, 5, {0, 20});
  NarrowLink narrow(600);
  int32_t kbit = kHighest;
  for (int index = 0; index < 20; ++index) kbit = control.update(narrow.carry(kbit), kLowest, kHighest);
  int32_t least = kHighest;
  int32_t most = 0;
  for (int index = 0; index < 100; ++index) {
    kbit = control.update(narrow.carry(kbit), kLowest, kHighest);
    least = std::min(least, kbit);
    most = std::max(most, kbit);
  }
  EXPECT_GT(least, 300);
  EXPECT_LT(most, 800);
  EXPECT_EQ(feed(control, 60, {0, 20}), kHighest);
}

TEST(BitrateControl, TakesLostPacketsForANarrowLinkOnlyWhenTheyAreMany) {
  BitrateControl control;
  EXPECT_EQ(feed(control, 100, {0.05, 20}), kHighest);
  EXPECT_EQ(feed(control, 50, {0.3, 20}), kLowest);
  EXPECT_EQ(feed(control, 50, {0.08, 20}), kLowest) << "neither up nor down";
}

TEST(BitrateControl, GetsUsedToALongerWayAndKeepsToItsBounds) {
  BitrateControl control;
  feed(control, 10, {0, 40});
  EXPECT_LT(feed(control, 5, {0, 200}), kHighest);
  EXPECT_EQ(feed(control, 300, {0, 200}), kHighest);
  EXPECT_EQ(control.update({0, 0}, 500, 300), 300) << "the upper bound counts";
}

}  // namespace
}  // namespace corvane::rtc
