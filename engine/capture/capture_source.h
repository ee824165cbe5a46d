// Where captured media comes from: a pipeline whose end is watched. One object for one opening of one camera or
// microphone.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "capture/capture_fault.h"
#include "capture/pipeline.h"
#include "core/engine_context.h"

namespace corvane::rtc {

/// Engine thread, but for what is marked otherwise. The last classes derived from this stop() in their destructors.
class CaptureSource {
 public:
  /// Called on the engine thread.
  class Listener {
   public:
    /// The first picture, or the first sound, is there.
    virtual void onSourceDelivers() = 0;
    /// At most once, and the last call. The listener may destroy the source.
    virtual void onSourceFailed(const CaptureFault& fault) = 0;

   protected:
    ~Listener() = default;
  };

  virtual ~CaptureSource() = default;
  CaptureSource(const CaptureSource&) = delete;
  CaptureSource& operator=(const CaptureSource&) = delete;

  /// Everything that goes wrong, now or later, reaches the listener, and not before this returns.
  void start();
  /// Nothing is delivered and the listener is not called afterwards.
  void stop();

 protected:
  /// `kind`: "camera" or "microphone", for the log; outlives the source.
  CaptureSource(EngineContext& context, Listener& listener, const char* kind);

  /// Adds the elements to pipeline(), the last linked to end().
  virtual std::optional<CaptureFault> build() = 0;
  /// Takes what has arrived at the end. On the pipeline's thread.
  virtual GstFlowReturn onBuffer(GstPtr<GstBuffer> buffer, GstPtr<GstCaps> caps, const GstSegment& segment) = 0;
  /// The source has delivered its last.
  virtual void onEnd() = 0;
  /// What a fault is for this kind of source.
  virtual CaptureFault refine(CaptureFault fault) const { return fault; }

  /// Sets the pipeline going; also again, once it has been stopped.
  void play();
  /// Any thread. What comes after the first is not reported.
  void fail(CaptureFault fault);

  EngineContext& context() { return context_; }
  Pipeline& pipeline() { return *pipeline_; }
  GstElement* end() { return end_; }
  /// Buffers that have arrived at the end. Any thread.
  int64_t delivered() const { return delivered_.load(std::memory_order_relaxed); }
  /// For what the pipeline's threads wait for. Any thread.
  std::stop_token stopping() const { return stopping_.get_token(); }

 private:
  void onMessage(GstMessage* message);
  GstPadProbeReturn onProbe(GstPad* pad, GstPadProbeInfo* info);

  EngineContext& context_;
  Listener& listener_;
  const char* const kind_;
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
