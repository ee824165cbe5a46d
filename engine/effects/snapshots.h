// Single pictures of local and remote streams, asked for one by one.
#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <tuple>
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
  Snapshots();
  /// Answers the tasks that are left.
  ~Snapshots();
  Snapshots(const Snapshots&) = delete;
  Snapshots& operator=(const Snapshots&) = delete;

  /// One stream, from before it comes until after it went.
  class Stream;

  // The number of the task, which the stream's next picture answers, or a ReturnStatus. Without a picture for five
  // seconds the answer is kWrongState. Any thread.

  int32_t take(int32_t stream_index, ISnapshotResultCallback* callback);
  /// The key is one that a stream can have.
  int32_t takeRemote(const StreamKey& key, ISnapshotResultCallback* callback);

  /// To offer pictures for. Any thread.
  std::shared_ptr<Stream> remoteStream(const std::string& room, const std::string& user, int32_t stream_index);

  // Each picture of a stream, as its sink is given it; next to nothing where none is asked for. One thread at a time
  // for each stream.

  void offer(int32_t stream_index, const Picture& picture) {
    offer(*local_[static_cast<size_t>(stream_index)], picture);
  }
  void offer(Stream& stream, const Picture& picture);

 private:
  using Clock = std::chrono::steady_clock;
  struct Task {
    int32_t id;
    std::shared_ptr<Stream> stream;
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
  int32_t add(std::shared_ptr<Stream> stream, ISnapshotResultCallback* callback);

  const std::array<std::shared_ptr<Stream>, 2> local_;  // by StreamIndex
  PictureShaper shaper_;                                // the thread's, as is:
  FrameConverter converter_;

  std::mutex mutex_;
  std::map<std::tuple<std::string, std::string, int32_t>, std::weak_ptr<Stream>> remote_;
  std::condition_variable_any changed_;
  std::vector<Task> waiting_;
  std::optional<Shot> shot_;
  int32_t last_id_ = 0;
  std::jthread thread_;
};

}  // namespace corvane::rtc
