// One room: being in it, who else is, and what is exchanged with them.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "rooms/forwarding.h"
#include "rooms/local_stream.h"
#include "rooms/member_state.h"
#include "rooms/remote_user.h"
#include "rooms/room_context.h"
#include "rooms/room_messages.h"
#include "rooms/room_report.h"
#include "rooms/room_space.h"
#include "rooms/user_events.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// What joinRoom() was given.
struct RoomJoin {
  std::string token;
  std::string user_id;
  std::string extra_info;
  bool auto_publish = false;
  int32_t auto_subscribe = 0;                  ///< MediaStreamType
  RemoteVideoConfig remote_video = {};         ///< of users that nothing else has been said of
  std::shared_ptr<std::atomic<bool>> in_room;  ///< true; made false when joining fails, or the stay is ended
};

/// Engine thread only. Operations that need the room to be joined do nothing otherwise: callers check.
class Room final : public RoomSession::Listener, public RoomMessages::Listener, public RoomReport::Subject {
 public:
  /// service_of: where other rooms are held.
  Room(RoomContext context, Service& service, Forwarding::ServiceFinder service_of);
  ~Room();
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;

  void setHandler(IRTCRoomEventHandler* handler);
  void join(RoomJoin join);
  /// Reports onLeaveRoom, if the room was joined or was being joined.
  void leave();
  /// Neither in it nor on the way.
  bool isOut() const { return state_ == State::kOut; }

  // Of one stream, a StreamIndex.

  void publish(int32_t stream_index, int32_t media);
  void unpublish(int32_t stream_index, int32_t media);
  void subscribe(const std::string& user, int32_t stream_index, int32_t media);
  void unsubscribe(const std::string& user, int32_t stream_index, int32_t media);
  /// The largest picture wanted, of the camera; for users to come, too.
  void setRemoteVideo(const std::string& user, const RemoteVideoConfig& wanted);
  /// Percent.
  void setVolume(const std::string& user, int32_t stream_index, int32_t volume);

  // Of all streams, also of those to come.

  void subscribeAll(int32_t media);
  void unsubscribeAll(int32_t media);
  void setPaused(int32_t media, bool paused);
  /// Percent.
  void setRoomVolume(int32_t volume);

  // Of the local user and the room.

  /// What the local user captures: MediaStreamType, by StreamIndex.
  void setCapturing(const std::array<int32_t, 2>& media);
  /// The layers of the local user's camera have changed.
  void tellLayers();
  /// Before the room is joined, too: it is joined invisible then.
  void setVisible(bool visible);
  /// Whether the others hear the local user however many are louder; before the room is joined, too.
  void setPreferred(bool preferred);
  /// Reported under `task`.
  void setExtraInfo(int32_t task, const std::string& key, const std::string& value);
  void setToken(std::string token) { join_.token = std::move(token); }
  /// Where users are heard from; also before the room is joined.
  void changeSpace(const std::function<void(RoomSpace&)>& change);
  void send(OutgoingMessage message) { messages_.send(std::move(message)); }

  /// Of the published streams to other rooms, while the room is joined.
  Forwarding& forwarding() { return forwarding_; }

  /// Of any service.
  void onServiceState(Service& service, Service::State state, const std::string& problem);

 private:
  enum class State { kOut, kJoining, kIn, kInterrupted };

  // Another user.
  struct Entry {
    std::unique_ptr<RemoteUser> user;
    std::unique_ptr<UserEvents> told;
    std::chrono::steady_clock::time_point known_since;
  };

  void enter();
  void drop();
  void end(RoomState state, const std::string& reason);
  void reportState(RoomState state, const std::string& reason);
  void tellState();
  void tellPlace();
  int32_t& published(int32_t stream_index) { return stream_index == kStreamIndexScreen ? own_.screen : own_.published; }
  void setPublished(int32_t stream_index, int32_t media);
  void changeSubscription(const std::string& user, int32_t stream_index, int32_t more, int32_t less);
  void applyRemoteVideo(RemoteUser& user);
  void applyVolume(RemoteUser& user);
  int32_t tryExtraInfo(const std::string& key, const std::string& value);
  // Pairs of the room whose keeper has left are kept by the first of those who stay.
  void adoptRoomInfo(const MemberState& left);
  void takeRoomInfo(const MemberState& state);
  Entry& entryOf(const std::string& user);
  void refresh(Entry& entry);
  void announce(Entry& entry);
  void remove(const std::string& user, UserLeaveReason reason);
  void checkLater();

  void onJoined() override;
  void onJoinFailed(JoinFault fault, const std::string& reason) override;
  void onMemberJoined(const std::string& member, const std::string& state) override;
  void onMemberState(const std::string& member, const std::string& state) override;
  void onMemberStreams(const std::string& member, int32_t stream_index,
                       const std::vector<FeedStream>& streams) override;
  void onMemberModerated(const std::string& member, int32_t stream_index, const std::string& mid, bool banned) override;
  void onMemberLeft(const std::string& member, bool put_out) override;
  void onRemoved(bool room_ended, const std::string& reason) override;
  void onLost() override;
  void onReachableChanged() override;
  bool isInRoom(const std::string& user) const override;
  std::array<LocalStream, 2>& localStreams() override { return local_; }
  std::vector<RemoteUser*> remoteUsers() override;

  RoomContext context_;
  Service& service_;
  State state_ = State::kOut;
  RoomJoin join_;
  bool was_in_ = false;     // since join()
  bool visible_ = true;     // as the application wants it
  bool preferred_ = false;  // likewise
  std::array<int32_t, 2> capturing_ = {};
  int32_t room_volume_ = 100;
  std::map<std::pair<std::string, int32_t>, int32_t> volumes_;  // by user and stream, where not 100
  std::map<std::string, RemoteVideoConfig> remote_videos_;      // by user
  RoomSpace space_;
  AttachedSource place_pause_;  // since the others were last told of a place
  std::map<std::string, ExtraInfo> room_info_;
  MemberState own_;
  std::string told_;  // own_ as the others know it
  std::chrono::steady_clock::time_point join_started_;
  std::chrono::steady_clock::time_point joined_at_;
  int32_t paused_ = 0;
  int32_t subscribe_new_ = 0;  // MediaStreamType wanted of users to come
  AttachedSource retry_;
  AttachedSource check_;
  std::unique_ptr<RoomSession> session_;
  std::array<LocalStream, 2> local_;  // by StreamIndex
  Forwarding forwarding_;
  RoomMessages messages_;
  std::map<std::string, Entry> users_;
  RoomReport report_;
};

}  // namespace corvane::rtc
