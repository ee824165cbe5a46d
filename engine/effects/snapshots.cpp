#include "effects/snapshots.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "core/engine_thread.h"
#include "media/buffer_frame.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::seconds kPatience(5);

}  // namespace

Snapshots::~Snapshots() {
  if (!thread_.joinable()) return;
  thread_.request_stop();
  thread_.join();
}

int32_t Snapshots::take(int32_t stream_index, ISnapshotResultCallback* callback) {
  if (callback == nullptr || (stream_index != kStreamIndexMain && stream_index != kStreamIndexScreen)) {
    return kInvalidParameter;
  }
  int32_t id = 0;
  {
    const std::lock_guard lock(mutex_);
    if (!thread_.joinable()) thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
    last_id_ = last_id_ < std::numeric_limits<int32_t>::max() ? last_id_ + 1 : 1;
    id = last_id_;
    waiting_.push_back({id, stream_index, callback, Clock::now() + kPatience});
    wanted_[static_cast<size_t>(stream_index)] = true;
  }
  changed_.notify_all();  // there may be an earlier deadline
  return id;
}

void Snapshots::offer(int32_t stream_index, const Picture& picture) {
  std::atomic<bool>& wanted = wanted_[static_cast<size_t>(stream_index)];
  if (!wanted.load(std::memory_order_relaxed)) return;
  {
    const std::lock_guard lock(mutex_);
    // One picture at a time: an application that asks faster than it takes gets later ones.
    if (shot_) return;
    const auto first = std::stable_partition(waiting_.begin(), waiting_.end(), [stream_index](const Task& task) {
      return task.stream_index != stream_index;
    });
    wanted = false;
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
      // Tasks are in the order of their deadlines.
      changed_.wait_until(lock, stop, waiting_.front().deadline, ready);
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
  for (const Task& task : shot.tasks) {
    task.callback->onTakeLocalSnapshotResult(task.id, task.stream_index, frame,
                                             frame != nullptr ? kSuccess : kMediaFailure);
  }
  if (frame != nullptr) frame->release();
}

void Snapshots::refuse(const std::vector<Task>& tasks) {
  for (const Task& task : tasks) {
    task.callback->onTakeLocalSnapshotResult(task.id, task.stream_index, nullptr, kWrongState);
  }
}

}  // namespace corvane::rtc
