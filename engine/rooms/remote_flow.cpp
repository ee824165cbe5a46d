#include "rooms/remote_flow.h"

#include <utility>

#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

namespace {

using PlayEvent = void (IRTCVideoEventHandler::*)(const char*, const RtcUser&, int32_t);

// By StreamIndex, then sound and video.
constexpr PlayEvent kPlayEvents[2][2] = {
    {&IRTCVideoEventHandler::onAudioFramePlayStateChanged, &IRTCVideoEventHandler::onVideoFramePlayStateChanged},
    {&IRTCVideoEventHandler::onScreenAudioFramePlayStateChanged,
     &IRTCVideoEventHandler::onScreenVideoFramePlayStateChanged},
};

RemoteFlow::Reason oppositeOf(RemoteFlow::Reason reason) {
  if (reason == kRemoteVideoStateReasonLocalMuted) return kRemoteVideoStateReasonLocalUnmuted;
  if (reason == kRemoteVideoStateReasonRemoteMuted) return kRemoteVideoStateReasonRemoteUnmuted;
  return kRemoteVideoStateReasonInternal;
}

}  // namespace

bool RemoteFlow::begin() {
  if (state_ != State::kOff) return false;
  state_ = State::kAwaited;
  played_ = false;
  reportPlay(kFirstFramePlayStatePlaying);
  return true;
}

void RemoteFlow::onFrame() {
  if (state_ != State::kAwaited) return;
  state_ = State::kComing;
  report(kRemoteVideoStateDecoding, oppositeOf(std::exchange(ended_by_, kRemoteVideoStateReasonInternal)));
}

void RemoteFlow::onPlayed() {
  if (state_ != State::kOff && !std::exchange(played_, true)) reportPlay(kFirstFramePlayStatePlayed);
}

void RemoteFlow::end(Reason reason) {
  if (state_ == State::kOff) return;
  const bool came = comes();
  state_ = State::kOff;
  if (came) {
    ended_by_ = reason;
    report(kRemoteVideoStateStopped, reason);
  }
  if (!played_) reportPlay(kFirstFramePlayStateEnd);
}

void RemoteFlow::setFrozen(bool frozen) {
  if (!comes() || frozen == (state_ == State::kFrozen)) return;
  state_ = frozen ? State::kFrozen : State::kComing;
  report(frozen ? kRemoteVideoStateFrozen : kRemoteVideoStateDecoding,
         frozen ? kRemoteVideoStateReasonNetworkCongestion : kRemoteVideoStateReasonNetworkRecovery);
}

void RemoteFlow::report(RemoteVideoState state, Reason reason) {
  if (is_video_) return room_.engine.events->onRemoteVideoStateChanged(key_, state, reason);
  room_.engine.events->onRemoteAudioStateChanged(key_, state, reason);
}

void RemoteFlow::reportPlay(FirstFramePlayState state) {
  const PlayEvent event = kPlayEvents[key_.stream_index][is_video_ ? 1 : 0];
  (room_.engine.events->*event)(key_.room_id, {key_.user_id, meta_data_.c_str()}, state);
}

}  // namespace corvane::rtc
