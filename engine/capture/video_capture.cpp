#include "capture/video_capture.h"

#include <utility>

#include "capture/clip_source.h"
#include "capture/live_sources.h"
#include "devices/camera_id.h"

namespace corvane::rtc {

namespace {

// Some cameras take several seconds to wake.
constexpr std::chrono::seconds kFirstPictureTimeout(10);

}  // namespace

VideoCapture::VideoCapture(EngineContext& context, const CameraList& cameras, VideoSinkSlot& sink)
    : context_(context), cameras_(cameras), sink_(sink) {}

VideoCapture::~VideoCapture() {
  close();
}

void VideoCapture::start() {
  wanted_ = true;
  if (state_ == State::kOff || state_ == State::kFailed) open();
}

void VideoCapture::stop() {
  wanted_ = false;
  if (state_ == State::kOff) return;
  const bool delivered = state_ == State::kDelivering;
  close();
  state_ = State::kOff;
  context_.log.info("camera %s stopped; %lld pictures dropped so far because the sink held too many", opened_.c_str(),
                    static_cast<long long>(sink_.dropped()));
  if (delivered) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  reportStream(kLocalVideoStreamStateStopped, kLocalVideoStreamErrorOk);
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
  session_.reset();
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
  close();
  state_ = State::kFailed;
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
  context_.events->onLocalVideoStateChanged(kStreamIndexMain, state, error);
}

void VideoCapture::onSourceDelivers() {
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

void VideoCapture::onPicture(GstBuffer* picture, const GstVideoInfo& info, GstClockTime time) {
  const Size size = {GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info)};
  if (size != seen_size_) {
    seen_size_ = size;
    context_.thread.post(session_, [this, size] { onSize(size); });
  }
  // A clip is decoded ahead, so that a picture of the last camera may have been due after the first of the next one.
  if (time <= last_time_) return;
  last_time_ = time;
  sink_.deliver(picture, info, static_cast<int64_t>(GST_TIME_AS_USECONDS(time)));
}

void VideoCapture::onSize(Size size) {
  const VideoFrameInfo info = {size.width, size.height, 0};
  const Size previous = std::exchange(reported_size_, size);
  if (!stream_reported_) {
    context_.log.info("camera %s delivers %dx%d", opened_.c_str(), size.width, size.height);
    reportStream(kLocalVideoStreamStateRecording, kLocalVideoStreamErrorOk);
    context_.events->onFirstLocalVideoFrameCaptured(kStreamIndexMain, info);
  } else if (size != previous) {
    context_.log.info("camera %s now delivers %dx%d", opened_.c_str(), size.width, size.height);
    context_.events->onLocalVideoSizeChanged(kStreamIndexMain, info);
  }
}

}  // namespace corvane::rtc
