#include "media/video_sink_slot.h"

#include <utility>

#include "core/gst_pointers.h"

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

void VideoSinkSlot::deliver(GstBuffer* picture, const GstVideoInfo& info, int64_t timestamp_us) {
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

  GstPtr<GstBuffer> converted;
  const GstVideoInfo* delivered_info = &info;
  if (target.format != GST_VIDEO_INFO_FORMAT(&info)) {
    converted = converter_.convert(picture, info, target.format);
    if (converted == nullptr) return;
    picture = converted.get();
    delivered_info = &converter_.outInfo();
  }
  IVideoFrame* frame = BufferFrame::make(picture, *delivered_info, timestamp_us, std::move(ticket));
  if (frame != nullptr) target.sink->onFrame(frame);
}

}  // namespace corvane::rtc
