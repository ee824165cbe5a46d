// A connection to an X server. Unlike the older client library it survives the server's end.
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>

#include "capture/capture_fault.h"

namespace corvane::rtc {

struct FreeMemory {
  void operator()(void* memory) const { free(memory); }
};

/// What the server sent; null for an error of the server, or without one.
template <class T>
using XReply = std::unique_ptr<T, FreeMemory>;

/// Atoms that are asked for by name, once for each connection.
enum class XAtom {
  kClientList,
  kWindowName,
  kWindowType,
  kWindowTypeDesktop,
  kWindowTypeDock,
  kWindowPid,
  kWindowIcon,
  kWindowState,
  kUtf8String,
  kCount,
};

enum class XExtension { kComposite, kDamage, kFixes, kRandr, kResources, kSharedMemory, kCount };

/// One thread at a time, but for abort().
class XConnection {
 public:
  /// `display` as in the environment variable DISPLAY; "" for none. Null, with the reason, when there is no such server
  /// (kNotFound), or it is one whose screen cannot be read (kNotSupported).
  static std::unique_ptr<XConnection> open(const std::string& display, CaptureFault& fault);
  ~XConnection() { xcb_disconnect(connection_); }
  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  const xcb_screen_t& screen() const { return *screen_; }
  xcb_window_t root() const { return screen_->root; }
  xcb_atom_t atom(XAtom name) const { return atoms_[static_cast<size_t>(name)]; }
  /// Whether the server has the extension in a version that is recent enough.
  bool has(XExtension extension) const { return extensions_[static_cast<size_t>(extension)]; }

  /// False once the server has gone, for good.
  bool alive() const { return xcb_connection_has_error(connection_) == 0; }
  /// Has every wait for the server end at once, and the connection be dead. Any thread.
  void abort() const;

  /// Waits for what a request brings: answer<&xcb_..._reply>(cookie).
  template <auto kReply, class Cookie>
  auto answer(Cookie cookie) const {
    auto* reply = kReply(connection_, cookie, nullptr);
    return XReply<std::remove_pointer_t<decltype(reply)>>(reply);
  }
  /// Waits for the result of a request that brings nothing.
  bool succeeds(xcb_void_cookie_t checked) const {
    return XReply<xcb_generic_error_t>(xcb_request_check(connection_, checked)) == nullptr && alive();
  }
  XReply<xcb_generic_event_t> nextEvent() const { return XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_)); }
  /// The number of an extension's first event.
  uint8_t firstEvent(xcb_extension_t& extension) const;

  /// Up to `max_bytes` of a property of any type; null when there is no such property.
  XReply<xcb_get_property_reply_t> property(xcb_window_t window, xcb_atom_t name, uint32_t max_bytes) const;

 private:
  XConnection(xcb_connection_t* connection, xcb_screen_t* screen);
  void findAtoms();
  void findExtensions();
  bool isPartOfWayland() const;

  xcb_connection_t* const connection_;
  xcb_screen_t* const screen_;
  std::array<xcb_atom_t, static_cast<size_t>(XAtom::kCount)> atoms_ = {};
  std::array<bool, static_cast<size_t>(XExtension::kCount)> extensions_ = {};
};

/// The X server that the environment names, or "". On the thread that may change the environment.
std::string environmentDisplay();

}  // namespace corvane::rtc
