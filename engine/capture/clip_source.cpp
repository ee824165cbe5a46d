#include "capture/clip_source.h"

#include <utility>

namespace corvane::rtc {

ClipSource::ClipSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string path)
    : VideoSource(context, queue, listener),
      reader_(std::move(path), ClipReader::Stream::kPicture, [this](CaptureFault fault) { fail(std::move(fault)); }) {}

GstClockTime ClipSource::timeOf(const GstBuffer* picture, const GstSegment& /*segment*/) {
  if (reader_.takePassStart()) timeline_.beginPass();
  return timeline_.place(GST_BUFFER_PTS(picture), GST_BUFFER_DURATION(picture), clockNow());
}

void ClipSource::onEnd() {
  if (std::optional<CaptureFault> fault = reader_.endPass(delivered())) return fail(std::move(*fault));
  if (!reader_.windBack(pipeline())) play();
}

}  // namespace corvane::rtc
