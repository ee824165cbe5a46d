#include "screens/screen_sources.h"

#include <xcb/randr.h>

#include <algorithm>
#include <span>

#include "screens/window_facts.h"

namespace corvane::rtc {

namespace {

constexpr uint32_t kMaxClientListBytes = 64 * 1024;
// Frames of window managers that publish no list hold their client not far below.
constexpr int kMaxFrameDepth = 3;

struct Monitor {
  int64_t id;
  bool primary;
  Rectangle rectangle;
};

std::vector<Monitor> monitors(const XConnection& x) {
  std::vector<Monitor> found;
  if (x.has(XExtension::kRandr)) {
    const auto reply = x.answer<&xcb_randr_get_monitors_reply>(xcb_randr_get_monitors(x.get(), x.root(), 1));
    if (reply != nullptr) {
      for (auto each = xcb_randr_get_monitors_monitors_iterator(reply.get()); each.rem > 0;
           xcb_randr_monitor_info_next(&each)) {
        found.push_back({each.data->name,
                         each.data->primary != 0,
                         {each.data->x, each.data->y, each.data->width, each.data->height}});
      }
    }
  }
  // All of the desktop, under the root window's id, where the server does not say how it is divided.
  if (found.empty() && x.alive()) {
    found.push_back({x.root(), true, {0, 0, x.screen().width_in_pixels, x.screen().height_in_pixels}});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const Monitor& a, const Monitor& b) { return a.primary && !b.primary; });
  // Somebody has to be it, also where nobody was chosen.
  if (!found.empty()) found.front().primary = true;
  return found;
}

std::string monitorName(const XConnection& x, const Monitor& monitor) {
  if (monitor.id == x.root()) return "Screen";
  const auto reply =
      x.answer<&xcb_get_atom_name_reply>(xcb_get_atom_name(x.get(), static_cast<xcb_atom_t>(monitor.id)));
  if (reply == nullptr) return {};
  return toUtf8({xcb_get_atom_name_name(reply.get()), static_cast<size_t>(xcb_get_atom_name_name_length(reply.get()))});
}

std::vector<xcb_window_t> children(const XConnection& x, xcb_window_t window) {
  const auto tree = x.answer<&xcb_query_tree_reply>(xcb_query_tree(x.get(), window));
  if (tree == nullptr) return {};
  const xcb_window_t* first = xcb_query_tree_children(tree.get());
  return {first, first + xcb_query_tree_children_length(tree.get())};
}

bool isVisible(const XConnection& x, xcb_window_t window) {
  const auto facts = x.answer<&xcb_get_window_attributes_reply>(xcb_get_window_attributes(x.get(), window));
  return facts != nullptr && facts->map_state == XCB_MAP_STATE_VIEWABLE && facts->override_redirect == 0 &&
         facts->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

// The application's window in a window manager's frame, or XCB_NONE.
xcb_window_t clientIn(const XConnection& x, xcb_window_t frame, int depth) {
  if (x.property(frame, x.atom(XAtom::kWindowState), 8) != nullptr) return frame;
  if (depth == 0) return XCB_NONE;
  for (const xcb_window_t child : children(x, frame)) {
    const xcb_window_t client = clientIn(x, child, depth - 1);
    if (client != XCB_NONE) return client;
  }
  return XCB_NONE;
}

std::vector<xcb_window_t> topLevelWindows(const XConnection& x) {
  const auto listed = x.property(x.root(), x.atom(XAtom::kClientList), kMaxClientListBytes);
  if (listed != nullptr && listed->format == 32) {
    const auto* first = static_cast<const xcb_window_t*>(xcb_get_property_value(listed.get()));
    return {first, first + xcb_get_property_value_length(listed.get()) / 4};
  }
  // No window manager, or one that keeps its windows to itself.
  std::vector<xcb_window_t> windows;
  for (const xcb_window_t child : children(x, x.root())) {
    if (!isVisible(x, child)) continue;
    const xcb_window_t client = clientIn(x, child, kMaxFrameDepth);
    windows.push_back(client != XCB_NONE ? client : child);
  }
  return windows;
}

}  // namespace

std::vector<ListedScreen> listScreenSources(const XConnection& x) {
  std::vector<ListedScreen> sources;
  for (const Monitor& monitor : monitors(x)) {
    sources.push_back({kScreenCaptureSourceTypeScreen, monitor.id, monitorName(x, monitor), "", 0, monitor.primary,
                       monitor.rectangle});
  }
  for (WindowFacts& window : readWindowFacts(x, topLevelWindows(x))) {
    sources.push_back({kScreenCaptureSourceTypeWindow, window.id, std::move(window.title),
                       std::move(window.application), window.pid, false, window.rectangle});
  }
  return sources;
}

std::optional<Rectangle> findMonitor(const XConnection& x, int64_t id) {
  for (const Monitor& monitor : monitors(x)) {
    if (monitor.id == id) return monitor.rectangle;
  }
  return std::nullopt;
}

}  // namespace corvane::rtc
