// How much a stream may send, by what the other side reports of it.
#pragma once

#include <cstdint>
#include <optional>

namespace corvane::rtc {

/// What was reported since the report before.
struct LinkFeedback {
  double loss = 0;                  ///< share of packets that did not arrive, 0 to 1
  int32_t rtt_ms = 0;               ///< 0 when it is not known
  std::optional<int32_t> queue_ms;  ///< how long even the luckiest packet waited, when that is known
  int32_t arrived_kbit = 0;         ///< kbit/s; 0 when it is not known
};

/// Goes down when packets pile up on their way, which round trips tell before any are lost, or when many are lost; up
/// again, step by step, when neither is so. A few lost packets say nothing of a link's width. Where the other side
/// tells when each packet arrived, it goes down to what did arrive, and up with care where it had to go down before.
class BitrateControl {
 public:
  /// Takes the next feedback; answers the kbit/s to send at, between the bounds. They may change from call to call.
  int32_t update(const LinkFeedback& feedback, int32_t lowest, int32_t highest);

 private:
  void followReports(const LinkFeedback& feedback);
  void followPackets(const LinkFeedback& feedback);

  double kbit_ = 0;          // 0 before the first feedback
  double usual_rtt_ms_ = 0;  // of the link when nothing waits on it
  double last_rtt_ms_ = 0;
  int32_t last_queue_ms_ = 0;
  double usual_loss_ = 0;
  double narrow_kbit_ = 0;      // what the link carried when it carried no more, 0 when it always did
  int32_t calm_feedbacks_ = 0;  // since it last went down
};

}  // namespace corvane::rtc
