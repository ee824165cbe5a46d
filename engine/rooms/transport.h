// How the parts of webrtcbin that carry packets are set up: what is asked for again, how soon, and how long it is
// waited for.
#pragma once

#include <gst/gst.h>

#include <cstdint>
#include <functional>
#include <span>

#include "rooms/sdp_text.h"

namespace corvane::rtc {

struct TransportSetup {
  uint32_t reporter = g_random_int() | 1;  ///< the source that reports come from
  /// Called on threads of webrtcbin's, when a receiver cannot go on without a key frame. May be null.
  std::function<void()> ask_for_key_frame;
  RepeatingSources repeating;  ///< of all that is sent, where webrtcbin knows of less
};

/// To be called before anything is added to a webrtcbin. `setup` may be changed until it starts, and must outlive it.
void setUpTransport(GstElement* webrtc, const TransportSetup& setup);

/// Adds a millisecond to the round trip that follows from the first of the report blocks in `packets`, of RTCP.
void lengthenRoundTrip(std::span<uint8_t> packets);

}  // namespace corvane::rtc
