// The camera of an engine: which one, how it is opened, whether it runs, and what is told of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "capture/picture_pipeline.h"
#include "capture/picture_queue.h"
#include "capture/video_source.h"
#include "core/engine_context.h"
#include "corvane_rtc/common.h"
#include "devices/camera_list.h"
#include "media/video_sink_slot.h"

namespace corvane::rtc {

/// Engine thread only. Repeating a call changes nothing, but that start() tries a camera that has failed once more.
class VideoCapture final : public CaptureSource::Listener, public PicturePipeline::Receiver {
 public:
  /// `sink` receives every picture on a thread of the capture's.
  VideoCapture(EngineContext& context, const CameraList& cameras, VideoSinkSlot& sink);
  ~VideoCapture();
  VideoCapture(const VideoCapture&) = delete;
  VideoCapture& operator=(const VideoCapture&) = delete;

  void start();
  void stop();
  /// Also while capturing. "" takes the first camera there is.
  void setCamera(const std::string& id);
  /// Values of 0 leave the camera's own.
  void setShape(const PictureShape& wanted);

 private:
  enum class State { kOff, kOpening, kDelivering, kFailed };

  // One size as the pipeline's thread hands it on.
  struct Size {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Size&) const = default;
  };

  void open();
  void openPipeline();
  void close();
  std::unique_ptr<VideoSource> makeSource();
  void fail(const CaptureFault& fault);
  void reportDevice(MediaDeviceState state, MediaDeviceError error);
  void reportStream(LocalVideoStreamState state, LocalVideoStreamError error);

  void onSourceDelivers() override;
  void onSourceFailed(const CaptureFault& fault) override;
  void onPicture(GstBuffer* picture, const GstVideoInfo& info, GstClockTime time) override;
  void onPipelineFailed(const std::string& text) override;
  void onSize(Size size);

  EngineContext& context_;
  const CameraList& cameras_;
  VideoSinkSlot& sink_;

  bool wanted_ = false;  // the application's, whatever became of it
  State state_ = State::kOff;
  std::string chosen_;  // the application's, "" for none
  std::string opened_;  // the camera that is open or has failed
  PictureShape shape_;
  bool stream_reported_ = false;  // as recording, since it was last stopped or failed
  Size reported_size_;

  PictureQueue queue_;
  std::shared_ptr<void> session_;  // what the pipeline's thread posts is for this run of the pipeline only
  Size seen_size_;                 // the pipeline's thread's, as is:
  GstClockTime last_time_ = 0;     // of the picture delivered last
  std::unique_ptr<VideoSource> source_;
  std::unique_ptr<PicturePipeline> pipeline_;
  AttachedSource watchdog_;
};

}  // namespace corvane::rtc
