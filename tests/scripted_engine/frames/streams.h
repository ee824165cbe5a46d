// Streams of pictures at a steady pace, pushed from threads of their own: for measurements and long runs.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "core/attachments.h"
#include "core/value.h"
#include "frames/video_frame.h"

namespace corvane::scripted {

/// The frames of one stream, used in turn.
class FramePool final : public FrameHome {
 public:
  FramePool(const VideoFrameSpec& spec, size_t first, size_t most) : spec_(spec), first_(first), most_(most) {}

  /// Makes the first frames. They refer to the pool until close().
  static void fill(const std::shared_ptr<FramePool>& pool);
  /// The frame that has rested longest; a new one while there may be more. Else null, at once or when the wait is over.
  std::unique_ptr<ScriptedVideoFrame> take(const std::shared_ptr<FramePool>& pool, std::chrono::milliseconds wait);
  void comeHome(std::unique_ptr<ScriptedVideoFrame> frame) override;
  /// Frames that are still out are freed as they come home.
  void close();

 private:
  std::unique_ptr<ScriptedVideoFrame> make(const std::shared_ptr<FramePool>& pool);

  VideoFrameSpec spec_;
  size_t first_;
  size_t most_;
  std::mutex mutex_;
  std::condition_variable back_;
  std::vector<std::unique_ptr<ScriptedVideoFrame>> resting_;
  size_t made_ = 0;
  bool closed_ = false;
};

class Streams {
 public:
  static Streams& instance();

  /// { streams: [{ sink, frame }], fps, count, buffers, maxBuffers, threads, stamp }. fps 0 pushes without a pause.
  void start(const Value& request);
  /// Ends and joins all threads. What they did stays in report().
  void stop();
  /// One object for each stream, in the order of start().
  Value report() const;
  /// No stream has frames left to push.
  bool finished() const { return busy_ == 0; }

 private:
  using Clock = std::chrono::steady_clock;

  struct Stream {
    std::string sink;
    std::shared_ptr<FramePool> pool;
    Clock::time_point due;
    int64_t index = 0;
    std::atomic<int64_t> pushed{0};
    std::atomic<int64_t> accepted{0};
    std::atomic<int64_t> refused{0};
    std::atomic<int64_t> unattached{0};
    std::atomic<int64_t> without_frame{0};
    std::atomic<int64_t> sink_cpu_ns{0};
    std::atomic<int64_t> late_ns{0};
    std::atomic<int64_t> most_late_ns{0};
    // Of pictures lent to the video processor.
    std::atomic<int64_t> old_pixels{0};
    std::atomic<int64_t> reordered{0};
    int64_t last_stamp = -1;
    std::mutex times_mutex;
    std::vector<int64_t> times_ns;
  };

  void run(size_t number, size_t threads);
  void push(Stream& stream);
  bool lend(Stream& stream, const Slot& slot, ScriptedVideoFrame& frame) const;
  bool pauseUntil(Clock::time_point due);

  mutable std::mutex mutex_;
  std::condition_variable ending_;
  bool stop_ = false;
  std::vector<std::unique_ptr<Stream>> streams_;
  std::vector<std::thread> threads_;
  std::atomic<size_t> busy_{0};
  std::chrono::nanoseconds period_{0};
  int64_t count_ = 0;
  bool stamp_ = true;
};

}  // namespace corvane::scripted
