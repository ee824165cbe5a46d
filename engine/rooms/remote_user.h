// One other user of a room: what it tells of itself, and its two streams.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "rooms/member_state.h"
#include "rooms/remote_stream.h"

namespace corvane::rtc {

/// Engine thread only.
class RemoteUser final {
 public:
  /// wanted: MediaStreamType, of either stream.
  RemoteUser(RoomContext& room, std::string uid, int32_t wanted);

  const std::string& uid() const { return uid_; }
  const MemberState& state() const { return state_; }
  void setState(MemberState state);

  /// Of a StreamIndex.
  RemoteStream& stream(int32_t index) { return streams_[static_cast<size_t>(index)]; }
  std::array<RemoteStream, 2>& streams() { return streams_; }

  /// False while the connection to the service is gone; the user may still be there.
  bool present() const { return present_; }
  void suspend(RemoteFlow::Reason reason);
  void resume() { present_ = true; }
  /// Opens, changes or closes the feeds as everything now wants it.
  void update(RoomSession* session, bool loopback_only);
  /// Where it is heard from, whatever of it is heard.
  void setPlace(const SoundPlace& place);

 private:
  const std::string uid_;
  MemberState state_;
  bool present_ = true;
  std::array<RemoteStream, 2> streams_;  // by StreamIndex
};

}  // namespace corvane::rtc
