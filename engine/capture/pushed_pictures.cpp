#include "capture/pushed_pictures.h"

#include <utility>

#include "core/engine_thread.h"
#include "corvane_rtc/common.h"
#include "media/pixel_blocks.h"

namespace corvane::rtc {

void PushedQueue::open() {
  const std::lock_guard lock(mutex_);
  open_ = true;
}

void PushedQueue::close() {
  std::deque<OwnedFrame> dropped;
  {
    const std::lock_guard lock(mutex_);
    open_ = false;
    dropped.swap(frames_);
  }
  dropped.clear();
  freeRestingPixels();
}

bool PushedQueue::isOpen() {
  const std::lock_guard lock(mutex_);
  return open_;
}

int32_t PushedQueue::push(IVideoFrame* frame) {
  OwnedFrame owned(frame);
  if (frame == nullptr || !isUsableFrame(*frame)) return kInvalidParameter;
  OwnedFrame dropped;  // freed outside the lock
  {
    const std::lock_guard lock(mutex_);
    if (!open_) return kWrongState;
    if (frames_.size() >= kCapacity) {
      dropped = std::move(frames_.front());
      frames_.pop_front();
      ++dropped_;
    }
    frames_.push_back(std::move(owned));
  }
  changed_.notify_one();
  return kSuccess;
}

OwnedFrame PushedQueue::pop(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [this] { return !frames_.empty(); })) return nullptr;
  OwnedFrame frame = std::move(frames_.front());
  frames_.pop_front();
  return frame;
}

int64_t PushedQueue::dropped() {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

PushedPictures::PushedPictures(PushedQueue& queue, Receiver& receiver)
    : queue_(queue), receiver_(receiver), thread_([this](const std::stop_token& stop) { run(stop); }) {}

void PushedPictures::run(const std::stop_token& stop) {
  nameThread("pushed-video");
  while (OwnedFrame frame = queue_.pop(stop)) {
    if (stop.stop_requested()) return;
    Picture picture = importer_.take(std::move(frame));
    if (picture.buffer != nullptr) receiver_.onPushedPicture(std::move(picture));
  }
}

}  // namespace corvane::rtc
