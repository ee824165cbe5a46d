// Stands in for engine/service/web_socket.cpp.
#include "scripted_web_socket.h"

#include <libsoup/soup.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "core/json.h"
#include "targets.h"

namespace corvane::fuzz {

ScriptedSocket& scriptedSocket() {
  static ScriptedSocket socket;
  return socket;
}

}  // namespace corvane::fuzz

namespace corvane::rtc {

WebSocket::WebSocket(const std::string& /*url*/, const char* /*protocol*/, Listener& listener) : listener_(listener) {
  fuzz::scriptedSocket() = {.listener = &listener, .opened = false, .newest_transaction = ""};
}

WebSocket::~WebSocket() {
  if (fuzz::scriptedSocket().listener == &listener_) fuzz::scriptedSocket().listener = nullptr;
}

void WebSocket::send(const std::string& text) {
  static const bool trace = getenv("CORVANE_FUZZ_TRACE") != nullptr;
  if (trace) fprintf(stderr, "< %s\n", text.c_str());
  const Json message = parseJson(text);
  fuzz::promise(message.is_object(), "the engine sends JSON objects");
  fuzz::scriptedSocket().newest_transaction = textOf(message, "transaction");
}

}  // namespace corvane::rtc
