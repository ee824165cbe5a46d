#include "rooms/bitrate_control.h"

#include <algorithm>
#include <utility>

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
// Of packets' own waiting, which is told more exactly.
constexpr int32_t kStandingMs = 30;
constexpr int32_t kClearMs = 10;
constexpr double kUsedOfArrived = 0.85;
constexpr double kNearlyNarrow = 0.8;
constexpr double kCarefulStepUp = 1.01;
constexpr double kShareOfLatest = 0.2;

}  // namespace

int32_t BitrateControl::update(const LinkFeedback& feedback, int32_t lowest, int32_t highest) {
  if (kbit_ <= 0) kbit_ = highest;
  if (feedback.queue_ms) {
    followPackets(feedback);
  } else {
    followReports(feedback);
  }
  // Not above: it would have to come down again before it changes anything.
  kbit_ = std::clamp(kbit_, static_cast<double>(std::min(lowest, highest)), static_cast<double>(highest));
  return static_cast<int32_t>(kbit_);
}

void BitrateControl::followPackets(const LinkFeedback& feedback) {
  const int32_t queue_ms = *feedback.queue_ms;
  const bool drains = queue_ms < std::exchange(last_queue_ms_, queue_ms);
  // Of few packets at a time, a few lost ones may be many.
  usual_loss_ += (feedback.loss - usual_loss_) * kShareOfLatest;
  if (queue_ms > kStandingMs && !drains) {
    const double arrived = feedback.arrived_kbit > 0 ? std::min<double>(feedback.arrived_kbit, kbit_) : kbit_;
    narrow_kbit_ = arrived;
    kbit_ = std::max(arrived * kUsedOfArrived, kbit_ * kLargestStepDown);
    calm_feedbacks_ = 0;
  } else if (usual_loss_ > kManyLost && queue_ms <= kStandingMs) {
    kbit_ *= std::clamp(1 - usual_loss_, kLargestStepDown, kStepDown);
    usual_loss_ = 0;
    calm_feedbacks_ = 0;
  } else if (queue_ms > kClearMs) {
    calm_feedbacks_ = 0;
  } else if (++calm_feedbacks_ > kCalmBeforeUp) {
    // Past where it was narrow, the link has become wider.
    if (kbit_ > narrow_kbit_) narrow_kbit_ = 0;
    kbit_ *= kbit_ > narrow_kbit_ * kNearlyNarrow && narrow_kbit_ > 0 ? kCarefulStepUp : kStepUp;
  }
}

void BitrateControl::followReports(const LinkFeedback& feedback) {
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
}

}  // namespace corvane::rtc
