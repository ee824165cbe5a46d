#include "media/video_sink_slot.h"

#include <utility>

namespace corvane::rtc {

namespace {

// An application may hold a few frames for seconds before it takes them; beyond that, memory is worth more than age.
constexpr int32_t kMaxFramesInFlight = 8;

}  // namespace

int32_t VideoSinkSlot::attach(IVideoSink* sink, int32_t pixel_format) {
  Target target;
  if (sink != nullptr) {
    target = {sink, gstFormat(pixel_format), std::make_shared<FrameBudget>(kMaxFramesInFlight)};
    if (target.format == GST_VIDEO_FORMAT_UNKNOWN) return kInvalidParameter;
  }
  const std::lock_guard lock(mutex_);
  target_ = std::move(target);
  return kSuccess;
}

void VideoSinkSlot::deliver(const Picture& picture) {
  Target target;
  {
    const std::lock_guard lock(mutex_);
    target = target_;
  }
  if (target.sink == nullptr) return;
  FrameTicket ticket = FrameTicket::take(std::move(target.budget));
  if (!ticket) {
    dropped_.fetch_add(1, std::memory_order_relaxed);
    return;
  }

  GstBuffer* delivered = picture.buffer.get();
  const GstVideoInfo* info = &picture.info;
  GstPtr<GstBuffer> converted;
  if (target.format != GST_VIDEO_INFO_FORMAT(info)) {
    converted = converter_.convert(delivered, *info, target.format);
    if (converted == nullptr) return;
    delivered = converted.get();
    info = &converter_.outInfo();
  }
  IVideoFrame* frame = BufferFrame::make(delivered, *info, picture.timestamp_us, picture.rotation, std::move(ticket));
  if (frame != nullptr) target.sink->onFrame(frame);
}

}  // namespace corvane::rtc
