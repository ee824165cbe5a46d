// All living rooms: they may outlive the engine that made them.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "objects/room.h"

namespace corvane::scripted {

class Rooms {
 public:
  static Rooms& instance();

  /// Null for an id that a living room has.
  Room* make(const std::string& room_id);
  /// A destroyed room; it stays readable for a while.
  void forget(const Room& room);
  void outliveEngine();

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Room>> living_;
};

}  // namespace corvane::scripted
