#include "service/janus_messages.h"

#include <utility>

#include "service/janus_connection.h"
#include "service/room_mark.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kNoSuchUser = 421;
constexpr char kJoin[] = "join";

}  // namespace

JanusMessages::JanusMessages(JanusConnection& connection, const JoinRequest& room, const std::string& mark,
                             MessageLink::Listener& listener)
    : room_(room),
      id_(messageRoomOf(room.room_id, mark)),
      listener_(listener),
      handle_(connection, "janus.plugin.textroom", *this) {
  // One that is there already is as good: joining tells.
  Json create = {{"request", "create"}, {"room", id_}, {"is_private", true}};
  if (!mark.empty()) create["secret"] = mark;
  handle_.send(std::move(create));
  handle_.send({{"request", "setup"}}, [this](const Json& data, const std::string& offer) {
    if (offer.empty()) return listener_.onLinkFailed(textOf(data, "error"));
    listener_.onRemoteDescription(offer);
  });
}

void JanusMessages::sendDescription(const std::string& sdp) {
  handle_.send({{"request", "ack"}}, "answer", sdp);
}

void JanusMessages::onChannelOpen() {
  Json join = {{"textroom", "join"}, {"transaction", kJoin}, {"room", id_}, {"username", room_.member_id}};
  if (!room_.token.empty()) {
    join["token"] = room_.token;
    join["pin"] = room_.token;
  }
  listener_.sendOverChannel(jsonText(join));
}

void JanusMessages::send(int64_t id, const std::string& to, const std::string& text) {
  Json message = {{"textroom", "message"}, {"transaction", std::to_string(id)}, {"room", id_}, {"text", text}};
  if (!to.empty()) message["to"] = to;
  listener_.sendOverChannel(jsonText(message));
}

void JanusMessages::onChannelText(const std::string& text) {
  const Json message = parseJson(text);
  const std::string kind = textOf(message, "textroom");
  if (const std::string transaction = textOf(message, "transaction"); !transaction.empty()) {
    return onAnswer(transaction, message);
  }
  if (kind == "message") {
    const std::string from = idOf(message, "from");
    if (from.empty()) return;
    return listener_.onMessage(from, textOf(message, "text"), flagOf(message, "whisper", false));
  }
  if (kind == "join") return listener_.onReachable(idOf(message, "username"), true);
  if (kind == "leave" || kind == "kicked") return listener_.onReachable(idOf(message, "username"), false);
  if (kind == "destroyed") listener_.onLinkFailed("the room for messages was ended on the service");
}

void JanusMessages::onAnswer(const std::string& transaction, const Json& answer) {
  if (transaction == kJoin) return onJoined(answer);
  const int64_t code = errorCodeOf(answer);
  Delivery delivery = code == 0 ? Delivery::kDelivered : Delivery::kRefused;
  if (code == kNoSuchUser) delivery = Delivery::kNoReceiver;
  listener_.onDelivery(strtoll(transaction.c_str(), nullptr, 10), delivery);
}

void JanusMessages::onJoined(const Json& answer) {
  if (errorCodeOf(answer) != 0) return listener_.onLinkFailed(textOf(answer, "error"));
  const std::weak_ptr<void> alive = handle_.alive();
  for (const Json& participant : memberOf(answer, "participants")) {
    if (alive.expired()) return;
    listener_.onReachable(idOf(participant, "username"), true);
  }
  if (!alive.expired()) listener_.onMessagesOpen();
}

void JanusMessages::onHandleEvent(const Json& /*data*/, const std::string& offer) {
  if (!offer.empty()) listener_.onRemoteDescription(offer);
}

void JanusMessages::onHandleCandidate(unsigned line, const std::string& candidate) {
  listener_.onRemoteCandidate(line, candidate);
}

}  // namespace corvane::rtc
