// The mouse cursor, which a server keeps out of the pictures it hands out.
#pragma once

#include <cstdint>
#include <vector>

#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

class MouseCursor {
 public:
  explicit MouseCursor(const XConnection& x);

  /// Each event of the connection; true when the cursor looks different now.
  bool onEvent(const xcb_generic_event_t& event);
  /// Asks where the cursor is; true when it has moved.
  bool update();

  /// Draws it over a picture of `area` of the desktop: four bytes a pixel, rows without padding.
  void drawOver(uint8_t* pixels, const Rectangle& area);
  /// Whether any of it lies in the area.
  bool touches(const Rectangle& area);

 private:
  void load();

  const XConnection& x_;
  const bool available_;
  bool loaded_ = false;
  int32_t x_position_ = 0;  // of the hot spot, on the desktop
  int32_t y_position_ = 0;
  int32_t hot_x_ = 0;
  int32_t hot_y_ = 0;
  int32_t width_ = 0;
  int32_t height_ = 0;
  std::vector<uint32_t> pixels_;  // 0xAARRGGBB with the colours multiplied by A
};

}  // namespace corvane::rtc
