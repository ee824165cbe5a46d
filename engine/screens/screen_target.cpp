#include "screens/screen_target.h"

#include <xcb/randr.h>

#include <chrono>
#include <optional>

#include "screens/screen_sources.h"
#include "screens/window_picture.h"

namespace corvane::rtc {

namespace {

using Clock = std::chrono::steady_clock;

// A window's hidden parts are drawn anew once its picture is kept apart; until then they show what hides them.
constexpr std::chrono::milliseconds kRedrawTime(100);

class MonitorTarget final : public ScreenTarget {
 public:
  MonitorTarget(const XConnection& x, int64_t id) : x_(x), id_(id) {
    if (x_.has(XExtension::kRandr)) {
      xcb_randr_select_input(x_.get(), x_.root(),
                             XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
    }
  }

  void onEvent(const xcb_generic_event_t& event) override {
    if (!x_.has(XExtension::kRandr)) return;
    const uint8_t first = x_.firstEvent(xcb_randr_id);
    if (event.response_type == first + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
        event.response_type == first + XCB_RANDR_NOTIFY) {
      place_.reset();
    }
  }

  View look(bool /*with_place*/) override {
    if (!place_) place_ = findMonitor(x_, id_);
    if (!place_) return {};
    return {State::kVisible, x_.root(), *place_, *place_};
  }

  void onReadFailed() override { place_.reset(); }
  xcb_drawable_t watched() const override { return x_.root(); }

 private:
  const XConnection& x_;
  const int64_t id_;
  std::optional<Rectangle> place_;
};

class WindowTarget final : public ScreenTarget {
 public:
  WindowTarget(const XConnection& x, xcb_window_t window) : x_(x), window_(window), picture_(x, window) {
    const uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(x_.get(), window_, XCB_CW_EVENT_MASK, &events);
    exists_ = x_.answer<&xcb_get_geometry_reply>(xcb_get_geometry(x_.get(), window_)) != nullptr;
  }

  void onEvent(const xcb_generic_event_t& event) override {
    switch (event.response_type & ~kSentByClient) {
      case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == window_) exists_ = false;
        break;
      case XCB_UNMAP_NOTIFY:
      case XCB_MAP_NOTIFY:
        picture_.forget();
        shown_ = Clock::now();
        break;
      case XCB_CONFIGURE_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (change.width != picture_.area().width || change.height != picture_.area().height) picture_.forget();
        break;
      }
      default:
        break;
    }
  }

  View look(bool with_place) override {
    if (!exists_) return {};
    View view = {State::kHidden, XCB_NONE, {}, {}};
    if (Clock::now() - shown_ < kRedrawTime) return view;
    view.drawable = picture_.drawable();
    if (view.drawable == XCB_NONE) return view;
    view.state = State::kVisible;
    view.source = picture_.area();
    view.desktop = {0, 0, view.source.width, view.source.height};
    if (!with_place) return view;
    const auto place =
        x_.answer<&xcb_translate_coordinates_reply>(xcb_translate_coordinates(x_.get(), window_, x_.root(), 0, 0));
    if (place != nullptr) {
      view.desktop.x = place->dst_x;
      view.desktop.y = place->dst_y;
    }
    return view;
  }

  void onReadFailed() override {
    picture_.forget();
    exists_ = x_.answer<&xcb_get_geometry_reply>(xcb_get_geometry(x_.get(), window_)) != nullptr;
  }

  xcb_drawable_t watched() const override { return window_; }

 private:
  static constexpr uint8_t kSentByClient = 0x80;

  const XConnection& x_;
  const xcb_window_t window_;
  WindowPicture picture_;
  Clock::time_point shown_ = Clock::now();
  bool exists_ = false;
};

}  // namespace

std::unique_ptr<ScreenTarget> ScreenTarget::make(const XConnection& x, int32_t type, int64_t id) {
  if (type == kScreenCaptureSourceTypeScreen) return std::make_unique<MonitorTarget>(x, id);
  return std::make_unique<WindowTarget>(x, static_cast<xcb_window_t>(id));
}

}  // namespace corvane::rtc
