#include "service/janus_handle.h"

#include <utility>

#include "service/janus_connection.h"

namespace corvane::rtc {

namespace {

// Of the server's own refusals, which have codes of their own, when it gives none.
constexpr int64_t kUnknownError = 490;

Json dataOf(const Json& message) {
  const Json& error = memberOf(message, "error");
  if (error.is_object()) {
    return {{"error_code", numberOf(error, "code", kUnknownError)}, {"error", textOf(error, "reason")}};
  }
  return memberOf(memberOf(message, "plugindata"), "data");
}

}  // namespace

JanusHandle::JanusHandle(JanusConnection& connection, const char* plugin, Listener& listener)
    : connection_(connection), listener_(&listener) {
  connection_.enlist(*this);
  connection_.request("attach", 0, {{"plugin", plugin}},
                      [this, alive = std::weak_ptr<void>(alive_), &connection](const Json& message) {
                        if (!alive.expired()) return onAttached(message);
                        const int64_t id = numberOf(memberOf(message, "data"), "id");
                        if (id != 0) connection.request("detach", id, Json::object());
                      });
}

JanusHandle::~JanusHandle() {
  connection_.dismiss(*this);
  if (id_ == 0) return;
  connection_.remove(id_, *this);
  if (!lost_) connection_.request("detach", id_, Json::object());
}

void JanusHandle::send(Json body, const char* sdp_type, const std::string& sdp, Answer answer) {
  Json message = {{"body", std::move(body)}};
  if (!sdp.empty()) message["jsep"] = {{"type", sdp_type}, {"sdp", sdp}};
  post("message", std::move(message), std::move(answer));
}

void JanusHandle::sendCandidate(unsigned line, const std::string& candidate) {
  post("trickle", {{"candidate", {{"sdpMLineIndex", line}, {"candidate", candidate}}}}, nullptr);
}

void JanusHandle::post(const char* kind, Json message, Answer answer) {
  if (lost_) return;
  if (id_ == 0) {
    waiting_.push_back([this, kind, message = std::move(message), answer = std::move(answer)]() mutable {
      post(kind, std::move(message), std::move(answer));
    });
    return;
  }
  JanusConnection::Answer forward;
  if (answer != nullptr) {
    forward = [alive = std::weak_ptr<void>(alive_), answer = std::move(answer)](const Json& reply) {
      if (!alive.expired()) answer(dataOf(reply), textOf(memberOf(reply, "jsep"), "sdp"));
    };
  }
  connection_.request(kind, id_, std::move(message), std::move(forward));
}

void JanusHandle::onAttached(const Json& message) {
  const int64_t id = numberOf(memberOf(message, "data"), "id");
  if (id == 0 || !connection_.add(id, *this)) {
    lost_ = true;
    waiting_.clear();
    return listener_->onHandleEnded("the service refuses: " + textOf(memberOf(message, "error"), "reason"));
  }
  id_ = id;
  for (const auto& send : std::exchange(waiting_, {})) send();
}

void JanusHandle::onEvent(const std::string& kind, const Json& message) {
  if (kind == "event") return listener_->onHandleEvent(dataOf(message), textOf(memberOf(message, "jsep"), "sdp"));
  if (kind == "trickle") {
    const Json& candidate = memberOf(message, "candidate");
    const std::string text = textOf(candidate, "candidate");
    const int64_t line = numberOf(candidate, "sdpMLineIndex");
    if (!text.empty() && line >= 0 && line < 64) listener_->onHandleCandidate(static_cast<unsigned>(line), text);
    return;
  }
  if (kind == "hangup") return listener_->onHandleHungUp(textOf(message, "reason"));
  if (kind == "detached") {
    lost_ = true;
    listener_->onHandleEnded("the service ended the connection");
  }
}

void JanusHandle::onConnectionLost() {
  lost_ = true;
  listener_->onHandleLost();
}

}  // namespace corvane::rtc
