// Where a camera's pictures come from: a pipeline that ends in a queue. One object for one opening of one camera.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "capture/capture_fault.h"
#include "capture/picture_queue.h"
#include "capture/pipeline.h"
#include "core/engine_context.h"

namespace corvane::rtc {

/// Engine thread, but for what is marked otherwise. Classes derived from this stop() in their destructors.
class VideoSource {
 public:
  /// Called on the engine thread.
  class Listener {
   public:
    /// The first picture is there.
    virtual void onSourceDelivers() = 0;
    /// At most once, and the last call. The listener may destroy the source.
    virtual void onSourceFailed(const CaptureFault& fault) = 0;

   protected:
    ~Listener() = default;
  };

  virtual ~VideoSource() = default;
  VideoSource(const VideoSource&) = delete;
  VideoSource& operator=(const VideoSource&) = delete;

  /// Everything that goes wrong, now or later, reaches the listener, and not before this returns.
  void start();
  /// No picture is queued and the listener is not called afterwards.
  void stop();

 protected:
  VideoSource(EngineContext& context, PictureQueue& queue, Listener& listener);

  /// Adds the elements to pipeline(), the last linked to end().
  virtual std::optional<CaptureFault> build() = 0;
  /// Gives the picture its time, or stands for it: see CapturedPicture. On the pipeline's thread.
  virtual GstClockTime timeOf(const GstBuffer* picture, const GstSegment& segment) = 0;
  /// Whether pictures wait for room in the queue.
  virtual bool paced() const = 0;
  /// The source has delivered its last picture.
  virtual void onEnd() = 0;
  /// What a fault is for this kind of camera.
  virtual CaptureFault refine(CaptureFault fault) const { return fault; }

  /// Sets the pipeline going; also again, once it has been stopped.
  void play();
  /// Any thread. What comes after the first is not reported.
  void fail(CaptureFault fault);

  EngineContext& context() { return context_; }
  Pipeline& pipeline() { return *pipeline_; }
  GstElement* end() { return end_; }
  int64_t delivered() const { return delivered_.load(std::memory_order_relaxed); }

 private:
  void onMessage(GstMessage* message);
  GstPadProbeReturn onPicture(GstPad* pad, GstPadProbeInfo* info);

  EngineContext& context_;
  PictureQueue& queue_;
  Listener& listener_;
  // Read by the pipeline's threads, which are gone before it is.
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  std::stop_source stopping_;
  std::unique_ptr<Pipeline> pipeline_;
  GstElement* end_ = nullptr;
  AttachedSource watch_;
  std::string missing_decoder_;
  bool failed_ = false;
  std::atomic<int64_t> delivered_ = 0;
};

}  // namespace corvane::rtc
