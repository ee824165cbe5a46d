// When each picture of a clip is due, pass after pass without a gap.
#pragma once

#include <gst/gst.h>

namespace corvane::rtc {

/// Times in nanoseconds; those handed out are on the clock of `now` and never run backwards.
class ClipTimeline {
 public:
  /// The next picture is the clip's first again and follows on the last one.
  void beginPass() { at_start_ = true; }

  /// When a picture is due. `position` in the clip and `duration` may be GST_CLOCK_TIME_NONE.
  /// A clip that has fallen far behind (a stalled disk, a sleeping machine) goes on from `now`: it does not hurry.
  GstClockTime place(GstClockTime position, GstClockTime duration, GstClockTime now);

 private:
  bool has_placed_ = false;
  bool at_start_ = true;
  GstClockTime pass_due_ = 0;        // when the pass's first picture was due
  GstClockTime first_position_ = 0;  // of the pass
  GstClockTime last_due_ = 0;
  GstClockTime spacing_ = 0;  // from the last picture to the one after it, as far as known
};

}  // namespace corvane::rtc
