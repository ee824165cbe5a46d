#include "capture/video_source.h"

#include <utility>

namespace corvane::rtc {

VideoSource::VideoSource(EngineContext& context, PictureQueue& queue, Listener& listener)
    : CaptureSource(context, listener, "camera"), queue_(queue) {}

GstFlowReturn VideoSource::onBuffer(GstPtr<GstBuffer> buffer, GstPtr<GstCaps> caps, const GstSegment& segment) {
  const GstClockTime time = timeOf(buffer.get(), segment);
  buffer.reset(gst_buffer_make_writable(buffer.release()));
  GST_BUFFER_PTS(buffer.get()) = time;
  GST_BUFFER_DTS(buffer.get()) = GST_CLOCK_TIME_NONE;
  CapturedPicture picture = {std::move(buffer), std::move(caps)};
  if (!paced()) {
    queue_.pushNewest(std::move(picture));
    return GST_FLOW_OK;
  }
  return queue_.pushWhenRoom(std::move(picture), stopping()) ? GST_FLOW_OK : GST_FLOW_FLUSHING;
}

}  // namespace corvane::rtc
