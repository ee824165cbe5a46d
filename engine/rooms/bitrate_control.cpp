#include "rooms/bitrate_control.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

constexpr double kQueueMs = 60;
constexpr double kManyLost = 0.12;
constexpr double kFewLost = 0.04;
constexpr double kStepDown = 0.8;
constexpr double kLargestStepDown = 0.5;
constexpr double kStepUp = 1.06;
// What waits on the link has to leave it before the next look at it tells anything.
constexpr int32_t kCalmBeforeUp = 3;
// A link may have become longer for good.
constexpr double kForgetting = 1.01;

}  // namespace

int32_t BitrateControl::update(const LinkFeedback& feedback, int32_t lowest, int32_t highest) {
  if (kbit_ <= 0) kbit_ = highest;
  const auto rtt = static_cast<double>(feedback.rtt_ms);
  if (rtt > 0) usual_rtt_ms_ = usual_rtt_ms_ > 0 ? std::min(rtt, usual_rtt_ms_ * kForgetting) : rtt;
  const bool waits = rtt > usual_rtt_ms_ + kQueueMs;
  const bool drains = rtt < last_rtt_ms_;
  last_rtt_ms_ = rtt;
  if (waits && drains) {
    calm_feedbacks_ = 0;
  } else if (feedback.loss > kManyLost || waits) {
    kbit_ *= std::clamp(1 - feedback.loss, kLargestStepDown, kStepDown);
    calm_feedbacks_ = 0;
  } else if (feedback.loss <= kFewLost && ++calm_feedbacks_ > kCalmBeforeUp) {
    kbit_ *= kStepUp;
  }
  // Not above: it would have to come down again before it changes anything.
  kbit_ = std::clamp(kbit_, static_cast<double>(std::min(lowest, highest)), static_cast<double>(highest));
  return static_cast<int32_t>(kbit_);
}

}  // namespace corvane::rtc
