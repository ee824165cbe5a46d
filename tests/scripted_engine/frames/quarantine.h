// Where released frames stay for a while, so that touching one is counted instead of being undefined.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>

namespace corvane::scripted {

class ScriptedVideoFrame;

class Quarantine {
 public:
  static Quarantine& instance();

  /// Frees the oldest frames beyond the bounds.
  void take(std::unique_ptr<ScriptedVideoFrame> frame);

 private:
  static constexpr size_t kMaxFrames = 256;
  static constexpr size_t kMaxBytes = size_t{64} << 20U;

  std::mutex mutex_;
  std::deque<std::unique_ptr<ScriptedVideoFrame>> frames_;
  size_t bytes_ = 0;
};

}  // namespace corvane::scripted
