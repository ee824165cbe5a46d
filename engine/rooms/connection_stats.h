// The counters of one peer connection, out of what GStreamer tells of it.
#pragma once

#include <gst/gst.h>

#include <cstdint>

namespace corvane::rtc {

/// Since the connection was made, but for the last three, which are as they are now.
struct MediumStats {
  int64_t packets = 0;
  int64_t bytes = 0;
  int64_t lost = 0;          ///< packets; of what is sent, as the other side reports it
  double fraction_lost = 0;  ///< 0 to 1, of what is sent, since the other side's report before
  int32_t rtt_ms = 0;        ///< 0 while it is not known
  int32_t jitter_ms = 0;
};

struct ConnectionStats {
  MediumStats sent_sound;
  MediumStats sent_video;
  MediumStats received_sound;
  MediumStats received_video;
};

/// `report`: the answer to webrtcbin's "get-stats", or null.
ConnectionStats readConnectionStats(const GstStructure* report);

}  // namespace corvane::rtc
