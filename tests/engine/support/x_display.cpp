#include "support/x_display.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace corvane::test {

namespace {

constexpr uint16_t k16Bits = 0xffff;

template <class Reply>
struct Owned {
  explicit Owned(Reply* received) : reply(received) {}
  ~Owned() { free(reply); }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  Reply* const reply;
};

}  // namespace

TestDisplay::TestDisplay() {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const std::string screen = std::to_string(kWidth) + "x" + std::to_string(kHeight) + "x24";
  // It chooses a free number itself, tells it when it is ready, stays when its last client goes, and ends with this
  // process, should that crash.
  std::vector<std::string> words = {"setpriv", "--pdeathsig", "TERM", "Xvfb",     "-displayfd", "3",
                                    "-screen", "0",           screen, "-noreset", "-nolisten",  "tcp"};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  if (posix_spawnp(&process_, "setpriv", &actions, nullptr, arguments.data(), environ) != 0) process_ = -1;
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);

  std::string number;
  char digit = 0;
  while (process_ > 0 && read(ends[0], &digit, 1) == 1 && digit != '\n') number += digit;
  close(ends[0]);
  if (number.empty()) return;
  name_ = ":" + number;
  setenv("DISPLAY", name_.c_str(), 1);
}

TestDisplay::~TestDisplay() {
  kill();
  unsetenv("DISPLAY");
}

void TestDisplay::kill() {
  if (process_ <= 0) return;
  // What it cannot take with it when it is killed; before that, as the next server may take its number at once.
  if (runs()) {
    unlink(("/tmp/.X11-unix/X" + name_.substr(1)).c_str());
    unlink(("/tmp/.X" + name_.substr(1) + "-lock").c_str());
  }
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

xcb_window_t TestClient::root() const {
  return xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

xcb_atom_t TestClient::atom(const std::string& name) {
  const Owned reply(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<uint16_t>(name.size()), name.data()), nullptr));
  return reply.reply->atom;
}

void TestClient::sync() {
  const Owned reply(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_window_t TestClient::open(const rtc::Rectangle& place, uint32_t color, const std::string& title,
                              const std::string& application) {
  const xcb_window_t window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root(), static_cast<int16_t>(place.x),
                    static_cast<int16_t>(place.y), static_cast<uint16_t>(place.width),
                    static_cast<uint16_t>(place.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL, &color);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 8,
                      static_cast<uint32_t>(title.size()), title.data());
  const std::string names = std::string("instance") + '\0' + application + '\0';
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      static_cast<uint32_t>(names.size()), names.data());
  show(window, true);
  return window;
}

void TestClient::close(xcb_window_t window) {
  xcb_destroy_window(connection_, window);
  sync();
}

void TestClient::resize(xcb_window_t window, int32_t width, int32_t height) {
  const uint32_t values[] = {static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
  xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
  sync();
}

void TestClient::show(xcb_window_t window, bool shown) {
  if (shown) {
    xcb_map_window(connection_, window);
  } else {
    xcb_unmap_window(connection_, window);
  }
  sync();
}

void TestClient::addIcon(xcb_window_t window, uint32_t side, uint32_t color) {
  std::vector<uint32_t> icon(2 + size_t{side} * side, color);
  icon[0] = side;
  icon[1] = side;
  xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window, atom("_NET_WM_ICON"), XCB_ATOM_CARDINAL, 32,
                      static_cast<uint32_t>(icon.size()), icon.data());
  sync();
}

void TestClient::list(const std::vector<xcb_window_t>& windows) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root(), atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, 32,
                      static_cast<uint32_t>(windows.size()), windows.data());
  sync();
}

void TestClient::makeDock(xcb_window_t window) {
  const xcb_atom_t type = atom("_NET_WM_WINDOW_TYPE_DOCK");
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1,
                      &type);
  sync();
}

void TestClient::retitle(xcb_window_t window, const std::string& latin1) {
  xcb_delete_property(connection_, window, atom("_NET_WM_NAME"));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                      static_cast<uint32_t>(latin1.size()), latin1.data());
  sync();
}

void TestClient::addMonitor(const std::string& name, const rtc::Rectangle& place, bool primary) {
  xcb_randr_monitor_info_t monitor = {};
  monitor.name = atom(name);
  monitor.primary = primary ? 1 : 0;
  monitor.x = static_cast<int16_t>(place.x);
  monitor.y = static_cast<int16_t>(place.y);
  monitor.width = static_cast<uint16_t>(place.width);
  monitor.height = static_cast<uint16_t>(place.height);
  // The library's own function miscounts the record's bytes.
  xcb_randr_set_monitor_request_t header = {};
  header.window = root();
  // Two places before the first belong to the library.
  std::array<iovec, 4> parts = {};
  parts[2] = {&header, sizeof(header)};
  parts[3] = {&monitor, sizeof(monitor)};
  const xcb_protocol_request_t request = {2, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  xcb_send_request(connection_, 0, &parts[2], &request);
  sync();
}

void TestClient::point(int32_t x, int32_t y, uint32_t color) {
  constexpr uint16_t kSide = 16;
  const xcb_pixmap_t shape = xcb_generate_id(connection_);
  xcb_create_pixmap(connection_, 1, shape, root(), kSide, kSide);
  const xcb_gcontext_t pen = xcb_generate_id(connection_);
  const uint32_t one = 1;
  xcb_create_gc(connection_, pen, shape, XCB_GC_FOREGROUND, &one);
  const xcb_rectangle_t all = {0, 0, kSide, kSide};
  xcb_poly_fill_rectangle(connection_, shape, pen, 1, &all);
  const auto channel = [color](int shift) {
    return static_cast<uint16_t>(((color >> shift) & 0xff) * (k16Bits / 0xff));
  };
  const xcb_cursor_t cursor = xcb_generate_id(connection_);
  xcb_create_cursor(connection_, cursor, shape, shape, channel(16), channel(8), channel(0), channel(16), channel(8),
                    channel(0), kSide / 2, kSide / 2);
  xcb_change_window_attributes(connection_, root(), XCB_CW_CURSOR, &cursor);
  xcb_warp_pointer(connection_, XCB_NONE, root(), 0, 0, 0, 0, static_cast<int16_t>(x), static_cast<int16_t>(y));
  sync();
}

uint32_t TestClient::pixel(int32_t x, int32_t y) {
  const Owned image(xcb_get_image_reply(connection_,
                                        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root(),
                                                      static_cast<int16_t>(x), static_cast<int16_t>(y), 1, 1, ~0U),
                                        nullptr));
  if (image.reply == nullptr) return ~0U;
  uint32_t value = 0;
  memcpy(&value, xcb_get_image_data(image.reply), sizeof(value));
  return value & 0xffffff;
}

}  // namespace corvane::test
