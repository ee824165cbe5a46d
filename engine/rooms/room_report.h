// What a room tells of its streams and its network, every two seconds.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/processor_load.h"
#include "corvane_rtc/room_statistics.h"
#include "rooms/connection_stats.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

class LocalStream;
class RemoteUser;

/// Engine thread only.
class RoomReport {
 public:
  /// Of whom the report is. They live as long as the report.
  class Subject {
   public:
    virtual std::array<LocalStream, 2>& localStreams() = 0;
    /// Those in the room.
    virtual std::vector<RemoteUser*> remoteUsers() = 0;

   protected:
    ~Subject() = default;
  };

  RoomReport(RoomContext& room, Subject& subject);

  void start();
  void stop();
  /// After stop(): the same stay goes on.
  void resume();
  /// Since start().
  RoomStats total() const;

 private:
  void ask();
  void tell();
  std::vector<LocalStreamStats> takeLocal(int32_t interval, RoomStats& stats);
  std::vector<RemoteStreamStats> takeRemote(int32_t interval, RoomStats& stats,
                                            std::vector<NetworkQualityStats>& qualities);

  RoomContext& room_;
  Subject& subject_;
  ProcessorMeter processors_;
  RoomStats last_ = {};
  int64_t sent_bytes_ = 0;
  int64_t received_bytes_ = 0;
  std::chrono::steady_clock::time_point started_;
  std::chrono::steady_clock::time_point told_;
  AttachedSource timer_;
};

/// How well media can flow with this loss (0 to 1) and round trip (milliseconds).
int32_t networkQuality(double loss, int32_t rtt_ms);

/// VideoCodecType of a codec by the name that services use.
int32_t videoCodecType(std::string_view codec);

/// Share of packets that were lost, 0 to 1.
double lossRate(int64_t lost, int64_t arrived);

/// kbit/s
int32_t bitrate(int64_t bytes, int32_t interval_ms);

}  // namespace corvane::rtc
