#include "rooms/bitrate_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "rooms/packet_feedback.h"

namespace corvane::rtc {
namespace {

constexpr int32_t kLowest = 100;
constexpr int32_t kHighest = 2000;

int32_t feed(BitrateControl& control, int count, const LinkFeedback& feedback) {
  int32_t kbit = 0;
  for (int index = 0; index < count; ++index) kbit = control.update(feedback, kLowest, kHighest);
  return kbit;
}

LinkFeedback reported(double loss, int32_t rtt_ms) {
  LinkFeedback feedback;
  feedback.loss = loss;
  feedback.rtt_ms = rtt_ms;
  return feedback;
}

// A link that holds `width` kbit/s, and up to 300 ms of what is too much; half a second from feedback to feedback.
class NarrowLink {
 public:
  explicit NarrowLink(double width) : width_(width) {}

  LinkFeedback carry(int32_t kbit) {
    queue_ms_ = std::max(queue_ms_ + 500 * (kbit - width_) / width_, 0.0);
    const double lost_ms = std::max(queue_ms_ - 300, 0.0);
    queue_ms_ -= lost_ms;
    LinkFeedback feedback;
    feedback.loss = lost_ms * width_ / (500 * kbit);
    feedback.rtt_ms = 20 + static_cast<int32_t>(queue_ms_);
    return feedback;
  }

  // The same, as told of each packet.
  LinkFeedback carryTold(int32_t kbit) {
    LinkFeedback feedback = carry(kbit);
    feedback.queue_ms = std::exchange(feedback.rtt_ms, 0) - 20;
    feedback.arrived_kbit = static_cast<int32_t>(std::min<double>(kbit, width_));
    return feedback;
  }

 private:
  double width_;
  double queue_ms_ = 0;
};

struct Range {
  int32_t least = kHighest;
  int32_t most = 0;
};

/// Of the bitrates on that link, once the first twenty feedbacks have been followed.
Range settled(BitrateControl& control, NarrowLink& link, LinkFeedback (NarrowLink::*carry)(int32_t), int feedbacks) {
  int32_t kbit = kHighest;
  Range range;
  for (int index = -20; index < feedbacks; ++index) {
    kbit = control.update((link.*carry)(kbit), kLowest, kHighest);
    if (index < 0) continue;
    range.least = std::min(range.least, kbit);
    range.most = std::max(range.most, kbit);
  }
  return range;
}

TEST(BitrateControl, SettlesWithinWhatALinkCarriesAndComesBackWhenItWidens) {
  BitrateControl control;
  feed(control, 5, reported(0, 20));
  NarrowLink narrow(600);
  const Range bitrates = settled(control, narrow, &NarrowLink::carry, 100);
  EXPECT_GT(bitrates.least, 300);
  EXPECT_LT(bitrates.most, 800);
  EXPECT_EQ(feed(control, 60, reported(0, 20)), kHighest);
}

TEST(BitrateControl, StaysBelowWhatALinkCarriesWherePacketsAreTold) {
  BitrateControl control;
  NarrowLink narrow(600);
  const Range bitrates = settled(control, narrow, &NarrowLink::carryTold, 200);
  EXPECT_GT(bitrates.least, 450);
  EXPECT_LT(bitrates.most, 660);
  NarrowLink wide(5000);
  int32_t kbit = bitrates.least;
  for (int index = 0; index < 100; ++index) kbit = control.update(wide.carryTold(kbit), kLowest, kHighest);
  EXPECT_EQ(kbit, kHighest);
}

TEST(BitrateControl, TakesLostPacketsForANarrowLinkOnlyWhenTheyAreMany) {
  BitrateControl control;
  EXPECT_EQ(feed(control, 100, reported(0.05, 20)), kHighest);
  EXPECT_EQ(feed(control, 50, reported(0.3, 20)), kLowest);
  EXPECT_EQ(feed(control, 50, reported(0.08, 20)), kLowest) << "neither up nor down";
}

TEST(BitrateControl, GetsUsedToALongerWayAndKeepsToItsBounds) {
  BitrateControl control;
  feed(control, 10, reported(0, 40));
  EXPECT_LT(feed(control, 5, reported(0, 200)), kHighest);
  EXPECT_EQ(feed(control, 300, reported(0, 200)), kHighest);
  EXPECT_EQ(control.update(reported(0, 0), 500, 300), 300) << "the upper bound counts";
}

TEST(PacketFeedback, TellsHowLongTheLuckiestPacketWaited) {
  constexpr uint64_t kMs = 1'000'000;
  PacketFeedback feedback;
  EXPECT_FALSE(feedback.take().has_value());
  // The clocks are far apart.
  feedback.add(5 * kMs, 105 * kMs, 1000);
  ASSERT_TRUE(feedback.take().has_value());
  for (uint64_t at = 10; at < 20; ++at) feedback.add(at * kMs, (at + 150 + at % 2) * kMs, 1000);
  feedback.add(20 * kMs, std::nullopt, 1000);
  const auto told = feedback.take();
  ASSERT_TRUE(told.has_value());
  EXPECT_EQ(told->queue_ms, 49) << "a quarter of a millisecond is forgotten each time";
  EXPECT_NEAR(told->loss, 1.0 / 11, 1e-9);
  EXPECT_EQ(told->arrived_kbit, 10 * 8000 / (170 - 105));
  feedback.add(30 * kMs, std::nullopt, 1000);
  EXPECT_FALSE(feedback.take().has_value()) << "nothing arrived";
}

}  // namespace
}  // namespace corvane::rtc
