// Where the local picture comes from: a camera, the application, or an image that stands in; and what is told of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "capture/picture_pipeline.h"
#include "capture/picture_queue.h"
#include "capture/pushed_pictures.h"
#include "capture/video_source.h"
#include "core/engine_context.h"
#include "corvane_rtc/common.h"
#include "devices/camera_list.h"
#include "effects/local_video.h"
#include "media/image.h"

namespace corvane::rtc {

/// Engine thread only. Repeating a call changes nothing, but that start() tries a camera that has failed once more.
class VideoCapture final : public CaptureSource::Listener,
                           public PicturePipeline::Receiver,
                           public PushedPictures::Receiver {
 public:
  /// `local` receives every picture on a thread of the capture's, `pushed` holds those of the application.
  VideoCapture(EngineContext& context, const CameraList& cameras, LocalVideo& local, PushedQueue& pushed);
  ~VideoCapture();
  VideoCapture(const VideoCapture&) = delete;
  VideoCapture& operator=(const VideoCapture&) = delete;

  void start();
  void stop();
  /// Also while capturing. "" takes the first camera there is.
  void setCamera(const std::string& id);
  /// Values of 0 leave the camera's own.
  void setShape(const PictureShape& wanted);
  /// Takes pictures from the application instead of a camera, which is stopped. Back again, the camera has to be
  /// started.
  void setPushed(bool pushed);
  /// The image that is shown while neither captures; null for none.
  void setStandIn(std::shared_ptr<const Image> image);

 private:
  enum class State { kOff, kStandIn, kOpening, kDelivering, kFailed, kPushed };

  // One size and rotation as the delivering thread hands it on.
  struct Size {
    int32_t width = 0;
    int32_t height = 0;
    int32_t rotation = 0;
    bool operator==(const Size&) const = default;
  };

  void open();
  bool stopCamera();
  void showStandIn();
  void openPipeline();
  void close();
  std::unique_ptr<VideoSource> makeSource();
  void fail(const CaptureFault& fault);
  void reportDevice(MediaDeviceState state, MediaDeviceError error);
  void reportStream(LocalVideoStreamState state, LocalVideoStreamError error);

  void onSourceDelivers() override;
  void onSourceFailed(const CaptureFault& fault) override;
  void onPicture(GstPtr<GstBuffer> picture, const GstVideoInfo& info, GstClockTime time) override;
  void onPipelineFailed(const std::string& text) override;
  void onPushedPicture(Picture picture) override;
  void show(Picture picture);
  void onSize(Size size);

  EngineContext& context_;
  const CameraList& cameras_;
  LocalVideo& local_;
  PushedQueue& pushed_queue_;

  bool wanted_ = false;  // the application's, whatever became of it
  State state_ = State::kOff;
  std::string chosen_;  // the application's, "" for none
  std::string opened_;  // the camera that is open or has failed
  std::shared_ptr<const Image> stand_in_;
  PictureShape shape_;
  bool stream_reported_ = false;  // as recording, since it was last stopped or failed
  Size reported_size_;

  PictureQueue queue_;
  std::shared_ptr<void> session_;  // what the delivering thread posts is for this run of it only
  bool shows_stand_in_ = false;    // changed while there is no such thread
  Size seen_size_;                 // the delivering thread's, as is:
  GstClockTime last_time_ = 0;     // of the picture delivered last
  std::unique_ptr<VideoSource> source_;
  std::unique_ptr<PicturePipeline> pipeline_;
  std::unique_ptr<PushedPictures> pushed_;
  AttachedSource watchdog_;
};

}  // namespace corvane::rtc
