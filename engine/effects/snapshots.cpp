#include "effects/snapshots.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <limits>
#include <utility>

#include "core/engine_thread.h"
#include "media/buffer_frame.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::seconds kPatience(5);

}  // namespace

class Snapshots::Stream {
 public:
  explicit Stream(int32_t stream_index) : index_(stream_index) {}
  Stream(std::string room, std::string user, int32_t stream_index)
      : room_(std::move(room)), user_(std::move(user)), index_(stream_index) {}

  void answer(const Task& task, IVideoFrame* image, int32_t error) const {
    if (room_.empty()) return task.callback->onTakeLocalSnapshotResult(task.id, index_, image, error);
    task.callback->onTakeRemoteSnapshotResult(task.id, {room_.c_str(), user_.c_str(), index_}, image, error);
  }

  std::atomic<bool> wanted = false;  // whether there are tasks that wait

 private:
  const std::string room_;  // "" for a local stream
  const std::string user_;
  const int32_t index_;
};

Snapshots::Snapshots()
    : local_{std::make_shared<Stream>(kStreamIndexMain), std::make_shared<Stream>(kStreamIndexScreen)} {}

Snapshots::~Snapshots() {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  thread_.join();
}

int32_t Snapshots::take(int32_t stream_index, ISnapshotResultCallback* callback) {
  if (callback == nullptr || (stream_index != kStreamIndexMain && stream_index != kStreamIndexScreen)) {
    return kInvalidParameter;
  }
  return add(local_[static_cast<size_t>(stream_index)], callback);
}

int32_t Snapshots::takeRemote(const StreamKey& key, ISnapshotResultCallback* callback) {
  if (callback == nullptr) return kInvalidParameter;
  return add(remoteStream(key.room_id, key.user_id, key.stream_index), callback);
}

std::shared_ptr<Snapshots::Stream> Snapshots::remoteStream(const std::string& room, const std::string& user,
                                                           int32_t stream_index) {
  const std::lock_guard lock(mutex_);
  std::erase_if(remote_, [](const auto& entry) { return entry.second.expired(); });
  std::weak_ptr<Stream>& known = remote_[{room, user, stream_index}];
  std::shared_ptr<Stream> stream = known.lock();
  if (stream == nullptr) known = stream = std::make_shared<Stream>(room, user, stream_index);
  return stream;
}

int32_t Snapshots::add(std::shared_ptr<Stream> stream, ISnapshotResultCallback* callback) {
  int32_t id = 0;
  {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
    last_id_ = last_id_ < std::numeric_limits<int32_t>::max() ? last_id_ + 1 : 1;
    id = last_id_;
    stream->wanted = true;
    waiting_.push_back({id, std::move(stream), callback, Clock::now() + kPatience});
  }
  changed_.notify_all();  // there may be an earlier deadline
  return id;
}

void Snapshots::offer(Stream& stream, const Picture& picture) {
  if (!stream.wanted.load(std::memory_order_relaxed)) return;
  {
    const std::lock_guard lock(mutex_);
    // One picture at a time: an application that asks faster than it takes gets later ones.
    if (shot_) return;
    const auto first = std::stable_partition(waiting_.begin(), waiting_.end(),
                                             [&stream](const Task& task) { return task.stream.get() != &stream; });
    stream.wanted = false;
    if (first == waiting_.end()) return;
    shot_ = Shot{
        {GstPtr<GstBuffer>(gst_buffer_ref(picture.buffer.get())), picture.info, picture.timestamp_us, picture.rotation},
        {first, waiting_.end()}};
    waiting_.erase(first, waiting_.end());
  }
  changed_.notify_all();
}

void Snapshots::run(const std::stop_token& stop) {
  nameThread("snapshots");
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    const auto ready = [this] { return shot_.has_value(); };
    if (waiting_.empty()) {
      changed_.wait(lock, stop, [&] { return ready() || !waiting_.empty(); });
    } else {
      // Tasks are in the order of their deadlines. They move in memory as more come.
      const auto deadline = waiting_.front().deadline;
      changed_.wait_until(lock, stop, deadline, ready);
    }
    std::vector<Task> expired = takeExpired();
    std::optional<Shot> shot = std::exchange(shot_, std::nullopt);
    lock.unlock();
    if (shot) answer(*shot);
    refuse(expired);
    lock.lock();
  }
  std::vector<Task> left = std::exchange(waiting_, {});
  if (shot_) left.insert(left.begin(), shot_->tasks.begin(), shot_->tasks.end());
  shot_.reset();
  lock.unlock();
  refuse(left);
}

std::vector<Snapshots::Task> Snapshots::takeExpired() {
  const auto now = Clock::now();
  const auto end =
      std::find_if(waiting_.begin(), waiting_.end(), [now](const Task& task) { return task.deadline > now; });
  std::vector<Task> expired(waiting_.begin(), end);
  waiting_.erase(waiting_.begin(), end);
  return expired;
}

void Snapshots::answer(Shot& shot) {
  Picture& taken = shot.picture;
  // An image says nothing of how to turn it.
  const bool upright = taken.rotation == 0 || shaper_.turn(taken, taken.rotation, false);
  GstPtr<GstBuffer> image;
  if (upright) image = converter_.convert(taken.buffer.get(), taken.info, gstFormat(kVideoPixelFormatARGB));
  IVideoFrame* frame = nullptr;
  if (image != nullptr) frame = BufferFrame::make(image.get(), converter_.outInfo(), taken.timestamp_us, 0, {});
  for (const Task& task : shot.tasks) task.stream->answer(task, frame, frame != nullptr ? kSuccess : kMediaFailure);
  if (frame != nullptr) frame->release();
}

void Snapshots::refuse(const std::vector<Task>& tasks) {
  for (const Task& task : tasks) task.stream->answer(task, nullptr, kWrongState);
}

}  // namespace corvane::rtc
