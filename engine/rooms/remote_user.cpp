#include "rooms/remote_user.h"

#include <utility>

namespace corvane::rtc {

RemoteUser::RemoteUser(RoomContext& room, std::string uid, int32_t wanted)
    : uid_(std::move(uid)),
      streams_{RemoteStream(room, uid_, kStreamIndexMain, wanted),
               RemoteStream(room, uid_, kStreamIndexScreen, wanted)} {}

void RemoteUser::setState(MemberState state) {
  state_ = std::move(state);
  for (RemoteStream& stream : streams_) stream.setMetaData(state_.extra_info);
  stream(kStreamIndexMain).setLayers(state_.layers);
  stream(kStreamIndexMain).setPreferred(state_.preferred);
  stream(kStreamIndexMain).setPublished(state_.visible ? state_.published : 0);
  stream(kStreamIndexScreen).setPublished(state_.visible ? state_.screen : 0);
}

void RemoteUser::setPlace(const SoundPlace& place) {
  for (RemoteStream& stream : streams_) stream.setPlace(place);
}

void RemoteUser::suspend(RemoteFlow::Reason reason) {
  present_ = false;
  for (RemoteStream& stream : streams_) stream.suspend(reason);
}

void RemoteUser::update(RoomSession* session, bool loopback_only) {
  for (RemoteStream& stream : streams_) stream.update(session, loopback_only);
}

}  // namespace corvane::rtc
