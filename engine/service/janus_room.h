// A stay in a room of Janus's plug-in VideoRoom, and the peer connections that belong to it.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "service/janus_connection.h"
#include "service/janus_handle.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Members stand under their ids in the service's list of participants; their states are their display names there.
/// A member's screen is a participant of its own: see JanusScreen.
class JanusRoom final : public RoomSession, public JanusHandle::Listener {
 public:
  JanusRoom(JanusConnection& connection, const JoinRequest& request, RoomSession::Listener& listener);
  ~JanusRoom() override;

  void setState(const std::string& state) override;
  std::unique_ptr<PeerLink> openPublisher(int32_t stream_index, PeerLink::Listener& listener) override;
  std::unique_ptr<FeedLink> openFeed(const std::string& member, int32_t stream_index,
                                     const std::vector<FeedStream>& streams, int layer,
                                     FeedLink::Listener& listener) override;
  std::unique_ptr<MessageLink> openMessages(MessageLink::Listener& listener) override;

 private:
  class Publisher;

  void attach();
  void awaitHangUp();
  void onHandleFree();
  void createRoom();
  void join();
  void onJoinAnswer(const Json& data);
  void keepOpen(const std::string& description, const Json& joined);
  void onJoined(const Json& data);
  void tellState();
  void onMember(const Json& member);
  void onLeft(const std::string& id, bool put_out);
  void onModerated(const std::string& id, const std::string& mid, bool banned);
  void onPublishers(const Json& publishers);
  void tellStreams(const std::string& id, const std::vector<FeedStream>& streams);
  void remove(bool room_ended, const std::string& reason);
  void fail(const Json& data);

  void onHandleEvent(const Json& data, const std::string& sdp) override;
  void onHandleCandidate(unsigned line, const std::string& candidate) override;
  void onHandleHungUp(const std::string& reason) override;
  void onHandleEnded(const std::string& reason) override;
  void onHandleLost() override;

  JanusConnection& connection_;
  const JoinRequest request_;
  RoomSession::Listener& listener_;
  std::string state_;  // as it was set last
  std::string told_;   // as the service has been told
  bool joined_ = false;
  bool over_ = false;
  int attempts_ = 0;
  // Of the room while it is not closing, as far as it is known; "" for an administrator's. Answers find it also when
  // this has gone.
  std::shared_ptr<std::string> mark_ = std::make_shared<std::string>();
  bool is_opening_ = false;  // joined a closing room
  std::vector<Json> early_;  // events between the service's answer and this one's being in the room
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  AttachedSource patience_;
  std::set<std::string> members_;    // the others, as the service tells of them
  AttachedSource hang_up_patience_;  // while the server has not told of the last publisher's end
  Publisher* publisher_ = nullptr;   // of those that openPublisher() made, the one that lives
  const std::string place_;          // the user in the room: one at a time
  std::unique_ptr<JanusHandle> handle_;
};

}  // namespace corvane::rtc
