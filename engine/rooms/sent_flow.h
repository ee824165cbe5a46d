// What is told of one medium that the local user publishes: when its first frame was sent.
#pragma once

#include <cstdint>

#include "corvane_rtc/stream_events.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only.
class SentFlow {
 public:
  SentFlow(RoomContext& room, int32_t stream_index, bool is_video)
      : room_(room), stream_index_(stream_index), is_video_(is_video) {}

  /// Whether it is to be sent. `bytes`: what went into the connection so far.
  void set(bool wanted, int64_t bytes);
  /// What went into the connection before it stood has not been sent.
  void onConnected(int64_t bytes) { unsent_bytes_ = bytes; }
  void check(int64_t bytes);

 private:
  void report(FirstFrameSendState state);

  RoomContext& room_;
  const int32_t stream_index_;
  const bool is_video_;
  bool waiting_ = false;
  bool wanted_ = false;
  int64_t unsent_bytes_ = 0;
};

}  // namespace corvane::rtc
