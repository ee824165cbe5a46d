// Brings captured pictures into the one form in which the rest of the engine takes them, each at its time.
#pragma once

#include <gst/app/app.h>
#include <gst/video/video.h>

#include <memory>
#include <stop_token>
#include <string>

#include "capture/picture_queue.h"
#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "devices/camera_format.h"

namespace corvane::rtc {

/// Queue, conversion to I420 in BT.601's limited range with square pixels, size and rate where wanted, clock, receiver.
/// It does not care whence pictures come: cameras change while it runs. Engine thread only.
class PicturePipeline {
 public:
  class Receiver {
   public:
    /// On the pipeline's thread, one at a time. `time` is when the picture was due, in nanoseconds on the clock.
    virtual void onPicture(GstPtr<GstBuffer> picture, const GstVideoInfo& info, GstClockTime time) = 0;
    /// On the engine thread, at most once. The receiver may destroy the pipeline.
    virtual void onPipelineFailed(const std::string& text) = 0;

   protected:
    ~Receiver() = default;
  };

  PicturePipeline(EngineContext& context, PictureQueue& queue, Receiver& receiver, const PictureShape& wanted);
  /// The receiver is not called afterwards.
  ~PicturePipeline();
  PicturePipeline(const PicturePipeline&) = delete;
  PicturePipeline& operator=(const PicturePipeline&) = delete;

 private:
  void build(const PictureShape& wanted);
  void onMessage(GstMessage* message);
  void fail(std::string text);
  void feed();
  GstFlowReturn onSample(GstPtr<GstSample> sample);

  EngineContext& context_;
  PictureQueue& queue_;
  Receiver& receiver_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  std::stop_source stopping_;
  Pipeline pipeline_;
  GstAppSrc* source_ = nullptr;
  AttachedSource watch_;
  bool failed_ = false;
  // Of the pipeline's threads: what was fed and what came out last.
  GstPtr<GstCaps> fed_caps_;
  GstPtr<GstCaps> sample_caps_;
  GstVideoInfo sample_info_ = {};
};

}  // namespace corvane::rtc
