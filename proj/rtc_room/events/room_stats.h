// The room statistics as two events carry them.
#pragma once

#include "corvane_rtc/room_statistics.h"
#include "events/payload.h"

namespace corvane {

inline void putRoomStats(Payload& payload, const rtc::RoomStats& stats) {
  payload.put("tx_lostrate", stats.tx_lostrate);
  payload.put("rx_lostrate", stats.rx_lostrate);
  payload.put("rtt", stats.rtt);
  payload.put("duration", stats.duration);
  payload.put("tx_bytes", stats.tx_bytes);
  payload.put("rx_bytes", stats.rx_bytes);
  payload.put("tx_kbitrate", stats.tx_kbitrate);
  payload.put("rx_kbitrate", stats.rx_kbitrate);
  payload.put("rx_audio_kbitrate", stats.rx_audio_kbitrate);
  payload.put("tx_audio_kbitrate", stats.tx_audio_kbitrate);
  payload.put("rx_video_kbitrate", stats.rx_video_kbitrate);
  payload.put("tx_video_kbitrate", stats.tx_video_kbitrate);
  payload.put("rx_screen_kbitrate", stats.rx_screen_kbitrate);
  payload.put("tx_screen_kbitrate", stats.tx_screen_kbitrate);
  payload.put("user_count", stats.user_count);
  payload.put("cpu_app_usage", stats.cpu_app_usage);
  payload.put("cpu_total_usage", stats.cpu_total_usage);
  payload.put("tx_jitter", stats.tx_jitter);
  payload.put("rx_jitter", stats.rx_jitter);
  payload.put("tx_cellular_kbitrate", stats.tx_cellular_kbitrate);
  payload.put("rx_cellular_kbitrate", stats.rx_cellular_kbitrate);
}

}  // namespace corvane
