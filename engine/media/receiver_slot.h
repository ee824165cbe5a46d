// The place where an object of the application's is attached that the engine calls into.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace corvane::rtc {

/// Any thread. No lock is held during a call into the receiver.
template <class T>
class ReceiverSlot {
 public:
  /// Replaces the receiver; null detaches. A call into the previous one may still run.
  void attach(T* receiver) {
    const std::lock_guard lock(mutex_);
    receiver_ = receiver;
  }

  /// The same, but no call is inside the previous receiver any more when this returns. Not from inside such a call.
  void attachAndWait(T* receiver) {
    std::unique_lock lock(mutex_);
    receiver_ = nullptr;
    left_.wait(lock, [this] { return inside_ == 0; });
    receiver_ = receiver;
  }

  /// function(T&), unless none is attached.
  template <class F>
  void call(F&& function) {
    T* receiver = nullptr;
    {
      const std::lock_guard lock(mutex_);
      receiver = receiver_;
      if (receiver == nullptr) return;
      ++inside_;
    }
    function(*receiver);
    const std::lock_guard lock(mutex_);
    if (--inside_ == 0) left_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable left_;
  T* receiver_ = nullptr;
  int32_t inside_ = 0;
};

}  // namespace corvane::rtc
