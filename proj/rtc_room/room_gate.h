// The one gate of all rooms' events. Creating a room opens it for every room, destroying one closes it for every room:
// applications know it that way.
#pragma once

#include <atomic>

namespace corvane {

/// Whether room events are posted at all. Written on the JavaScript thread, read by engine threads.
inline std::atomic<bool> roomEventsEnabled{false};

inline bool isRoomGateOpen() {
  return roomEventsEnabled.load(std::memory_order_relaxed);
}
inline void openRoomGate() {
  roomEventsEnabled.store(true, std::memory_order_relaxed);
}
inline void closeRoomGate() {
  roomEventsEnabled.store(false, std::memory_order_relaxed);
}

}  // namespace corvane
