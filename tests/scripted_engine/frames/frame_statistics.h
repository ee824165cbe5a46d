// What has become of all frames. Tests end with every frame accounted for.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/value.h"

namespace corvane::scripted {

struct FrameStatistics {
  using Count = std::atomic<int64_t>;

  // Frames handed over to the module: it releases each exactly once.
  Count given{0};
  Count accepted{0};  ///< onFrame() answered true
  Count refused{0};   ///< onFrame() answered false
  Count given_released{0};

  /// Frames valid during a callback only: processors, snapshots, raw audio.
  Count lent{0};

  // Frames built for the module.
  Count built{0};
  Count built_released{0};

  // What must never happen.
  Count released_twice{0};
  Count lent_released{0};
  Count touched_after_release{0};

  static FrameStatistics& instance() {
    static FrameStatistics statistics;
    return statistics;
  }

  Value toValue() const;
  void clear();
};

}  // namespace corvane::scripted
