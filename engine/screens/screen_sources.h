// What of a screen can be shared: its monitors and its top-level windows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvane_rtc/screen_capture.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

struct ListedScreen {
  int32_t type = kScreenCaptureSourceTypeUnknown;
  /// A window's id; the atom of a monitor's name, which stays the same while the server runs.
  int64_t id = 0;
  std::string name;
  std::string application;
  int32_t pid = 0;
  bool primary = false;
  Rectangle rectangle = {};  ///< on the desktop
};

/// Monitors first, the primary one before the others; then windows, the oldest first.
std::vector<ListedScreen> listScreenSources(const XConnection& x);

/// Where a monitor is now; empty when there is none of that id.
std::optional<Rectangle> findMonitor(const XConnection& x, int64_t id);

}  // namespace corvane::rtc
