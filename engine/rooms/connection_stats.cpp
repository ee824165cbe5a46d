#include "rooms/connection_stats.h"

#include <gst/webrtc/webrtc.h>

#include <algorithm>
#include <cmath>

namespace corvane::rtc {

namespace {

constexpr double kVideoClock = 90000;
constexpr double kMillisecondsASecond = 1000;

// Whatever kind of number it is; 0 when there is none.
double numberIn(const GstStructure* entry, const char* field) {
  const GValue* value = gst_structure_get_value(entry, field);
  if (value == nullptr) return 0;
  GValue number = G_VALUE_INIT;
  g_value_init(&number, G_TYPE_DOUBLE);
  return g_value_transform(value, &number) ? g_value_get_double(&number) : 0;
}

const GstStructure* entryOf(const GstStructure* report, const char* name) {
  const GValue* value = name != nullptr ? gst_structure_get_value(report, name) : nullptr;
  return value != nullptr && GST_VALUE_HOLDS_STRUCTURE(value) ? gst_value_get_structure(value) : nullptr;
}

// Where several media share a connection, GStreamer names the same codec for all of them; the source's clock is its
// own.
bool isVideo(const GstStructure* report, const GstStructure* entry) {
  const GstStructure* local = entryOf(report, gst_structure_get_string(entry, "local-id"));
  const GstStructure* source = entryOf(local != nullptr ? local : entry, "gst-rtpsource-stats");
  return source != nullptr && numberIn(source, "clock-rate") == kVideoClock;
}

// Rounded up: a round trip on one machine takes less than a millisecond, and 0 says that it is not known.
int32_t milliseconds(double seconds) {
  return static_cast<int32_t>(std::ceil(std::max(seconds, 0.0) * kMillisecondsASecond));
}

struct Reading {
  const GstStructure* report;
  ConnectionStats stats;
};

void add(Reading& reading, const GstStructure* entry) {
  GstWebRTCStatsType type = GST_WEBRTC_STATS_CODEC;
  if (!gst_structure_get(entry, "type", GST_TYPE_WEBRTC_STATS_TYPE, &type, nullptr)) return;
  const bool is_video = isVideo(reading.report, entry);
  ConnectionStats& stats = reading.stats;
  MediumStats& sent = is_video ? stats.sent_video : stats.sent_sound;
  MediumStats& received = is_video ? stats.received_video : stats.received_sound;
  if (type == GST_WEBRTC_STATS_OUTBOUND_RTP) {
    sent.packets += static_cast<int64_t>(numberIn(entry, "packets-sent"));
    sent.bytes += static_cast<int64_t>(numberIn(entry, "bytes-sent"));
  } else if (type == GST_WEBRTC_STATS_INBOUND_RTP) {
    received.packets += static_cast<int64_t>(numberIn(entry, "packets-received"));
    received.bytes += static_cast<int64_t>(numberIn(entry, "bytes-received"));
    received.lost += std::max<int64_t>(static_cast<int64_t>(numberIn(entry, "packets-lost")), 0);
    received.jitter_ms = std::max(received.jitter_ms, milliseconds(numberIn(entry, "jitter")));
  } else if (type == GST_WEBRTC_STATS_REMOTE_INBOUND_RTP) {
    sent.lost += std::max<int64_t>(static_cast<int64_t>(numberIn(entry, "packets-lost")), 0);
    sent.fraction_lost = std::max(sent.fraction_lost, numberIn(entry, "fraction-lost"));
    sent.rtt_ms = std::max(sent.rtt_ms, milliseconds(numberIn(entry, "round-trip-time")));
    sent.jitter_ms = std::max(sent.jitter_ms, milliseconds(numberIn(entry, "jitter")));
  }
}

}  // namespace

ConnectionStats readConnectionStats(const GstStructure* report) {
  Reading reading = {report, {}};
  if (report == nullptr) return reading.stats;
  gst_structure_foreach(
      report,
      [](GQuark, const GValue* value, gpointer data) -> gboolean {
        if (GST_VALUE_HOLDS_STRUCTURE(value)) add(*static_cast<Reading*>(data), gst_value_get_structure(value));
        return TRUE;
      },
      &reading);
  return reading.stats;
}

}  // namespace corvane::rtc
