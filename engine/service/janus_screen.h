// A member's screen in a room of Janus's plug-in VideoRoom: a participant beside the member's own, since a participant
// has one peer connection.
#pragma once

#include <string>

#include "service/janus_handle.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Under which id the screen of a member takes part. It is longer than the id of any user.
std::string screenIdOf(const std::string& member);
bool isScreenId(const std::string& id);
/// Whose screen it is.
std::string memberOfScreen(const std::string& id);

/// Takes part from its description on, for as long as it lives.
class JanusScreen final : public PeerLink, public JanusHandle::Listener {
 public:
  JanusScreen(JanusConnection& connection, JoinRequest room, PeerLink::Listener& listener);

  void sendDescription(const std::string& sdp) override;
  void sendCandidate(unsigned line, const std::string& candidate) override { handle_.sendCandidate(line, candidate); }

 private:
  // The member's own participant is told all that happens in the room.
  void onHandleEvent(const Json& data, const std::string& sdp) override;
  void onHandleCandidate(unsigned line, const std::string& candidate) override;
  void onHandleHungUp(const std::string& reason) override { listener_.onLinkFailed(reason); }
  // The room is told of the loss, and ends its connections.
  void onHandleLost() override {}

  const JoinRequest room_;
  PeerLink::Listener& listener_;
  JanusHandle handle_;
};

}  // namespace corvane::rtc
