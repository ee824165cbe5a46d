#include "capture/clip_timeline.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

constexpr GstClockTime kUsualSpacing = 40 * GST_MSECOND;
constexpr GstClockTime kFarBehind = 250 * GST_MSECOND;

}  // namespace

GstClockTime ClipTimeline::place(GstClockTime position, GstClockTime duration, GstClockTime now) {
  if (spacing_ == 0) spacing_ = kUsualSpacing;
  const GstClockTime following = has_placed_ ? last_due_ + spacing_ : now;
  if (at_start_) {
    at_start_ = false;
    pass_due_ = following;
    first_position_ = GST_CLOCK_TIME_IS_VALID(position) ? position : 0;
  }
  GstClockTime due = following;
  if (GST_CLOCK_TIME_IS_VALID(position))
    due = pass_due_ + (position > first_position_ ? position - first_position_ : 0);
  if (has_placed_) due = std::max(due, last_due_);
  if (due + kFarBehind < now) {
    pass_due_ += now - due;
    due = now;
  }
  if (GST_CLOCK_TIME_IS_VALID(duration) && duration > 0) {
    spacing_ = duration;
  } else if (has_placed_ && due > last_due_) {
    spacing_ = due - last_due_;
  }
  has_placed_ = true;
  last_due_ = due;
  return due;
}

}  // namespace corvane::rtc
