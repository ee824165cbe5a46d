// Between the thread that takes pictures from a source and the one that shows them at their time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <stop_token>

#include "core/gst_pointers.h"

namespace corvane::rtc {

/// A picture of any format. The buffer's presentation time is on the system's monotonic clock, in nanoseconds.
struct CapturedPicture {
  GstPtr<GstBuffer> buffer;
  GstPtr<GstCaps> caps;
};

class PictureQueue {
 public:
  /// Waits for room: a clip is decoded ahead of its time, no further than the queue is long. False when stopped.
  bool pushWhenRoom(CapturedPicture picture, const std::stop_token& stop);
  /// Makes room by dropping the oldest: a device's pictures come in their own time and are of no use later.
  void pushNewest(CapturedPicture picture);
  /// Waits for a picture; empty when stopped.
  std::optional<CapturedPicture> pop(const std::stop_token& stop);
  void clear();

 private:
  // Pictures that play on while a clip is wound back to its start.
  static constexpr size_t kCapacity = 4;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<CapturedPicture> pictures_;
};

}  // namespace corvane::rtc
