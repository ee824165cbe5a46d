// What the application is told of one other user of a room: that it is there, captures, publishes, leaves.
#pragma once

#include <array>
#include <cstdint>

#include "corvane_rtc/rtc_room_events.h"
#include "rooms/remote_user.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only.
class UserEvents final {
 public:
  /// Both must live as long.
  UserEvents(RoomContext& room, RemoteUser& user) : room_(room), user_(user) {}

  /// Whether the application knows that the user is there.
  bool known() const { return known_; }
  void tellJoined(int32_t elapsed_ms);
  /// What has changed since the call before. Of a user that is known.
  void tellMedia();
  /// That the streams have ended, then that the user is gone. It may come back.
  void tellLeft(UserLeaveReason reason);

 private:
  void tellCapturing();
  void tellPublished(int32_t stream_index, int32_t media, StreamRemoveReason reason);

  RoomContext& room_;
  RemoteUser& user_;
  bool known_ = false;
  // MediaStreamType, as told.
  int32_t capturing_ = 0;
  std::array<int32_t, 2> published_ = {};  // by StreamIndex
};

}  // namespace corvane::rtc
