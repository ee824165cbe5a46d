#include "rooms/remote_user.h"

#include <utility>

#include "core/json.h"
#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kRetryPause(500);

}  // namespace

RemoteUser::RemoteUser(RoomContext& room, std::string uid, int32_t wanted)
    : room_(room),
      uid_(std::move(uid)),
      sink_(room.sinks.find(room.room_id, uid_, kStreamIndexMain)),
      wanted_(wanted) {}

RemoteUser::~RemoteUser() {
  feed_.reset();
}

int32_t RemoteUser::available() const {
  int32_t sent = 0;
  for (const FeedStream& stream : streams_) sent |= stream.is_video ? kMediaStreamVideo : kMediaStreamAudio;
  return state_.visible ? state_.published & sent : 0;
}

StreamKey RemoteUser::key() const {
  return {room_.room_id.c_str(), uid_.c_str(), kStreamIndexMain};
}

void RemoteUser::update(RoomSession* session, bool loopback_only) {
  session_ = session;
  loopback_only_ = loopback_only;
  const int32_t media = wanted_ & available();
  if (session_ == nullptr || media == 0) return closeFeed(kRemoteVideoStateReasonRemoteMuted);
  if (feed_ != nullptr && feed_->streams() != streams_) closeFeed(kRemoteVideoStateReasonInternal);
  if (feed_ == nullptr) {
    retry_.reset();
    opening_ = std::make_shared<char>();
    seen_size_ = {};
    feed_ = std::make_unique<RemoteFeed>(room_.engine, *session_, uid_, streams_, loopback_only_, *this, *this);
    feed_->start();
  }
  feed_->setWanted(media & ~paused_);
}

void RemoteUser::suspend() {
  present_ = false;
  streams_.clear();
  session_ = nullptr;
  closeFeed(kRemoteVideoStateReasonInternal);
}

void RemoteUser::closeFeed(RemoteVideoStateChangeReason reason) {
  retry_.reset();
  if (feed_ == nullptr) return;
  feed_.reset();
  opening_.reset();  // read by the feed's thread until it has ended
  reported_size_ = {};
  if (std::exchange(decoding_, false)) {
    room_.engine.events->onRemoteVideoStateChanged(key(), kRemoteVideoStateStopped, reason);
  }
}

void RemoteUser::reportSubscribed(SubscribeState state) {
  const int32_t media = wanted_ & available();
  SubscribeConfig info = {};
  info.sub_video = (media & kMediaStreamVideo) != 0;
  info.sub_audio = (media & kMediaStreamAudio) != 0;
  info.sub_video_index = info.sub_video ? 0 : -1;
  room_.events->onStreamSubscribed(state, uid_.c_str(), info);
}

void RemoteUser::onPeerConnected() {
  reportSubscribed(kSubscribeStateSuccess);
}

void RemoteUser::onPeerFailed(const std::string& reason) {
  room_.engine.log.warning("room %s: the feed of %s failed: %s", room_.room_id.c_str(), uid_.c_str(), reason.c_str());
  closeFeed(kRemoteVideoStateReasonInternal);
  retry_ = room_.engine.thread.after(kRetryPause, [this] { update(session_, loopback_only_); });
  reportSubscribed(kSubscribeStateFailed);
}

void RemoteUser::onRemotePicture(const Picture& picture) {
  const Size size = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info)};
  const bool shown = sink_->attached();
  if (size != seen_size_) {
    seen_size_ = size;
    room_.engine.thread.post(opening_, [this, size, shown] { onSize(size, shown); });
  }
  sink_->deliver(picture);
}

void RemoteUser::onSize(Size size, bool shown) {
  const VideoFrameInfo info = {size.width, size.height, 0};
  const Size previous = std::exchange(reported_size_, size);
  IRTCVideoEventHandler& events = *room_.engine.events;
  if (!std::exchange(decoding_, true)) {
    events.onRemoteVideoStateChanged(key(), kRemoteVideoStateDecoding, kRemoteVideoStateReasonInternal);
    events.onFirstRemoteVideoFrameDecoded(key(), info);
    if (shown) events.onFirstRemoteVideoFrameRendered(key(), info);
  } else if (size != previous) {
    events.onRemoteVideoSizeChanged(key(), info);
  }
}

}  // namespace corvane::rtc
