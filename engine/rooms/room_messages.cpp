#include "rooms/room_messages.h"

#include <utility>
#include <vector>

namespace corvane::rtc {

namespace {

// From sending to giving up; a user who has just joined needs a moment to be reachable.
constexpr std::chrono::seconds kTimeout(8);
constexpr std::chrono::milliseconds kExpiryCheck(500);
// From the connection to the service's welcome over it. A channel's first packet is sent again after three seconds.
constexpr std::chrono::seconds kOpenPatience(5);
// More members than a room can have.
constexpr size_t kMaxReachable = 10'000;

}  // namespace

RoomMessages::RoomMessages(RoomContext& room, Listener& listener) : room_(room), listener_(listener) {}

RoomMessages::~RoomMessages() {
  close();
}

void RoomMessages::send(OutgoingMessage message) {
  unsent_.push_back({std::move(message), Clock::now() + kTimeout, 0});
  sendWhatCanBe();
  if (expiry_ == nullptr) expire();
}

void RoomMessages::setSession(RoomSession* session, bool loopback_only) {
  close();
  session_ = session;
  loopback_only_ = loopback_only;
  retry_pause_.reset();
  // In a moment: pictures are waited for, and what the service tells of the others at once comes first.
  if (session_ != nullptr) retry_ = room_.engine.thread.after(std::chrono::milliseconds(0), [this] { open(); });
}

void RoomMessages::open() {
  connection_ = std::make_unique<DataConnection>(room_.engine, loopback_only_, *this);
  link_ = session_->openMessages(*this);
  connection_->start(*link_);
}

void RoomMessages::close() {
  retry_.reset();
  patience_.reset();
  open_ = false;
  link_.reset();
  connection_.reset();
  reachable_.clear();
  // Nobody will tell any more whether these arrived.
  for (auto& [id, waiting] : std::exchange(sent_, {})) report(waiting.message, kMessageSendResultNetworkDisconnected);
}

void RoomMessages::giveUp(MessageSendResult result) {
  for (Waiting& waiting : std::exchange(unsent_, {})) report(waiting.message, result);
}

void RoomMessages::sendWhatCanBe() {
  if (!open_) return;
  std::deque<Waiting> kept;
  for (Waiting& waiting : std::exchange(unsent_, {})) {
    const OutgoingMessage& message = waiting.message;
    if (message.to.empty() || reachable_.contains(message.to) || message.to == room_.user_id) {
      for (const std::string& text : writeMessage(message)) {
        link_->send(message.id, message.to, text);
        ++waiting.undelivered;
      }
      sent_[message.id] = std::move(waiting);
    } else if (listener_.isInRoom(message.to)) {
      kept.push_back(std::move(waiting));
    } else {
      report(message, kMessageSendResultNoReceiver);
    }
  }
  unsent_ = std::move(kept);
}

void RoomMessages::expire() {
  expiry_.reset();
  sendWhatCanBe();  // users who wait to be reached may have left
  const Clock::time_point now = Clock::now();
  while (!unsent_.empty() && unsent_.front().deadline < now) {
    const Waiting waiting = std::move(unsent_.front());
    unsent_.pop_front();
    report(waiting.message, kMessageSendResultTimeout);
  }
  while (!sent_.empty() && sent_.begin()->second.deadline < now) {
    const Waiting waiting = std::move(sent_.begin()->second);
    sent_.erase(sent_.begin());
    report(waiting.message, kMessageSendResultTimeout);
  }
  if (unsent_.empty() && sent_.empty()) return;
  expiry_ = room_.engine.thread.after(kExpiryCheck, [this] { expire(); });
}

void RoomMessages::report(const OutgoingMessage& message, MessageSendResult result) {
  if (message.to.empty()) {
    room_.events->onRoomMessageSendResult(message.id, result);
  } else {
    room_.events->onUserMessageSendResult(message.id, result);
  }
}

void RoomMessages::onPeerConnected() {
  if (open_) return;
  patience_ = room_.engine.thread.after(
      kOpenPatience, [this] { connection_->peer().fail("the service does not open a connection for messages"); });
}

void RoomMessages::onPeerFailed(const std::string& reason) {
  room_.engine.log.warning("room %s: messages: %s", room_.room_id.c_str(), reason.c_str());
  close();
  retry_ = room_.engine.thread.after(retry_pause_.next(), [this] {
    if (session_ != nullptr) open();
  });
}

void RoomMessages::onMessagesOpen() {
  patience_.reset();
  open_ = true;
  sendWhatCanBe();
  listener_.onReachableChanged();
}

void RoomMessages::onReachable(const std::string& member, bool reachable) {
  if (member.empty()) return;
  if (reachable) {
    if (reachable_.size() < kMaxReachable) reachable_.insert(member);
  } else {
    reachable_.erase(member);
    reader_.forget(member);
  }
  if (!open_) return;  // the list of those that were there before is not whole yet
  sendWhatCanBe();
  listener_.onReachableChanged();
}

void RoomMessages::onMessage(const std::string& from, const std::string& text, bool private_message) {
  if (from == room_.user_id && !private_message) return;  // the room's echo
  const std::optional<MessageReader::Message> message = reader_.read(from, private_message, text);
  if (!message) return;
  IRTCRoomEventHandler& events = *room_.events;
  const char* user = from.c_str();
  const std::string& body = message->body;
  if (!message->is_binary) {
    return private_message ? events.onUserMessageReceived(user, body.c_str())
                           : events.onRoomMessageReceived(user, body.c_str());
  }
  const auto* data = reinterpret_cast<const uint8_t*>(body.data());
  const auto size = static_cast<int32_t>(body.size());
  return private_message ? events.onUserBinaryMessageReceived(user, data, size)
                         : events.onRoomBinaryMessageReceived(user, data, size);
}

void RoomMessages::onDelivery(int64_t id, MessageLink::Delivery delivery) {
  const auto found = sent_.find(id);
  if (found == sent_.end()) return;
  if (delivery == MessageLink::Delivery::kDelivered && --found->second.undelivered > 0) return;
  const Waiting waiting = std::move(found->second);
  sent_.erase(found);
  MessageSendResult result = kMessageSendResultSuccess;
  if (delivery == MessageLink::Delivery::kNoReceiver) result = kMessageSendResultNoReceiver;
  if (delivery == MessageLink::Delivery::kRefused) result = kMessageSendResultRefused;
  report(waiting.message, result);
}

}  // namespace corvane::rtc
