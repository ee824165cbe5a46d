// Pictures: capture, encoding, raw frames.
#include "api/rtc_video.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kMinSide = 16;
constexpr int32_t kMaxSide = 8192;
constexpr int32_t kMaxFrameRate = 120;

// 0 leaves the camera's own.
bool isSide(int32_t pixels) {
  return pixels == 0 || (pixels >= kMinSide && pixels <= kMaxSide);
}

}  // namespace

// Video capture and encoding.

int32_t RtcVideo::startVideoCapture() {
  context_.thread.post([this] { video_capture_->start(); });
  return kSuccess;
}

int32_t RtcVideo::stopVideoCapture() {
  context_.thread.post([this] { video_capture_->stop(); });
  return kSuccess;
}

int32_t RtcVideo::setVideoCaptureConfig(const VideoCaptureConfig& config) {
  const bool known_preference = config.capture_preference >= kCapturePreferenceAuto &&
                                config.capture_preference <= kCapturePreferenceAutoPerformance;
  if (!known_preference || !isSide(config.width) || !isSide(config.height) || config.frame_rate < 0 ||
      config.frame_rate > kMaxFrameRate) {
    return kInvalidParameter;
  }
  // Nothing is encoded yet that the automatic preferences could follow: they take the camera as it is.
  PictureShape shape;
  if (config.capture_preference == kCapturePreferenceManual) shape = {config.width, config.height, config.frame_rate};
  context_.thread.post([this, shape] { video_capture_->setShape(shape); });
  return kSuccess;
}

int32_t RtcVideo::setVideoCaptureRotation(int32_t /*rotation*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setLocalVideoMirrorType(int32_t /*mirror_type*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setDummyCaptureImagePath(const char* /*file_path*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setLowLightAdjusted(int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setVideoEncoderConfig(const VideoEncoderConfig* /*channel_solutions*/, int32_t /*count*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setMaxVideoEncoderConfig(const VideoEncoderConfig& /*max_solution*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setScreenVideoEncoderConfig(const VideoEncoderConfig& /*screen_solution*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableSimulcastMode(bool /*enable*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAlphaChannelVideoEncode(int32_t /*stream_index*/, int32_t /*alpha_layout*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::disableAlphaChannelVideoEncode(int32_t /*stream_index*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setRemoteVideoSuperResolution(const StreamKey& /*stream_key*/, int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setVideoDigitalZoomConfig(int32_t /*type*/, double /*size*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setVideoDigitalZoomControl(int32_t /*direction*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startVideoDigitalZoomControl(int32_t /*direction*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopVideoDigitalZoomControl() {
  return notSupported(__func__);
}

// Raw video in and out.

int32_t RtcVideo::setLocalVideoSink(int32_t stream_index, IVideoSink* sink, int32_t required_format) {
  if (stream_index == kStreamIndexMain) return camera_sink_.attach(sink, required_format);
  return stream_index == kStreamIndexScreen ? notSupported(__func__) : kInvalidParameter;
}

int32_t RtcVideo::setRemoteVideoSink(const StreamKey& /*stream_key*/, IVideoSink* /*sink*/,
                                     int32_t /*required_format*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setPublicStreamVideoSink(const char* /*public_stream_id*/, IVideoSink* /*sink*/,
                                           int32_t /*required_format*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::registerVideoProcessor(IVideoProcessor* /*processor*/, const VideoPreprocessorConfig& /*config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setVideoSourceType(int32_t /*stream_index*/, int32_t /*type*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::pushExternalVideoFrame(IVideoFrame* frame) {
  if (frame != nullptr) frame->release();  // taken, whatever becomes of it
  return notSupported(__func__);
}

}  // namespace corvane::rtc
