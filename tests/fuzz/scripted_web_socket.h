// The engine's WebSocket without a network: what is sent is looked at, what comes is said here.
#pragma once

#include <cstdint>
#include <string>

#include "service/web_socket.h"

namespace corvane::fuzz {

/// The socket that was made last, while it lives.
struct ScriptedSocket {
  rtc::WebSocket::Listener* listener = nullptr;
  bool opened = false;
  std::string newest_transaction;  ///< of what the engine has sent
};

ScriptedSocket& scriptedSocket();

}  // namespace corvane::fuzz
