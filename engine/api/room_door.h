// The way from a room that an application holds to the engine, which may end first.
#pragma once

#include <memory>
#include <mutex>

namespace corvane::rtc {

class RtcVideo;

/// Any thread.
class RoomDoor {
 public:
  explicit RoomDoor(RtcVideo& engine) : engine_(&engine) {}

  /// function(RtcVideo&) while the engine lives; false when it has ended. The function does not wait.
  template <class F>
  bool enter(F&& function) {
    const std::lock_guard lock(mutex_);
    if (engine_ == nullptr) return false;
    function(*engine_);
    return true;
  }

  /// By the engine, when it ends.
  void close() {
    const std::lock_guard lock(mutex_);
    engine_ = nullptr;
  }

 private:
  std::mutex mutex_;
  RtcVideo* engine_;
};

}  // namespace corvane::rtc
