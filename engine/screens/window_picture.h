// A window's contents, also where other windows hide them.
#pragma once

#include <optional>

#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

/// Has the server keep the window's picture apart from the screen's for as long as this lives, where it can.
class WindowPicture {
 public:
  WindowPicture(const XConnection& x, xcb_window_t window);
  ~WindowPicture();
  WindowPicture(const WindowPicture&) = delete;
  WindowPicture& operator=(const WindowPicture&) = delete;

  /// What to read pixels of, or XCB_NONE: hidden, minimised or gone.
  xcb_drawable_t drawable();
  /// The picture, within the drawable. Follows a call of drawable().
  const Rectangle& area() const { return area_; }
  /// The window has another size, or was shown again: there is another drawable from now on.
  void forget();

 private:
  const XConnection& x_;
  const xcb_window_t window_;
  const bool redirected_;
  xcb_pixmap_t pixmap_ = XCB_NONE;
  Rectangle area_ = {};
};

}  // namespace corvane::rtc
