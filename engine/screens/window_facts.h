// What windows tell of themselves.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

struct WindowFacts {
  xcb_window_t id = XCB_NONE;
  std::string title;
  std::string application;   ///< as the window names its class, else as its process is called
  int32_t pid = 0;           ///< 0 when nobody knows
  Rectangle rectangle = {};  ///< on the desktop, without a window manager's frame
};

/// Asks for all windows at once. Left out are those that have gone, and parts of the desktop itself.
std::vector<WindowFacts> readWindowFacts(const XConnection& x, const std::vector<xcb_window_t>& windows);

/// One of a window's icons: pixels 0xAARRGGBB, row by row.
struct WindowIcon {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint32_t> pixels;
};

/// The smallest icon that is not smaller than asked, else the largest. Without pixels when the window has none.
WindowIcon readWindowIcon(const XConnection& x, xcb_window_t window, int32_t width, int32_t height);

/// Text of a server in UTF-8: what is not UTF-8 already counts as Latin-1.
std::string toUtf8(std::string_view text);

}  // namespace corvane::rtc
