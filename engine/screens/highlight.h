// The border around what is shared, which tells its owner that it is.
#pragma once

#include <array>
#include <cstdint>

#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

/// Four thin windows that no window manager moves and no click reaches. They lie around the area, or at its inner edge
/// where it ends with the desktop. The server takes them away with the connection.
class Highlight {
 public:
  explicit Highlight(const XConnection& x) : x_(x) {}
  ~Highlight();
  Highlight(const Highlight&) = delete;
  Highlight& operator=(const Highlight&) = delete;

  /// `color` 0xRRGGBB, `width` in pixels. Costs nothing when nothing has changed.
  void show(const Rectangle& area, uint32_t color, int32_t width);
  void hide();

 private:
  static constexpr size_t kSides = 4;

  void create(uint32_t color);

  const XConnection& x_;
  std::array<xcb_window_t, kSides> sides_ = {};
  bool created_ = false;
  bool shown_ = false;
  uint32_t color_ = 0;
  int32_t width_ = 0;
  Rectangle area_ = {};
};

}  // namespace corvane::rtc
