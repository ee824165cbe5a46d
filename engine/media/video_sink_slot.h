// The place where an application's sink for one stream is attached.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "corvane_rtc/video_frame.h"
#include "media/buffer_frame.h"
#include "media/frame_converter.h"
#include "media/picture.h"

namespace corvane::rtc {

class VideoSinkSlot {
 public:
  /// Replaces the sink; null detaches. The previous one is given nothing more afterwards, but a call that it is in may
  /// go on: it is not waited for, as it may itself be waiting for something that the caller holds. Any thread.
  int32_t attach(IVideoSink* sink, int32_t pixel_format);

  /// Hands the picture, in the sink's format, to the sink. It is dropped when the sink holds too many others.
  /// One thread at a time.
  void deliver(const Picture& picture);

  /// Whether there is a sink. Any thread.
  bool attached() {
    const std::lock_guard lock(mutex_);
    return target_.sink != nullptr;
  }

  /// Pictures dropped because the sink held too many. Any thread.
  int64_t dropped() const { return dropped_.load(std::memory_order_relaxed); }

 private:
  struct Target {
    IVideoSink* sink = nullptr;
    GstVideoFormat format = GST_VIDEO_FORMAT_UNKNOWN;
    std::shared_ptr<FrameBudget> budget;
  };

  std::mutex mutex_;  // never held during a call into a sink
  Target target_;
  FrameConverter converter_;  // the delivering thread's
  std::atomic<int64_t> dropped_ = 0;
};

}  // namespace corvane::rtc
