// The monitor or window that is captured: where its pixels are, now.
#pragma once

#include <cstdint>
#include <memory>

#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

/// On the capture's thread.
class ScreenTarget {
 public:
  enum class State {
    kVisible,
    kHidden,  ///< minimised, or on its way: there is nothing to read for now
    kGone,
  };

  struct View {
    State state = State::kGone;
    xcb_drawable_t drawable = XCB_NONE;
    Rectangle source = {};   ///< the target in the drawable
    Rectangle desktop = {};  ///< the same on the desktop
  };

  static std::unique_ptr<ScreenTarget> make(const XConnection& x, int32_t type, int64_t id);
  virtual ~ScreenTarget() = default;

  /// Each event of the connection.
  virtual void onEvent(const xcb_generic_event_t& event) = 0;
  /// Whether it is there and where; asked for each picture. `with_place` false leaves View::desktop alone where that
  /// saves asking the server.
  virtual View look(bool with_place) = 0;
  /// The pixels could not be read: what was known is to be asked again.
  virtual void onReadFailed() = 0;
  /// What changes when the pixels do.
  virtual xcb_drawable_t watched() const = 0;
};

}  // namespace corvane::rtc
