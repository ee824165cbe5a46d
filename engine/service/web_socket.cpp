#include "service/web_socket.h"

#include <libsoup/soup.h>

#include "core/gst_pointers.h"

namespace corvane::rtc {

namespace {

// Session descriptions and lists of members are the largest texts that a service sends.
constexpr guint64 kMaxTextBytes = 4 * 1024 * 1024;

}  // namespace

WebSocket::WebSocket(const std::string& url, const char* protocol, Listener& listener)
    : listener_(listener),
      self_(std::make_shared<WebSocket*>(this)),
      session_(soup_session_new()),
      cancel_(g_cancellable_new()) {
  using Self = std::weak_ptr<WebSocket*>;
  const GObjectPtr<SoupMessage> request(soup_message_new("GET", url.c_str()));
  if (request == nullptr) {
    GSource* idle = g_idle_source_new();
    g_source_set_callback(
        idle,
        [](gpointer data) -> gboolean {
          if (const auto self = static_cast<Self*>(data)->lock()) (*self)->close("the address is not valid");
          return G_SOURCE_REMOVE;
        },
        std::make_unique<Self>(self_).release(), [](gpointer data) { delete static_cast<Self*>(data); });
    g_source_attach(idle, g_main_context_get_thread_default());
    g_source_unref(idle);
    return;
  }
  char* protocols[] = {const_cast<char*>(protocol), nullptr};  // libsoup reads it only
  soup_session_websocket_connect_async(
      session_.get(), request.get(), nullptr, protocols, G_PRIORITY_DEFAULT, cancel_.get(),
      [](GObject* session, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Self> weak(static_cast<Self*>(data));
        GError* error = nullptr;
        GObjectPtr<SoupWebsocketConnection> connection(
            soup_session_websocket_connect_finish(SOUP_SESSION(session), result, &error));
        const GstPtr<GError> owned(error);
        const auto self = weak->lock();
        if (self == nullptr) return;
        if (connection != nullptr) {
          (*self)->onConnected(connection.release());
        } else {
          (*self)->close(error != nullptr ? error->message : "no connection");
        }
      },
      std::make_unique<Self>(self_).release());
}

WebSocket::~WebSocket() {
  g_cancellable_cancel(cancel_.get());
  if (connection_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(connection_.get(), this);
  if (soup_websocket_connection_get_state(connection_.get()) == SOUP_WEBSOCKET_STATE_OPEN) {
    soup_websocket_connection_close(connection_.get(), SOUP_WEBSOCKET_CLOSE_NORMAL, nullptr);
  }
}

void WebSocket::send(const std::string& text) {
  if (connection_ == nullptr || soup_websocket_connection_get_state(connection_.get()) != SOUP_WEBSOCKET_STATE_OPEN) {
    return;
  }
  soup_websocket_connection_send_text(connection_.get(), text.c_str());
}

void WebSocket::onConnected(SoupWebsocketConnection* connection) {
  connection_.reset(connection);
  soup_websocket_connection_set_max_incoming_payload_size(connection, kMaxTextBytes);
  const auto on_message = +[](SoupWebsocketConnection*, gint type, GBytes* bytes, gpointer self) {
    gsize size = 0;
    const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
    if (type == SOUP_WEBSOCKET_DATA_TEXT) static_cast<WebSocket*>(self)->listener_.onText({data, size});
  };
  const auto on_closed = +[](SoupWebsocketConnection*, gpointer self) {
    static_cast<WebSocket*>(self)->close("the service closed the connection");
  };
  g_signal_connect(connection, "message", G_CALLBACK(on_message), this);
  g_signal_connect(connection, "closed", G_CALLBACK(on_closed), this);
  listener_.onOpen();
}

void WebSocket::close(const std::string& reason) {
  if (connection_ != nullptr) g_signal_handlers_disconnect_by_data(connection_.get(), this);
  listener_.onClosed(reason);
}

}  // namespace corvane::rtc
