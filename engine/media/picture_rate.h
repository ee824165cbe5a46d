// Leaves pictures out where more come than are wanted.
#pragma once

#include <gst/gst.h>

#include <cstdint>

namespace corvane::rtc {

/// One thread at a time. Times are in nanoseconds of one clock.
class PictureRate {
 public:
  /// `per_second`: pictures at most; 0 takes all.
  explicit PictureRate(int32_t per_second)
      : period_(per_second > 0 ? GST_SECOND / static_cast<GstClockTime>(per_second) : 0) {}

  /// Whether the picture that comes now is to be taken. Those that come at the wanted rate are, however unevenly.
  bool take(GstClockTime now) {
    if (period_ == 0) return true;
    // Half a period early is on time, and one that is late leaves the next one's time as it is.
    if (now + period_ / 2 < due_) return false;
    due_ = (now > due_ + period_ ? now : due_) + period_;
    return true;
  }

 private:
  GstClockTime period_;
  GstClockTime due_ = 0;
};

}  // namespace corvane::rtc
