// What can be shared of a screen and how it is captured.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

enum ScreenCaptureSourceType : int32_t {
  kScreenCaptureSourceTypeUnknown = 0,
  kScreenCaptureSourceTypeWindow = 1,
  kScreenCaptureSourceTypeScreen = 2,
};

/// One monitor or window.
struct ScreenCaptureSourceInfo {
  int32_t type;       ///< ScreenCaptureSourceType
  int64_t source_id;  ///< the system's id of the window or monitor
  const char* source_name;
  const char* application;  ///< of a window; "" for monitors
  int32_t pid;              ///< process that owns the window; 0 for monitors
  bool primary_monitor;
  Rectangle region_rect;  ///< on the desktop
};

/// A picture of what could be shared at one moment. Owned by the caller until release(); any one thread at a time.
class IScreenCaptureSourceList {
 public:
  virtual int32_t getCount() = 0;
  /// Fills `info`; its texts live as long as the list. kInvalidParameter outside 0 to getCount() - 1.
  virtual int32_t getSourceInfo(int32_t index, ScreenCaptureSourceInfo& info) = 0;
  virtual void release() = 0;

 protected:
  ~IScreenCaptureSourceList() = default;
};

enum MouseCursorCaptureState : int32_t {
  kMouseCursorCaptureStateOn = 0,
  kMouseCursorCaptureStateOff = 1,
};

/// Windows left out of a captured monitor.
struct ScreenFilterConfig {
  const int64_t* excluded_window_list;  ///< source ids
  int32_t excluded_window_count;
};

/// Border around the shared area.
struct ScreenHighlightConfig {
  bool enable_highlight;
  int32_t border_color;  ///< 0xAARRGGBB
  int32_t border_width;  ///< pixels
};

/// How a source is captured.
struct ScreenCaptureParameters {
  Rectangle region_rect;         ///< within the source; width or height 0 captures all of it
  int32_t capture_mouse_cursor;  ///< MouseCursorCaptureState
  ScreenFilterConfig filter_config;
  ScreenHighlightConfig highlight_config;
};

}  // namespace corvane::rtc
