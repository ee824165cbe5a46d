// The application's hooks into sound: one observer and one processor for all streams, and what of a stream they get.
#pragma once

#include <memory>
#include <mutex>
#include <utility>

#include "corvane_rtc/audio_frame.h"
#include "media/receiver_slot.h"

namespace corvane::rtc {

/// Of one engine. Any thread.
struct SoundHooks {
  ReceiverSlot<IAudioFrameObserver> observer;
  ReceiverSlot<IAudioFrameProcessor> processor;
};

/// Whether a hook gets a stream's sound, and by what path: OutgoingPath or ProcessingPath. Set on any thread, used on
/// the stream's own.
template <class Path>
class HookSwitch {
 public:
  void on(std::shared_ptr<Path> path) {
    const std::lock_guard lock(mutex_);
    path_.swap(path);
  }
  void off() { on(nullptr); }

  /// Null when it is off.
  std::shared_ptr<Path> path() const {
    const std::lock_guard lock(mutex_);
    return path_;
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<Path> path_;
};

}  // namespace corvane::rtc
