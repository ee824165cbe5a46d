#include "effects/digital_zoom.h"

#include <algorithm>
#include <chrono>

#include "corvane_rtc/video_config.h"

namespace corvane::rtc {

namespace {

constexpr double kMaxZoomStep = 7;
constexpr double kMaxMoveStep = 0.5;
constexpr double kMaxFactor = 1 + kMaxZoomStep;
constexpr std::chrono::milliseconds kStepInterval(100);

}  // namespace

void DigitalZoom::step(int32_t direction) {
  switch (direction) {
    case kZoomDirectionMoveLeft:
      area_.centre_x -= move_step_;
      break;
    case kZoomDirectionMoveRight:
      area_.centre_x += move_step_;
      break;
    case kZoomDirectionMoveUp:
      area_.centre_y -= move_step_;
      break;
    case kZoomDirectionMoveDown:
      area_.centre_y += move_step_;
      break;
    case kZoomDirectionZoomOut:
      area_.factor -= zoom_step_;
      break;
    case kZoomDirectionZoomIn:
      area_.factor += zoom_step_;
      break;
    default:
      area_ = {};
      break;
  }
  area_.factor = std::clamp(area_.factor, 1.0, kMaxFactor);
  const double half = 0.5 / area_.factor;  // of what is shown
  area_.centre_x = std::clamp(area_.centre_x, half, 1 - half);
  area_.centre_y = std::clamp(area_.centre_y, half, 1 - half);
  local_.setZoom(area_);
}

void DigitalZoom::start(int32_t direction) {
  const ZoomArea before = area_;
  step(direction);
  next_.reset();
  // At the end of the way there is nothing more to do.
  if (area_ != before) next_ = thread_.after(kStepInterval, [this, direction] { start(direction); });
}

bool isZoomConfig(int32_t type, double size) {
  if (type == kZoomConfigTypeFocusOffset) return size >= 0 && size <= kMaxZoomStep;  // NaN is neither
  return type == kZoomConfigTypeMoveOffset && size >= 0 && size <= kMaxMoveStep;
}

bool isZoomDirection(int32_t direction) {
  return direction >= kZoomDirectionCameraReset && direction <= kZoomDirectionZoomIn;
}

}  // namespace corvane::rtc
