// The messages of a room: a room of Janus's plug-in TextRoom beside the one for media.
#pragma once

#include <memory>
#include <string>

#include "service/janus_handle.h"
#include "service/signalling.h"

namespace corvane::rtc {

class JanusMessages final : public MessageLink, public JanusHandle::Listener {
 public:
  /// mark: of the room for media, with which the one for messages ends.
  JanusMessages(JanusConnection& connection, const JoinRequest& room, const std::string& mark,
                MessageLink::Listener& listener);

  void sendDescription(const std::string& sdp) override;
  void sendCandidate(unsigned line, const std::string& candidate) override { handle_.sendCandidate(line, candidate); }
  void onChannelOpen() override;
  void onChannelText(const std::string& text) override;
  void send(int64_t id, const std::string& to, const std::string& text) override;

 private:
  void onJoined(const Json& answer);
  void onAnswer(const std::string& transaction, const Json& answer);

  void onHandleEvent(const Json& data, const std::string& sdp) override;
  void onHandleCandidate(unsigned line, const std::string& candidate) override;
  void onHandleHungUp(const std::string& reason) override { listener_.onLinkFailed(reason); }
  // The room is told of the loss, and ends its messages.
  void onHandleLost() override {}

  const JoinRequest room_;
  const std::string id_;  // of the room for messages
  MessageLink::Listener& listener_;
  JanusHandle handle_;
};

}  // namespace corvane::rtc
