// One look after another at what is captured: whether there is a new picture, and the picture.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "capture/capture_fault.h"
#include "capture/picture_queue.h"
#include "screens/highlight.h"
#include "screens/mouse_cursor.h"
#include "screens/screen_settings.h"
#include "screens/screen_target.h"
#include "screens/x_images.h"

namespace corvane::rtc {

/// On the capture's thread.
class ScreenReader {
 public:
  ScreenReader(const XConnection& x, int32_t type, int64_t id);

  /// Leaves `picture` empty when nothing has changed. Returns why there will be none any more.
  std::optional<CaptureFault> read(const ScreenSettings& settings, CapturedPicture& picture);

 private:
  using Clock = std::chrono::steady_clock;

  void readEvents();
  void followCursor(const ScreenSettings& settings, const Rectangle& area);
  void take(const ScreenTarget::View& view, const Rectangle& part, const Rectangle& area, bool with_cursor,
            CapturedPicture& picture);
  CaptureFault goneFault() const;

  const XConnection& x_;
  const std::unique_ptr<ScreenTarget> target_;
  XImages images_;
  MouseCursor cursor_;
  Highlight highlight_;
  bool seen_ = false;  // the target has been there
  bool changed_ = true;
  bool cursor_inside_ = false;
  uint32_t damage_ = 0;  // the server's record of changes
  int failures_ = 0;     // to read, one after the other
  Clock::time_point taken_ = {};
  Rectangle part_ = {};  // of the source, in the last picture; its size is that of caps_
  GstPtr<GstCaps> caps_;
};

}  // namespace corvane::rtc
