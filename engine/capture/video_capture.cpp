#include "capture/video_capture.h"

#include <utility>

#include "capture/clip_source.h"
#include "capture/image_source.h"
#include "capture/live_sources.h"
#include "devices/camera_id.h"

namespace corvane::rtc {

namespace {

// Some cameras take several seconds to wake.
constexpr std::chrono::seconds kFirstPictureTimeout(10);

}  // namespace

VideoCapture::VideoCapture(EngineContext& context, const CameraList& cameras, LocalVideo& local, PushedQueue& pushed)
    : context_(context), cameras_(cameras), local_(local), pushed_queue_(pushed) {}

VideoCapture::~VideoCapture() {
  close();
}

void VideoCapture::start() {
  if (state_ == State::kPushed) return;
  wanted_ = true;
  if (state_ == State::kStandIn) close();
  if (state_ == State::kOff || state_ == State::kStandIn || state_ == State::kFailed) open();
}

void VideoCapture::stop() {
  if (stopCamera()) showStandIn();
}

bool VideoCapture::stopCamera() {
  wanted_ = false;
  if (state_ == State::kOff || state_ == State::kStandIn || state_ == State::kPushed) return false;
  const bool delivered = state_ == State::kDelivering;
  close();
  state_ = State::kOff;
  context_.log.info("camera %s stopped; %lld pictures dropped so far because the sink held too many", opened_.c_str(),
                    static_cast<long long>(local_.sink().dropped()));
  if (delivered) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  reportStream(kLocalVideoStreamStateStopped, kLocalVideoStreamErrorOk);
  return true;
}

void VideoCapture::setPushed(bool pushed) {
  if (pushed == (state_ == State::kPushed)) return;
  if (pushed) {
    stopCamera();
    close();
    state_ = State::kPushed;
    session_ = std::make_shared<char>();
    seen_size_ = {};
    context_.log.info("pictures come from the application");
    pushed_ = std::make_unique<PushedPictures>(pushed_queue_, *this);
    return;
  }
  close();
  state_ = State::kOff;
  context_.log.info(
      "pictures come from the camera; %lld of the application's were dropped so far because too many waited",
      static_cast<long long>(pushed_queue_.dropped()));
  if (stream_reported_) reportStream(kLocalVideoStreamStateStopped, kLocalVideoStreamErrorOk);
  showStandIn();
}

void VideoCapture::setStandIn(std::shared_ptr<const Image> image) {
  stand_in_ = std::move(image);
  if (state_ == State::kStandIn) {
    close();
    state_ = State::kOff;
  }
  if (state_ == State::kOff) showStandIn();
}

void VideoCapture::showStandIn() {
  if (stand_in_ == nullptr) return;
  state_ = State::kStandIn;
  shows_stand_in_ = true;
  openPipeline();
  source_ = std::make_unique<ImageSource>(context_, queue_, *this, stand_in_);
  source_->start();
}

void VideoCapture::setCamera(const std::string& id) {
  chosen_ = id;
  const bool is_open = state_ == State::kOpening || state_ == State::kDelivering;
  if (!wanted_ || (is_open && id == opened_)) return;
  source_.reset();
  if (state_ == State::kDelivering) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  open();
}

void VideoCapture::setShape(const PictureShape& wanted) {
  if (wanted == shape_) return;
  shape_ = wanted;
  if (pipeline_ == nullptr) return;
  openPipeline();
  if (state_ == State::kStandIn) return;
  // A device may offer a format of that shape; a clip or a test picture has none to choose from.
  if (std::holds_alternative<DeviceCamera>(parseCameraId(opened_))) open();
}

void VideoCapture::open() {
  source_.reset();
  queue_.clear();
  // Each camera may be the first after one that failed; the pipeline outlives all that do not.
  opened_ = chosen_.empty() ? cameras_.snapshot().front().id : chosen_;
  state_ = State::kOpening;
  context_.log.info("camera %s opens", opened_.c_str());
  if (pipeline_ == nullptr) openPipeline();
  source_ = makeSource();
  watchdog_ = context_.thread.after(kFirstPictureTimeout, [this] {
    fail({kDeviceFailure, kMediaDeviceErrorNoCallback, "the camera is open but delivers nothing"});
  });
  source_->start();
}

void VideoCapture::openPipeline() {
  pipeline_.reset();
  session_ = std::make_shared<char>();
  seen_size_ = {};
  pipeline_ = std::make_unique<PicturePipeline>(context_, queue_, *this, shape_);
}

void VideoCapture::close() {
  watchdog_.reset();
  source_.reset();
  pipeline_.reset();
  pushed_.reset();
  session_.reset();
  shows_stand_in_ = false;
  queue_.clear();
}

std::unique_ptr<VideoSource> VideoCapture::makeSource() {
  CameraId camera = parseCameraId(opened_);
  if (auto* clip = std::get_if<ClipCamera>(&camera)) {
    return std::make_unique<ClipSource>(context_, queue_, *this, std::move(clip->path));
  }
  if (auto* device = std::get_if<DeviceCamera>(&camera)) {
    return std::make_unique<DeviceSource>(context_, queue_, *this, std::move(device->device_file),
                                          cameras_.formats(opened_), shape_);
  }
  // Ids are checked before they come here, so that what is left is a test picture.
  const auto* test = std::get_if<TestCamera>(&camera);
  return std::make_unique<TestSource>(context_, queue_, *this, test != nullptr ? *test : TestCamera());
}

void VideoCapture::fail(const CaptureFault& fault) {
  const bool is_camera = state_ != State::kStandIn;
  close();
  state_ = is_camera ? State::kFailed : State::kOff;
  if (!is_camera) return context_.log.error("the image instead of the camera failed: %s", fault.text.c_str());
  context_.log.error("camera %s failed: %s", opened_.c_str(), fault.text.c_str());
  reportDevice(kMediaDeviceStateRuntimeError, fault.device_error);
  reportStream(kLocalVideoStreamStateFailed, videoStreamError(fault));
  context_.events->onError(fault.status);
}

void VideoCapture::reportDevice(MediaDeviceState state, MediaDeviceError error) {
  context_.events->onVideoDeviceStateChanged(opened_.c_str(), kVideoDeviceTypeCapture, state, error);
}

void VideoCapture::reportStream(LocalVideoStreamState state, LocalVideoStreamError error) {
  stream_reported_ = state == kLocalVideoStreamStateRecording;
  context_.on_capturing(kStreamIndexMain, kMediaStreamVideo, stream_reported_);
  context_.events->onLocalVideoStateChanged(kStreamIndexMain, state, error);
}

void VideoCapture::onSourceDelivers() {
  if (state_ == State::kStandIn) return;
  watchdog_.reset();
  state_ = State::kDelivering;
  reportDevice(kMediaDeviceStateStarted, kMediaDeviceErrorOk);
}

void VideoCapture::onSourceFailed(const CaptureFault& fault) {
  fail(fault);
}

void VideoCapture::onPipelineFailed(const std::string& text) {
  fail({kMediaFailure, kMediaDeviceErrorUnsupportedFormat, text});
}

void VideoCapture::onPicture(GstPtr<GstBuffer> buffer, const GstVideoInfo& info, GstClockTime time) {
  // A clip is decoded ahead, so that a picture of the last camera may have been due after the first of the next one.
  if (time <= last_time_) return;
  last_time_ = time;
  Picture picture = {std::move(buffer), info, static_cast<int64_t>(GST_TIME_AS_USECONDS(time)), 0};
  if (shows_stand_in_) {
    local_.showAsIs(std::move(picture));
  } else {
    show(std::move(picture));
  }
}

void VideoCapture::onPushedPicture(Picture picture) {
  show(std::move(picture));
}

void VideoCapture::show(Picture picture) {
  const VideoFrameInfo info = local_.show(std::move(picture));
  const Size size = {info.width, info.height, info.rotation};
  if (size == seen_size_) return;
  seen_size_ = size;
  context_.thread.post(session_, [this, size] { onSize(size); });
}

void VideoCapture::onSize(Size size) {
  const VideoFrameInfo info = {size.width, size.height, size.rotation};
  const Size previous = std::exchange(reported_size_, size);
  const char* const source = state_ == State::kPushed ? "the application" : opened_.c_str();
  if (!stream_reported_) {
    context_.log.info("%s delivers %dx%d", source, size.width, size.height);
    reportStream(kLocalVideoStreamStateRecording, kLocalVideoStreamErrorOk);
    context_.events->onFirstLocalVideoFrameCaptured(kStreamIndexMain, info);
  } else if (size != previous) {
    context_.log.info("%s now delivers %dx%d", source, size.width, size.height);
    context_.events->onLocalVideoSizeChanged(kStreamIndexMain, info);
  }
}

}  // namespace corvane::rtc
