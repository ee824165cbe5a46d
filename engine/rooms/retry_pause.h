// How long something that has failed rests before it is tried again.
#pragma once

#include <algorithm>
#include <chrono>

namespace corvane::rtc {

/// Twice as long from one failure to the next, until it has held for a while: what cannot work costs little, and what
/// broke once is back soon.
class RetryPause {
 public:
  using Clock = std::chrono::steady_clock;

  explicit constexpr RetryPause(std::chrono::milliseconds first) : first_(first) {}

  /// With each failure.
  std::chrono::milliseconds next(Clock::time_point now = Clock::now()) {
    constexpr std::chrono::seconds kLongest(16);
    // An attempt may take ten seconds to fail.
    constexpr std::chrono::seconds kHolding(15);
    const bool goes_on = pause_.count() > 0 && now - failed_ < pause_ + kHolding;
    pause_ = goes_on ? std::min<std::chrono::milliseconds>(pause_ * 2, kLongest) : first_;
    failed_ = now;
    return pause_;
  }

  /// Something has changed since: the next pause is the first again.
  void reset() { pause_ = {}; }

 private:
  std::chrono::milliseconds first_;
  std::chrono::milliseconds pause_{0};
  Clock::time_point failed_;
};

}  // namespace corvane::rtc
