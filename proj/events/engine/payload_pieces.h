// Records that several engine events carry: their owned copies, and their keys in JavaScript.
#pragma once

#include <string>
#include <utility>

#include "corvane_rtc/common.h"
#include "corvane_rtc/stream_events.h"
#include "events/event_record.h"

namespace corvane {

/// Names one remote stream.
struct OwnedStreamKey {
  explicit OwnedStreamKey(const rtc::StreamKey& key)
      : room_id(owned(key.room_id)), user_id(owned(key.user_id)), stream_index(key.stream_index) {}

  std::string room_id;
  std::string user_id;
  int32_t stream_index;
};

// Which of its three orders a stream key has differs from event to event, and applications may rely on it.

inline void putRoomUserIndex(Payload& payload, const char* name, const OwnedStreamKey& key) {
  payload.object(name, [&](Payload& object) {
    object.put("room_id", key.room_id);
    object.put("user_id", key.user_id);
    object.put("stream_index", key.stream_index);
  });
}

inline void putRoomIndexUser(Payload& payload, const char* name, const OwnedStreamKey& key) {
  payload.object(name, [&](Payload& object) {
    object.put("room_id", key.room_id);
    object.put("stream_index", key.stream_index);
    object.put("user_id", key.user_id);
  });
}

inline void putUserRoomIndex(Payload& payload, const char* name, const OwnedStreamKey& key) {
  payload.object(name, [&](Payload& object) {
    object.put("user_id", key.user_id);
    object.put("room_id", key.room_id);
    object.put("stream_index", key.stream_index);
  });
}

inline void putFrameInfo(Payload& payload, const rtc::VideoFrameInfo& info) {
  payload.object("info", [&](Payload& object) {
    object.put("width", info.width);
    object.put("height", info.height);
    object.put("rotation", info.rotation);
  });
}

/// A user as named in reports of first frames.
struct OwnedUser {
  explicit OwnedUser(const rtc::RtcUser& user) : user_id(owned(user.user_id)), meta_data(owned(user.meta_data)) {}

  std::string user_id;
  std::string meta_data;
};

inline void putUser(Payload& payload, const OwnedUser& user) {
  payload.object("user", [&](Payload& object) {
    object.put("user_id", user.user_id);
    object.put("meta_data", user.meta_data);
  });
}

}  // namespace corvane
