// Objects that were handed out and have ended. They stay for a while, so that a call on one is counted instead of being
// undefined.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>

namespace corvane::scripted {

class Graveyard {
 public:
  static Graveyard& instance();

  /// Frees the oldest beyond a bound.
  void take(std::shared_ptr<void> object);

 private:
  static constexpr size_t kMaxObjects = 4096;

  std::mutex mutex_;
  std::deque<std::shared_ptr<void>> objects_;
};

/// Objects that a caller must give back: collections and parameter objects.
struct ReleasableStatistics {
  std::atomic<int64_t> made{0};
  std::atomic<int64_t> released{0};
  std::atomic<int64_t> released_twice{0};

  static ReleasableStatistics& instance() {
    static ReleasableStatistics statistics;
    return statistics;
  }
  /// Objects that are out stay accounted for.
  void clear() {
    made = made - released;
    released = 0;
    released_twice = 0;
  }
};

}  // namespace corvane::scripted
