// What is told of one medium of a remote stream: whether it comes, why it does not, and its first frame.
#pragma once

#include <cstdint>
#include <string>

#include "corvane_rtc/stream_events.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only.
class RemoteFlow {
 public:
  /// What the two media have alike: RemoteAudioStateChangeReason and RemoteVideoStateChangeReason.
  using Reason = RemoteVideoStateChangeReason;

  /// `key` stands for as long as the flow.
  RemoteFlow(RoomContext& room, StreamKey key, bool is_video) : room_(room), key_(key), is_video_(is_video) {}

  /// The extra information of the user.
  void setMetaData(const std::string& text) { meta_data_ = text; }

  /// It is expected. False when it was already.
  bool begin();
  void onFrame();
  /// A frame has been given to whoever shows or plays it.
  void onPlayed();
  void end(Reason reason);
  /// Frames fail to come, or come again.
  void setFrozen(bool frozen);

  bool comes() const { return state_ == State::kComing || state_ == State::kFrozen; }

 private:
  enum class State { kOff, kAwaited, kComing, kFrozen };

  void report(RemoteVideoState state, Reason reason);
  void reportPlay(FirstFramePlayState state);

  RoomContext& room_;
  const StreamKey key_;
  const bool is_video_;
  std::string meta_data_;
  State state_ = State::kOff;
  bool played_ = false;
  Reason ended_by_ = kRemoteVideoStateReasonInternal;
};

}  // namespace corvane::rtc
