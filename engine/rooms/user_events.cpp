#include "rooms/user_events.h"

#include <utility>

#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

void UserEvents::tellJoined(int32_t elapsed_ms) {
  known_ = true;
  const UserInfo info = {user_.uid().c_str(), user_.state().extra_info.c_str()};
  room_.events->onUserJoined(info, elapsed_ms);
}

void UserEvents::tellMedia() {
  tellCapturing();
  for (int32_t index : {kStreamIndexMain, kStreamIndexScreen}) {
    const RemoteStream& stream = user_.stream(index);
    const int32_t told = published_[static_cast<size_t>(index)];
    // A screen whose user has not taken it back has lost its connection, as its user may have, too.
    const bool is_lost = stream.isScreen() && (told & stream.published() & ~stream.available()) != 0;
    tellPublished(index, stream.available(),
                  is_lost ? kStreamRemoveReasonConnectionLost : kStreamRemoveReasonUnpublish);
  }
}

void UserEvents::tellLeft(UserLeaveReason reason) {
  StreamRemoveReason ended = kStreamRemoveReasonUnpublish;
  if (reason == kUserLeaveReasonDropped) ended = kStreamRemoveReasonConnectionLost;
  if (reason == kUserLeaveReasonKickedOut) ended = kStreamRemoveReasonKickedOut;
  for (int32_t index : {kStreamIndexMain, kStreamIndexScreen}) tellPublished(index, 0, ended);
  known_ = false;
  capturing_ = 0;
  room_.events->onUserLeave(user_.uid().c_str(), reason);
}

void UserEvents::tellCapturing() {
  const int32_t now = user_.state().capturing;
  const int32_t changed = std::exchange(capturing_, now) ^ now;
  IRTCVideoEventHandler& events = *room_.engine.events;
  const char* room = room_.room_id.c_str();
  const char* uid = user_.uid().c_str();
  if ((changed & kMediaStreamVideo) != 0) {
    (now & kMediaStreamVideo) != 0 ? events.onUserStartVideoCapture(room, uid)
                                   : events.onUserStopVideoCapture(room, uid);
  }
  if ((changed & kMediaStreamAudio) != 0) {
    (now & kMediaStreamAudio) != 0 ? events.onUserStartAudioCapture(room, uid)
                                   : events.onUserStopAudioCapture(room, uid);
  }
}

void UserEvents::tellPublished(int32_t stream_index, int32_t media, StreamRemoveReason reason) {
  const int32_t told = std::exchange(published_[static_cast<size_t>(stream_index)], media);
  const int32_t begun = media & ~told;
  const int32_t ended = told & ~media;
  const bool is_screen = stream_index == kStreamIndexScreen;
  IRTCRoomEventHandler& events = *room_.events;
  const char* uid = user_.uid().c_str();
  if (begun != 0) is_screen ? events.onUserPublishScreen(uid, begun) : events.onUserPublishStream(uid, begun);
  if (ended == 0) return;
  if (is_screen) return events.onUserUnpublishScreen(uid, ended, reason);
  events.onUserUnpublishStream(uid, ended, reason);
}

}  // namespace corvane::rtc
