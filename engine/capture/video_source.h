// Where a camera's pictures come from: a pipeline that ends in a queue. One object for one opening of one camera.
#pragma once

#include "capture/capture_source.h"
#include "capture/picture_queue.h"

namespace corvane::rtc {

class VideoSource : public CaptureSource {
 protected:
  VideoSource(EngineContext& context, PictureQueue& queue, Listener& listener);

  /// Gives the picture its time, or stands for it: see CapturedPicture. On the pipeline's thread.
  virtual GstClockTime timeOf(const GstBuffer* picture, const GstSegment& segment) = 0;
  /// Whether pictures wait for room in the queue.
  virtual bool paced() const = 0;

 private:
  GstFlowReturn onBuffer(GstPtr<GstBuffer> buffer, GstPtr<GstCaps> caps, const GstSegment& segment) final;

  PictureQueue& queue_;
};

}  // namespace corvane::rtc
