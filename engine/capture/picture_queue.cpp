#include "capture/picture_queue.h"

#include <utility>

namespace corvane::rtc {

bool PictureQueue::pushWhenRoom(CapturedPicture picture, const std::stop_token& stop) {
  {
    std::unique_lock lock(mutex_);
    if (!changed_.wait(lock, stop, [this] { return pictures_.size() < kCapacity; })) return false;
    pictures_.push_back(std::move(picture));
  }
  changed_.notify_all();
  return true;
}

void PictureQueue::pushNewest(CapturedPicture picture) {
  CapturedPicture dropped;  // freed outside the lock
  {
    const std::lock_guard lock(mutex_);
    if (pictures_.size() >= kCapacity) {
      dropped = std::move(pictures_.front());
      pictures_.pop_front();
    }
    pictures_.push_back(std::move(picture));
  }
  changed_.notify_all();
}

std::optional<CapturedPicture> PictureQueue::pop(const std::stop_token& stop) {
  std::optional<CapturedPicture> picture;
  {
    std::unique_lock lock(mutex_);
    if (!changed_.wait(lock, stop, [this] { return !pictures_.empty(); })) return picture;
    picture = std::move(pictures_.front());
    pictures_.pop_front();
  }
  changed_.notify_all();
  return picture;
}

void PictureQueue::clear() {
  std::deque<CapturedPicture> dropped;
  {
    const std::lock_guard lock(mutex_);
    dropped.swap(pictures_);
  }
  changed_.notify_all();
}

}  // namespace corvane::rtc
