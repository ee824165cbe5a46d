// What the other end of a link tells of every packet: when it arrived, or that it did not.
#pragma once

#include <gst/gst.h>

#include <cstdint>
#include <mutex>
#include <optional>

#include "rooms/bitrate_control.h"

namespace corvane::rtc {

/// Any thread.
class PacketFeedback {
 public:
  /// When a packet was sent and arrived, each by a clock of its own, in nanoseconds; without the latter it was lost.
  void add(uint64_t sent, std::optional<uint64_t> arrived, uint32_t bytes);
  /// What GStreamer tells the source of packets about them.
  void add(const GstStructure* packets);
  /// Since the call before. None when nothing was told.
  std::optional<LinkFeedback> take();

 private:
  std::mutex mutex_;
  // Of the packets since take():
  int64_t lost_ = 0;
  int64_t arrived_ = 0;
  int64_t bits_ = 0;
  uint64_t last_arrival_ = 0;
  std::optional<int64_t> least_transit_;
  // Of all:
  uint64_t told_arrival_ = 0;
  std::optional<int64_t> usual_transit_;  // of a packet that waits nowhere
};

}  // namespace corvane::rtc
