// What the first connection of a process would wait for, done ahead of it.
#pragma once

#include <atomic>
#include <thread>

namespace corvane::rtc {

/// Engine thread only.
class HeadStart {
 public:
  HeadStart() = default;
  /// Does not wait for more than the step that is being done.
  ~HeadStart();
  HeadStart(const HeadStart&) = delete;
  HeadStart& operator=(const HeadStart&) = delete;

  /// On a thread of its own, once in a process.
  void begin();

 private:
  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

}  // namespace corvane::rtc
