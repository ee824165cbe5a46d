#include "screens/screen_capture.h"

#include <utility>

namespace corvane::rtc {

namespace {

std::string nameOf(const ScreenSourceId& source) {
  return (source.type == kScreenCaptureSourceTypeScreen ? "screen:" : "window:") + std::to_string(source.id);
}

}  // namespace

ScreenCapture::ScreenCapture(EngineContext& context, VideoSinkSlot& sink, PictureTaps& taps, Snapshots& snapshots)
    : context_(context), sink_(sink), taps_(taps), snapshots_(snapshots) {}

ScreenCapture::~ScreenCapture() {
  close();
}

void ScreenCapture::start(const ScreenSourceId& source, const ScreenSettings& settings) {
  source_.reset();
  queue_.clear();
  if (state_ == State::kDelivering) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  name_ = nameOf(source);
  settings_ = settings;
  state_ = State::kOpening;
  context_.log.info("%s opens", name_.c_str());
  if (pipeline_ == nullptr) {
    session_ = std::make_shared<char>();
    seen_size_ = {};
    pipeline_ = std::make_unique<PicturePipeline>(context_, queue_, *this, PictureShape{});
  }
  source_ = std::make_unique<ScreenSource>(context_, queue_, *this, source, settings_);
}

void ScreenCapture::stop() {
  if (state_ == State::kOff) return;
  const bool delivered = state_ == State::kDelivering;
  close();
  state_ = State::kOff;
  context_.log.info("%s stopped; %lld pictures dropped so far because the sink held too many", name_.c_str(),
                    static_cast<long long>(sink_.dropped()));
  if (delivered) reportDevice(kMediaDeviceStateStopped, kMediaDeviceErrorOk);
  reportStream(kLocalVideoStreamStateStopped, kLocalVideoStreamErrorOk);
}

void ScreenCapture::setRegion(const Rectangle& region) {
  settings_.region = region;
  apply();
}

void ScreenCapture::setCursor(bool with_cursor) {
  settings_.with_cursor = with_cursor;
  apply();
}

void ScreenCapture::setHighlight(bool highlighted, uint32_t border_color, int32_t border_width) {
  settings_.highlighted = highlighted;
  settings_.border_color = border_color;
  settings_.border_width = border_width;
  apply();
}

void ScreenCapture::apply() {
  if (source_ != nullptr) source_->set(settings_);
}

void ScreenCapture::close() {
  source_.reset();
  pipeline_.reset();
  session_.reset();
  queue_.clear();
}

void ScreenCapture::fail(const CaptureFault& fault) {
  close();
  state_ = State::kFailed;
  context_.log.error("%s failed: %s", name_.c_str(), fault.text.c_str());
  reportDevice(kMediaDeviceStateRuntimeError, fault.device_error);
  reportStream(kLocalVideoStreamStateFailed, videoStreamError(fault));
  context_.events->onError(fault.status);
}

void ScreenCapture::reportDevice(MediaDeviceState state, MediaDeviceError error) {
  context_.events->onVideoDeviceStateChanged(name_.c_str(), kVideoDeviceTypeScreenCapture, state, error);
}

void ScreenCapture::reportStream(LocalVideoStreamState state, LocalVideoStreamError error) {
  stream_reported_ = state == kLocalVideoStreamStateRecording;
  context_.on_capturing(kStreamIndexScreen, kMediaStreamVideo, stream_reported_);
  context_.events->onLocalVideoStateChanged(kStreamIndexScreen, state, error);
}

void ScreenCapture::onSourceDelivers() {
  state_ = State::kDelivering;
  reportDevice(kMediaDeviceStateStarted, kMediaDeviceErrorOk);
}

void ScreenCapture::onSourceFailed(const CaptureFault& fault) {
  fail(fault);
}

void ScreenCapture::onPipelineFailed(const std::string& text) {
  fail({kMediaFailure, kMediaDeviceErrorUnsupportedFormat, text});
}

void ScreenCapture::onPicture(GstPtr<GstBuffer> buffer, const GstVideoInfo& info, GstClockTime time) {
  const Size size = {GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info)};
  if (size != seen_size_) {
    seen_size_ = size;
    context_.thread.post(session_, [this, size] { onSize(size); });
  }
  const Picture picture = {std::move(buffer), info, static_cast<int64_t>(GST_TIME_AS_USECONDS(time)), 0};
  taps_.deliver(picture);
  snapshots_.offer(kStreamIndexScreen, picture);
  sink_.deliver(picture);
}

void ScreenCapture::onSize(Size size) {
  const VideoFrameInfo info = {size.width, size.height, 0};
  const Size previous = std::exchange(reported_size_, size);
  if (!stream_reported_) {
    context_.log.info("%s delivers %dx%d", name_.c_str(), size.width, size.height);
    reportStream(kLocalVideoStreamStateRecording, kLocalVideoStreamErrorOk);
    context_.events->onFirstLocalVideoFrameCaptured(kStreamIndexScreen, info);
  } else if (size != previous) {
    context_.log.info("%s now delivers %dx%d", name_.c_str(), size.width, size.height);
    context_.events->onLocalVideoSizeChanged(kStreamIndexScreen, info);
  }
}

}  // namespace corvane::rtc
