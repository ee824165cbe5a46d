#include "objects/rooms.h"

#include "core/graveyard.h"

namespace corvane::scripted {

Rooms& Rooms::instance() {
  static auto* rooms = new Rooms;
  return *rooms;
}

Room* Rooms::make(const std::string& room_id) {
  const std::lock_guard lock(mutex_);
  const auto [entry, is_new] = living_.try_emplace(room_id);
  if (!is_new) {
    return nullptr;
  }
  entry->second = std::make_shared<Room>(room_id);
  return entry->second.get();
}

void Rooms::forget(const Room& room) {
  const std::lock_guard lock(mutex_);
  const auto found = living_.find(room.id());
  if (found != living_.end() && found->second.get() == &room) {
    Graveyard::instance().take(std::move(found->second));
    living_.erase(found);
  }
}

void Rooms::outliveEngine() {
  const std::lock_guard lock(mutex_);
  for (const auto& [id, room] : living_) {
    room->outliveEngine();
  }
}

}  // namespace corvane::scripted
