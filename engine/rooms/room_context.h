// What the parts of one room share.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "core/engine_context.h"
#include "corvane_rtc/rtc_room_events.h"
#include "effects/snapshots.h"
#include "media/local_media.h"
#include "media/remote_sinks.h"
#include "playback/remote_sounds.h"

namespace corvane::rtc {

/// Engine thread only.
struct RoomContext {
  EngineContext& engine;
  LocalMedia& camera_media;  ///< and the microphone's
  LocalMedia& screen_media;
  RemoteSinks& sinks;
  Snapshots& snapshots;
  RemoteSounds& sounds;
  const std::string room_id;
  std::string user_id;           ///< of the stay; "" before the first
  std::string user_extra_info;   ///< likewise
  IRTCRoomEventHandler* events;  ///< the application's, or one that does nothing
};

/// Media are bit masks of MediaStreamType.
inline bool isMedia(int32_t media) {
  return media >= kMediaStreamAudio && media <= kMediaStreamBoth;
}

inline int32_t millisecondsSince(std::chrono::steady_clock::time_point start) {
  return static_cast<int32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count());
}

}  // namespace corvane::rtc
