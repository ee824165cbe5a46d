#include "screens/window_facts.h"

#include <glib.h>
#include <xcb/res.h>

#include <algorithm>
#include <fstream>
#include <span>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr uint32_t kMaxTextBytes = 4096;
constexpr uint32_t kMaxListBytes = 256;
// Several icons of up to 512 x 512 pixels.
constexpr uint32_t kMaxIconBytes = 8 * 1024 * 1024;
constexpr uint32_t kMaxIconSide = 1024;

// What is asked of one window; all requests are under way before the first answer is waited for.
struct Questions {
  xcb_get_geometry_cookie_t geometry;
  xcb_translate_coordinates_cookie_t position;
  xcb_get_property_cookie_t name;
  xcb_get_property_cookie_t old_name;
  xcb_get_property_cookie_t window_class;
  xcb_get_property_cookie_t type;
  xcb_get_property_cookie_t pid;
  xcb_res_query_client_ids_cookie_t process;
};

xcb_get_property_cookie_t askProperty(const XConnection& x, xcb_window_t window, xcb_atom_t name, uint32_t max_bytes) {
  return xcb_get_property(x.get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, max_bytes / 4);
}

Questions ask(const XConnection& x, xcb_window_t window) {
  Questions questions = {};
  questions.geometry = xcb_get_geometry(x.get(), window);
  questions.position = xcb_translate_coordinates(x.get(), window, x.root(), 0, 0);
  questions.name = askProperty(x, window, x.atom(XAtom::kWindowName), kMaxTextBytes);
  questions.old_name = askProperty(x, window, XCB_ATOM_WM_NAME, kMaxTextBytes);
  questions.window_class = askProperty(x, window, XCB_ATOM_WM_CLASS, kMaxTextBytes);
  questions.type = askProperty(x, window, x.atom(XAtom::kWindowType), kMaxListBytes);
  questions.pid = askProperty(x, window, x.atom(XAtom::kWindowPid), 4);
  if (x.has(XExtension::kResources)) {
    const xcb_res_client_id_spec_t spec = {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    questions.process = xcb_res_query_client_ids(x.get(), 1, &spec);
  }
  return questions;
}

using Property = XReply<xcb_get_property_reply_t>;

std::string_view textOf(const Property& property) {
  if (property == nullptr || property->format != 8) return {};
  return {static_cast<const char*>(xcb_get_property_value(property.get())),
          static_cast<size_t>(xcb_get_property_value_length(property.get()))};
}

std::span<const uint32_t> numbersOf(const Property& property) {
  if (property == nullptr || property->format != 32) return {};
  return {static_cast<const uint32_t*>(xcb_get_property_value(property.get())),
          static_cast<size_t>(xcb_get_property_value_length(property.get())) / 4};
}

// WM_CLASS is the instance's name and the class's, each ended by a zero.
std::string_view classIn(std::string_view text) {
  const size_t instance_end = text.find('\0');
  if (instance_end == std::string_view::npos) return text;
  const std::string_view name = text.substr(instance_end + 1);
  return name.substr(0, name.find('\0'));
}

std::string processName(int32_t pid) {
  std::string name;
  if (pid > 0) std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
  return name;
}

// What the server knows counts before what the window says of itself.
int32_t processOf(const XConnection& x, const Questions& questions, const Property& told) {
  if (x.has(XExtension::kResources)) {
    const auto ids = x.answer<&xcb_res_query_client_ids_reply>(questions.process);
    if (ids != nullptr && ids->num_ids > 0) {
      const auto first = xcb_res_query_client_ids_ids_iterator(ids.get());
      if (xcb_res_client_id_value_value_length(first.data) > 0) {
        return static_cast<int32_t>(*xcb_res_client_id_value_value(first.data));
      }
    }
  }
  const auto numbers = numbersOf(told);
  return numbers.empty() ? 0 : static_cast<int32_t>(numbers[0]);
}

}  // namespace

std::string toUtf8(std::string_view text) {
  const auto length = static_cast<gssize>(text.size());
  if (g_utf8_validate(text.data(), length, nullptr)) return std::string(text);
  std::string converted;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80) {
      converted += character;
    } else {
      converted += static_cast<char>(0xc0 | byte >> 6);
      converted += static_cast<char>(0x80 | (byte & 0x3f));
    }
  }
  return converted;
}

std::vector<WindowFacts> readWindowFacts(const XConnection& x, const std::vector<xcb_window_t>& windows) {
  std::vector<Questions> asked;
  asked.reserve(windows.size());
  for (const xcb_window_t window : windows) asked.push_back(ask(x, window));

  std::vector<WindowFacts> found;
  for (size_t index = 0; index < windows.size(); ++index) {
    const Questions& questions = asked[index];
    const auto geometry = x.answer<&xcb_get_geometry_reply>(questions.geometry);
    const auto position = x.answer<&xcb_translate_coordinates_reply>(questions.position);
    const auto name = x.answer<&xcb_get_property_reply>(questions.name);
    const auto old_name = x.answer<&xcb_get_property_reply>(questions.old_name);
    const auto window_class = x.answer<&xcb_get_property_reply>(questions.window_class);
    const auto type = x.answer<&xcb_get_property_reply>(questions.type);
    const auto told_pid = x.answer<&xcb_get_property_reply>(questions.pid);
    WindowFacts facts;
    facts.pid = processOf(x, questions, told_pid);
    if (geometry == nullptr || position == nullptr) continue;
    const auto is_type = [&](XAtom each) {
      return std::ranges::find(numbersOf(type), x.atom(each)) != numbersOf(type).end();
    };
    if (is_type(XAtom::kWindowTypeDesktop) || is_type(XAtom::kWindowTypeDock)) continue;

    facts.id = windows[index];
    facts.title = toUtf8(textOf(name).empty() ? textOf(old_name) : textOf(name));
    facts.application = toUtf8(classIn(textOf(window_class)));
    if (facts.application.empty()) facts.application = processName(facts.pid);
    facts.rectangle = {position->dst_x, position->dst_y, geometry->width, geometry->height};
    found.push_back(std::move(facts));
  }
  return found;
}

WindowIcon readWindowIcon(const XConnection& x, xcb_window_t window, int32_t width, int32_t height) {
  const Property property = x.property(window, x.atom(XAtom::kWindowIcon), kMaxIconBytes);
  // Icons stand one after the other: width, height, pixels.
  std::span<const uint32_t> rest = numbersOf(property);
  std::span<const uint32_t> best;
  const auto suits = [&](std::span<const uint32_t> icon) {
    return static_cast<int32_t>(icon[0]) >= width && static_cast<int32_t>(icon[1]) >= height;
  };
  while (rest.size() > 2) {
    const auto [icon_width, icon_height] = std::pair(rest[0], rest[1]);
    if (icon_width == 0 || icon_height == 0 || icon_width > kMaxIconSide || icon_height > kMaxIconSide) break;
    const size_t size = 2 + size_t{icon_width} * icon_height;
    if (size > rest.size()) break;
    const std::span<const uint32_t> icon = rest.first(size);
    const bool larger = best.empty() || icon.size() > best.size();
    const bool best_suits = !best.empty() && suits(best);
    if (best_suits ? suits(icon) && !larger : larger) best = icon;
    rest = rest.subspan(size);
  }
  if (best.empty()) return {};
  return {static_cast<int32_t>(best[0]), static_cast<int32_t>(best[1]), {best.begin() + 2, best.end()}};
}

}  // namespace corvane::rtc
