// How a screen is captured.
#pragma once

#include <cstdint>
#include <string>

#include "corvane_rtc/screen_capture.h"

namespace corvane::rtc {

/// A monitor or window by its id, on the X server of that name.
struct ScreenSourceId {
  std::string display;
  int32_t type = kScreenCaptureSourceTypeUnknown;
  int64_t id = 0;
};

/// What may be changed while a source is captured.
struct ScreenSettings {
  Rectangle region = {};  ///< within the source; width or height 0 for all of it
  bool with_cursor = true;
  bool highlighted = false;
  uint32_t border_color = 0;  ///< 0xRRGGBB
  int32_t border_width = 0;   ///< pixels
};

inline bool sameRectangle(const Rectangle& a, const Rectangle& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

}  // namespace corvane::rtc
