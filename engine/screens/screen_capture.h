// The screen of an engine's second stream: what is captured, whether it runs, and what is told of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "capture/picture_pipeline.h"
#include "capture/picture_queue.h"
#include "core/engine_context.h"
#include "corvane_rtc/common.h"
#include "effects/snapshots.h"
#include "media/picture_taps.h"
#include "media/video_sink_slot.h"
#include "screens/screen_source.h"

namespace corvane::rtc {

/// Engine thread only.
class ScreenCapture final : public CaptureSource::Listener, public PicturePipeline::Receiver {
 public:
  /// `sink`, `taps` (those who publish or record it) and `snapshots` receive every picture on a thread of the
  /// capture's.
  ScreenCapture(EngineContext& context, VideoSinkSlot& sink, PictureTaps& taps, Snapshots& snapshots);
  ~ScreenCapture();
  ScreenCapture(const ScreenCapture&) = delete;
  ScreenCapture& operator=(const ScreenCapture&) = delete;

  /// Also while another source is captured, or the same one.
  void start(const ScreenSourceId& source, const ScreenSettings& settings);
  void stop();
  /// Does nothing while nothing is captured.
  void setRegion(const Rectangle& region);
  void setCursor(bool with_cursor);
  void setHighlight(bool highlighted, uint32_t border_color, int32_t border_width);

 private:
  enum class State { kOff, kOpening, kDelivering, kFailed };

  struct Size {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Size&) const = default;
  };

  void close();
  void apply();
  void fail(const CaptureFault& fault);
  void reportDevice(MediaDeviceState state, MediaDeviceError error);
  void reportStream(LocalVideoStreamState state, LocalVideoStreamError error);

  void onSourceDelivers() override;
  void onSourceFailed(const CaptureFault& fault) override;
  void onPicture(GstPtr<GstBuffer> buffer, const GstVideoInfo& info, GstClockTime time) override;
  void onPipelineFailed(const std::string& text) override;
  void onSize(Size size);

  EngineContext& context_;
  VideoSinkSlot& sink_;
  PictureTaps& taps_;
  Snapshots& snapshots_;

  State state_ = State::kOff;
  std::string name_;  // of what is captured or has failed, as events have it
  ScreenSettings settings_;
  bool stream_reported_ = false;  // as recording, since it was last stopped or failed
  Size reported_size_;

  PictureQueue queue_;
  std::shared_ptr<void> session_;  // what the pipeline's thread posts is for this run of the pipeline only
  Size seen_size_;                 // the pipeline's thread's
  std::unique_ptr<ScreenSource> source_;
  std::unique_ptr<PicturePipeline> pipeline_;
};

}  // namespace corvane::rtc
