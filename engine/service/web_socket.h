// One WebSocket connection of the engine thread's.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/glib_pointers.h"

using SoupSession = struct _SoupSession;
using SoupWebsocketConnection = struct _SoupWebsocketConnection;
using GCancellable = struct _GCancellable;

namespace corvane::rtc {

/// Engine thread only.
class WebSocket {
 public:
  class Listener {
   public:
    virtual void onOpen() = 0;
    virtual void onText(std::string_view text) = 0;
    /// At most once, and the last call; also when the connection could not be made.
    virtual void onClosed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  /// Begins to connect; the listener is not called before this has returned.
  WebSocket(const std::string& url, const char* protocol, Listener& listener);
  /// The listener is not called afterwards.
  ~WebSocket();
  WebSocket(const WebSocket&) = delete;
  WebSocket& operator=(const WebSocket&) = delete;

  void send(const std::string& text);

 private:
  void onConnected(SoupWebsocketConnection* connection);
  void close(const std::string& reason);

  Listener& listener_;
  const std::shared_ptr<WebSocket*> self_;  // what is under way holds it weakly
  GObjectPtr<SoupSession> session_;
  GObjectPtr<GCancellable> cancel_;
  GObjectPtr<SoupWebsocketConnection> connection_;
};

}  // namespace corvane::rtc
