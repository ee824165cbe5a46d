// Single pictures of the local streams, asked for one by one.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

#include "corvane_rtc/snapshot.h"
#include "effects/picture_shaper.h"
#include "media/frame_converter.h"
#include "media/picture.h"

namespace corvane::rtc {

/// Pictures are turned into ARGB and handed to the application on a thread of its own, which starts with the first
/// task: what the application does with them, such as compressing them, holds up no stream.
class Snapshots {
 public:
  Snapshots() = default;
  /// Answers the tasks that are left.
  ~Snapshots();
  Snapshots(const Snapshots&) = delete;
  Snapshots& operator=(const Snapshots&) = delete;

  /// The number of the task, which the stream's next picture answers, or a ReturnStatus. Without a picture for five
  /// seconds the answer is kWrongState. Any thread.
  int32_t take(int32_t stream_index, ISnapshotResultCallback* callback);

  /// Each picture of a stream, as its sink is given it; next to nothing where none is asked for. One thread at a time
  /// for each stream.
  void offer(int32_t stream_index, const Picture& picture);

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr size_t kStreams = 2;

  struct Task {
    int32_t id;
    int32_t stream_index;
    ISnapshotResultCallback* callback;
    Clock::time_point deadline;
  };

  // A picture and the tasks that it answers.
  struct Shot {
    Picture picture;
    std::vector<Task> tasks;
  };

  void run(const std::stop_token& stop);
  std::vector<Task> takeExpired();
  void answer(Shot& shot);
  static void refuse(const std::vector<Task>& tasks);

  std::array<std::atomic<bool>, kStreams> wanted_ = {};  // whether a stream has tasks that wait
  PictureShaper shaper_;                                 // the thread's, as is:
  FrameConverter converter_;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<Task> waiting_;
  std::optional<Shot> shot_;
  int32_t last_id_ = 0;
  std::jthread thread_;
};

}  // namespace corvane::rtc
