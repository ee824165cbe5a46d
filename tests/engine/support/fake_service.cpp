#include "support/fake_service.h"

#include <libsoup/soup.h>

#include <future>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

namespace corvane::test {

using Json = nlohmann::json;

struct FakeService::Loop {
  Script script;
  GMainContext* context = g_main_context_new();
  GMainLoop* loop = g_main_loop_new(context, FALSE);
  SoupServer* server = nullptr;
  int connections = 0;
  std::map<SoupWebsocketConnection*, int> open;

  void run(std::promise<int> port);
  void take(SoupWebsocketConnection* connection, const std::string& text);
};

void FakeService::Loop::take(SoupWebsocketConnection* connection, const std::string& text) {
  const ServiceAnswer answer = script(open[connection], text);
  for (const std::string& each : answer.texts) {
    if (soup_websocket_connection_get_state(connection) != SOUP_WEBSOCKET_STATE_OPEN) return;
    if (g_utf8_validate(each.data(), static_cast<gssize>(each.size()), nullptr)) {
      GBytes* bytes = g_bytes_new(each.data(), each.size());
      soup_websocket_connection_send_message(connection, SOUP_WEBSOCKET_DATA_TEXT, bytes);
      g_bytes_unref(bytes);
    } else {
      soup_websocket_connection_send_binary(connection, each.data(), each.size());
    }
  }
  if (answer.hang_up && soup_websocket_connection_get_state(connection) == SOUP_WEBSOCKET_STATE_OPEN) {
    soup_websocket_connection_close(connection, SOUP_WEBSOCKET_CLOSE_GOING_AWAY, nullptr);
  }
}

void FakeService::Loop::run(std::promise<int> port) {
  g_main_context_push_thread_default(context);
  server = soup_server_new(nullptr, nullptr);
  char protocol[] = "janus-protocol";
  char* protocols[] = {protocol, nullptr};
  const auto on_connection =
      +[](SoupServer*, SoupServerMessage*, const char*, SoupWebsocketConnection* connection, gpointer self) {
        auto* service = static_cast<Loop*>(self);
        service->open[SOUP_WEBSOCKET_CONNECTION(g_object_ref(connection))] = ++service->connections;
        const auto on_message = +[](SoupWebsocketConnection* from, gint, GBytes* bytes, gpointer data) {
          gsize size = 0;
          const auto* text = static_cast<const char*>(g_bytes_get_data(bytes, &size));
          static_cast<Loop*>(data)->take(from, std::string(text, size));
        };
        g_signal_connect(connection, "message", G_CALLBACK(on_message), service);
        service->take(connection, "");
      };
  soup_server_add_websocket_handler(server, nullptr, nullptr, protocols, on_connection, this, nullptr);
  int found = 0;
  if (soup_server_listen_local(server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr) != FALSE) {
    GSList* uris = soup_server_get_uris(server);
    found = g_uri_get_port(static_cast<GUri*>(uris->data));
    g_slist_free_full(uris, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
  }
  port.set_value(found);
  g_main_loop_run(loop);
  for (const auto& [connection, number] : open) {
    g_signal_handlers_disconnect_by_data(connection, this);
    g_object_unref(connection);
  }
  soup_server_disconnect(server);
  g_object_unref(server);
  g_main_context_pop_thread_default(context);
}

FakeService::FakeService(Script script) : loop_(std::make_unique<Loop>()) {
  loop_->script = std::move(script);
  std::promise<int> port;
  std::future<int> found = port.get_future();
  thread_ = std::thread([this, port = std::move(port)]() mutable { loop_->run(std::move(port)); });
  port_ = found.get();
}

FakeService::~FakeService() {
  g_main_context_invoke(
      loop_->context,
      [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      loop_->loop);
  thread_.join();
  g_main_loop_unref(loop_->loop);
  g_main_context_unref(loop_->context);
}

std::vector<std::string> WillingService::answer(const std::string& request) {
  if (request.empty()) return {};
  const Json asked = Json::parse(request);
  const std::string kind = asked["janus"];
  const Json& transaction = asked["transaction"];
  if (kind == "create" || kind == "attach") {
    return {Json{{"janus", "success"}, {"transaction", transaction}, {"data", {{"id", ++last_id_}}}}.dump()};
  }
  const Json body = asked.value("body", Json::object());
  const std::string wanted = body.value("request", "");
  Json reply = {{"janus", "event"}, {"transaction", transaction}, {"sender", asked.value("handle_id", 0)}};
  Json& data = reply["plugindata"]["data"];
  if (wanted == "join" && body["ptype"] == "publisher") {
    data = {{"videoroom", "joined"}, {"publishers", Json::array()}};
    for (const std::string& member : members_) {
      const Json stream = {{"type", "video"}, {"mid", "0"}, {"codec", "vp8"}};
      data["publishers"].push_back({{"id", member}, {"display", ""}, {"streams", Json::array({stream})}});
    }
  } else if (wanted == "join") {
    data = {{"videoroom", "attached"}};
    reply["jsep"] = {{"type", "offer"}, {"sdp", offer != nullptr ? offer(body["streams"][0]["feed"]) : ""}};
  } else if (wanted == "create") {
    data = {{"videoroom", "created"}};
  } else if (wanted == "setup") {
    data = {{"textroom", "event"}, {"error_code", 1}, {"error", "no messages here"}};
  } else if (wanted == "configure" || wanted == "leave") {
    data = {{"videoroom", "event"}, {wanted == "leave" ? "leaving" : "configured", "ok"}};
  } else {
    reply = {{"janus", "ack"}, {"transaction", transaction}};
  }
  return {reply.dump()};
}

}  // namespace corvane::test
