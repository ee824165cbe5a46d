// Messages of one room: their ids, their way, and what became of them.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "rooms/data_connection.h"
#include "rooms/message_text.h"
#include "rooms/retry_pause.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only.
class RoomMessages final : public MessageLink::Listener, public PeerConnection::Listener {
 public:
  class Listener {
   public:
    /// Whether a user can be sent messages has changed, for one user or for many.
    virtual void onReachableChanged() = 0;
    /// A user in the room, who may not be reachable yet.
    virtual bool isInRoom(const std::string& user) const = 0;

   protected:
    ~Listener() = default;
  };

  RoomMessages(RoomContext& room, Listener& listener);
  ~RoomMessages();
  RoomMessages(const RoomMessages&) = delete;
  RoomMessages& operator=(const RoomMessages&) = delete;

  /// What becomes of it is reported in any case. Waits while the room is being joined.
  void send(OutgoingMessage message);
  /// Null while there is none; messages wait for the next one. The session must live until it is replaced.
  void setSession(RoomSession* session, bool loopback_only);
  /// The stay has ended: what waits is given up.
  void giveUp(MessageSendResult result);

  bool reaches(const std::string& user) const { return reachable_.contains(user); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Waiting {
    OutgoingMessage message;
    Clock::time_point deadline;
    size_t undelivered = 0;  // of its texts that were sent
  };

  void open();
  void close();
  void sendWhatCanBe();
  void expire();
  void report(const OutgoingMessage& message, MessageSendResult result);

  void onPeerConnected() override;
  void onPeerFailed(const std::string& reason) override;
  void onRemoteDescription(const std::string& sdp) override { connection_->peer().onRemoteDescription(sdp); }
  void onRemoteCandidate(unsigned line, const std::string& candidate) override {
    connection_->peer().onRemoteCandidate(line, candidate);
  }
  void onLinkFailed(const std::string& reason) override { connection_->peer().fail(reason); }
  void onMessagesOpen() override;
  void onMessage(const std::string& from, const std::string& text, bool private_message) override;
  void onReachable(const std::string& member, bool reachable) override;
  void onDelivery(int64_t id, MessageLink::Delivery delivery) override;
  void sendOverChannel(const std::string& text) override { connection_->send(text); }

  RoomContext& room_;
  Listener& listener_;
  RoomSession* session_ = nullptr;
  bool loopback_only_ = false;
  AttachedSource patience_;  // with a connection over which messages are not open yet
  bool open_ = false;
  std::set<std::string> reachable_;
  std::deque<Waiting> unsent_;
  std::map<int64_t, Waiting> sent_;  // until the service has told what became of them
  MessageReader reader_;
  AttachedSource expiry_;
  AttachedSource retry_;
  RetryPause retry_pause_ = RetryPause(std::chrono::milliseconds(1000));
  std::unique_ptr<DataConnection> connection_;
  std::unique_ptr<MessageLink> link_;
};

}  // namespace corvane::rtc
