// An X server of the test's own, and windows on it.
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <string>
#include <vector>

#include "corvane_rtc/common.h"

namespace corvane::test {

/// Runs Xvfb, and names it in DISPLAY, for as long as this lives.
class TestDisplay {
 public:
  static constexpr int32_t kWidth = 800;
  static constexpr int32_t kHeight = 600;

  TestDisplay();
  ~TestDisplay();
  TestDisplay(const TestDisplay&) = delete;
  TestDisplay& operator=(const TestDisplay&) = delete;

  bool runs() const { return !name_.empty(); }
  /// Ends the server as a crash would.
  void kill();

 private:
  pid_t process_ = -1;
  std::string name_;
};

/// A client of the server that DISPLAY names. It goes with its windows.
class TestClient {
 public:
  TestClient() : connection_(xcb_connect(nullptr, nullptr)) {}
  ~TestClient() { xcb_disconnect(connection_); }
  TestClient(const TestClient&) = delete;
  TestClient& operator=(const TestClient&) = delete;

  /// A window of one colour, 0xRRGGBB, shown above all others.
  xcb_window_t open(const rtc::Rectangle& place, uint32_t color, const std::string& title = "",
                    const std::string& application = "");
  void close(xcb_window_t window);
  void resize(xcb_window_t window, int32_t width, int32_t height);
  void show(xcb_window_t window, bool shown);
  /// A square icon of one colour, 0xAARRGGBB, after those that the window has.
  void addIcon(xcb_window_t window, uint32_t side, uint32_t color);
  /// Publishes a window manager's list.
  void list(const std::vector<xcb_window_t>& windows);
  void makeDock(xcb_window_t window);
  /// A title of the older kind, in Latin-1, instead of the newer one.
  void retitle(xcb_window_t window, const std::string& latin1);
  /// Makes a part of the desktop count as a monitor.
  void addMonitor(const std::string& name, const rtc::Rectangle& place, bool primary);
  /// Puts the pointer there and makes it a full square of one colour, 0xRRGGBB.
  void point(int32_t x, int32_t y, uint32_t color);
  /// What the screen shows there: 0xRRGGBB.
  uint32_t pixel(int32_t x, int32_t y);
  xcb_window_t root() const;

 private:
  void sync();
  xcb_atom_t atom(const std::string& name);

  xcb_connection_t* const connection_;
};

}  // namespace corvane::test
