// What applications ask of the screen before they share it: sources, thumbnails, icons.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "capture/capture_fault.h"
#include "corvane_rtc/screen_capture.h"
#include "corvane_rtc/video_frame.h"
#include "screens/x_connection.h"
#include "screens/x_images.h"

namespace corvane::rtc {

/// Any thread; answers come at once, on the caller's. Each call names the X server, as environmentDisplay() does; the
/// connection to the last one is kept.
class ScreenQuery {
 public:
  /// Whether the server's screen can be read; `fault` tells why not.
  bool check(const std::string& display, CaptureFault& fault);

  /// Null, with the reason, when there is nothing to be asked.
  IScreenCaptureSourceList* list(const std::string& display, CaptureFault& fault);
  IVideoFrame* thumbnail(const std::string& display, int32_t type, int64_t id, int32_t max_width, int32_t max_height,
                         CaptureFault& fault);
  IVideoFrame* icon(const std::string& display, int64_t id, int32_t max_width, int32_t max_height, CaptureFault& fault);

 private:
  bool connect(const std::string& display, CaptureFault& fault);

  std::mutex mutex_;
  std::string display_;
  std::unique_ptr<XConnection> x_;
  std::unique_ptr<XImages> images_;  // of the connection, and gone before it
};

}  // namespace corvane::rtc
