#include "media/buffer_frame.h"

#include <utility>

namespace corvane::rtc {

namespace {

struct FormatPair {
  VideoPixelFormat ours;
  GstVideoFormat theirs;
};

// ARGB is named after a 32-bit value of which the lowest byte comes first in memory, GStreamer's after the memory.
constexpr FormatPair kFormats[] = {
    {kVideoPixelFormatI420, GST_VIDEO_FORMAT_I420},
    {kVideoPixelFormatRGBA, GST_VIDEO_FORMAT_RGBA},
    {kVideoPixelFormatARGB, GST_VIDEO_FORMAT_BGRA},
};

}  // namespace

GstVideoFormat gstFormat(int32_t pixel_format) {
  for (const FormatPair& pair : kFormats) {
    if (pair.ours == pixel_format) return pair.theirs;
  }
  return GST_VIDEO_FORMAT_UNKNOWN;
}

FrameTicket FrameTicket::take(std::shared_ptr<FrameBudget> budget) {
  FrameTicket ticket;
  if (budget->left.fetch_sub(1, std::memory_order_relaxed) > 0) {
    ticket.budget_ = std::move(budget);
  } else {
    budget->left.fetch_add(1, std::memory_order_relaxed);
  }
  return ticket;
}

FrameTicket::~FrameTicket() {
  if (budget_ != nullptr) budget_->left.fetch_add(1, std::memory_order_relaxed);
}

BufferFrame* BufferFrame::make(GstBuffer* buffer, const GstVideoInfo& info, int64_t timestamp_us, int32_t rotation,
                               FrameTicket ticket) {
  auto* frame = new BufferFrame();  // owned by whoever the frame is handed to, until release()
  if (!gst_video_frame_map(&frame->frame_, &info, buffer, GST_MAP_READ)) {
    delete frame;
    return nullptr;
  }
  frame->timestamp_us_ = timestamp_us;
  frame->rotation_ = rotation;
  frame->ticket_ = std::move(ticket);
  return frame;
}

int32_t BufferFrame::pixelFormat() const {
  for (const FormatPair& pair : kFormats) {
    if (pair.theirs == GST_VIDEO_FRAME_FORMAT(&frame_)) return pair.ours;
  }
  return kVideoPixelFormatUnknown;
}

uint8_t* BufferFrame::planeData(int32_t plane) const {
  return hasPlane(plane) ? static_cast<uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame_, plane)) : nullptr;
}

int32_t BufferFrame::planeStride(int32_t plane) const {
  return hasPlane(plane) ? GST_VIDEO_FRAME_PLANE_STRIDE(&frame_, plane) : 0;
}

void BufferFrame::release() {
  gst_video_frame_unmap(&frame_);
  delete this;
}

}  // namespace corvane::rtc
