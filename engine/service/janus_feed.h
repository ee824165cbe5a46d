// A subscription to one member's feed in a room of Janus's plug-in VideoRoom.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "service/janus_handle.h"
#include "service/signalling.h"

namespace corvane::rtc {

class JanusFeed final : public FeedLink, public JanusHandle::Listener {
 public:
  JanusFeed(JanusConnection& connection, const JoinRequest& room, const std::string& member,
            const std::vector<FeedStream>& streams, int layer, FeedLink::Listener& listener);

  void sendDescription(const std::string& sdp) override;
  void sendCandidate(unsigned line, const std::string& candidate) override { handle_.sendCandidate(line, candidate); }
  void setSending(const std::string& mid, bool send) override { configure(mid, {{"send", send}}); }
  void setLayer(const std::string& mid, int layer) override { configure(mid, {{"substream", layer}}); }

 private:
  void configure(const std::string& mid, Json stream);

  void onHandleEvent(const Json& data, const std::string& sdp) override;
  void onHandleCandidate(unsigned line, const std::string& candidate) override;
  void onHandleHungUp(const std::string& reason) override { listener_.onLinkFailed(reason); }
  // The room is told of the loss, and ends its feeds.
  void onHandleLost() override {}

  FeedLink::Listener& listener_;
  const std::vector<FeedStream> streams_;  // of the member; the service numbers those of the subscription in this order
  JanusHandle handle_;
};

}  // namespace corvane::rtc
