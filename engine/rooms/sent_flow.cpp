#include "rooms/sent_flow.h"

#include <utility>

#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

namespace {

using SendEvent = void (IRTCVideoEventHandler::*)(const char*, const RtcUser&, int32_t);

// By StreamIndex, then sound and video.
constexpr SendEvent kSendEvents[2][2] = {
    {&IRTCVideoEventHandler::onAudioFrameSendStateChanged, &IRTCVideoEventHandler::onVideoFrameSendStateChanged},
    {&IRTCVideoEventHandler::onScreenAudioFrameSendStateChanged,
     &IRTCVideoEventHandler::onScreenVideoFrameSendStateChanged},
};

}  // namespace

void SentFlow::set(bool wanted, int64_t bytes) {
  if (wanted == wanted_) return;
  wanted_ = wanted;
  if (wanted) {
    waiting_ = true;
    unsent_bytes_ = bytes;
    report(kFirstFrameSendStateSending);
  } else if (std::exchange(waiting_, false)) {
    report(kFirstFrameSendStateEnd);
  }
}

void SentFlow::check(int64_t bytes) {
  if (!waiting_ || bytes <= unsent_bytes_) return;
  waiting_ = false;
  report(kFirstFrameSendStateSent);
}

void SentFlow::report(FirstFrameSendState state) {
  const SendEvent event = kSendEvents[stream_index_][is_video_ ? 1 : 0];
  const RtcUser user = {room_.user_id.c_str(), room_.user_extra_info.c_str()};
  (room_.engine.events->*event)(room_.room_id.c_str(), user, state);
}

}  // namespace corvane::rtc
