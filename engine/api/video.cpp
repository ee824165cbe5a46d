// Pictures: capture, encoding, raw frames.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "api/rtc_room.h"
#include "api/rtc_video.h"
#include "capture/image_file.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kMinSide = 16;
constexpr int32_t kMaxSide = 8192;
constexpr int32_t kMaxFrameRate = 120;
constexpr int32_t kMaxLayers = 4;
constexpr int32_t kMaxBitrate = 100'000;  // kbit/s

// 0 leaves the camera's own.
bool isSide(int32_t pixels) {
  return pixels == 0 || (pixels >= kMinSide && pixels <= kMaxSide);
}

bool isLayer(const VideoEncoderConfig& config) {
  return isSide(config.width) && isSide(config.height) && config.frame_rate >= 0 &&
         config.frame_rate <= kMaxFrameRate && config.max_bitrate >= -1 && config.max_bitrate <= kMaxBitrate;
}

VideoEncoding encodingOf(const VideoEncoderConfig& config) {
  return {config.width, config.height, config.frame_rate, std::max(config.max_bitrate, 0),
          std::max(config.min_bitrate, 0)};
}

}  // namespace

// Video capture and encoding.

int32_t RtcVideo::startVideoCapture() {
  if (pushed_video_.isOpen()) return kWrongState;
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

int32_t RtcVideo::setVideoCaptureRotation(int32_t rotation) {
  if (rotation < 0 || rotation >= 360 || rotation % 90 != 0) return kInvalidParameter;
  local_video_.setRotation(rotation);
  return kSuccess;
}

int32_t RtcVideo::setLocalVideoMirrorType(int32_t mirror_type) {
  if (mirror_type != kMirrorTypeNone && mirror_type != kMirrorTypeRender &&
      mirror_type != kMirrorTypeRenderAndEncoder) {
    return kInvalidParameter;
  }
  local_video_.setMirror(mirror_type);
  return kSuccess;
}

int32_t RtcVideo::setDummyCaptureImagePath(const char* file_path) {
  std::shared_ptr<Image> image;
  if (file_path != nullptr && *file_path != '\0') {
    image = std::make_shared<Image>();
    std::string problem;
    const int32_t status = loadImage(file_path, *image, problem);
    if (status != kSuccess) {
      context_.log.warning("image instead of the camera %s: %s", file_path, problem.c_str());
      return status;
    }
  }
  context_.thread.post([this, image = std::move(image)] { video_capture_->setStandIn(image); });
  return kSuccess;
}

int32_t RtcVideo::setLowLightAdjusted(int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setVideoEncoderConfig(const VideoEncoderConfig* channel_solutions, int32_t count) {
  if (channel_solutions == nullptr || count < 1 || count > kMaxLayers) return kInvalidParameter;
  if (!std::all_of(channel_solutions, channel_solutions + count, isLayer)) return kInvalidParameter;
  std::vector<VideoEncoding> encodings;
  for (int32_t at = 0; at < count; ++at) encodings.push_back(encodingOf(channel_solutions[at]));
  context_.thread.post([this, encodings = std::move(encodings)] { rooms_->setVideoEncodings(encodings); });
  return kSuccess;
}

int32_t RtcVideo::setMaxVideoEncoderConfig(const VideoEncoderConfig& /*max_solution*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setScreenVideoEncoderConfig(const VideoEncoderConfig& screen_solution) {
  if (!isLayer(screen_solution)) return kInvalidParameter;
  const VideoEncoding encoding = encodingOf(screen_solution);
  context_.thread.post([this, encoding] { rooms_->media(kStreamIndexScreen).setVideoEncodings({encoding}); });
  return kSuccess;
}

int32_t RtcVideo::enableSimulcastMode(bool enable) {
  context_.thread.post([this, enable] { rooms_->enableLayers(enable); });
  return kSuccess;
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

int32_t RtcVideo::setVideoDigitalZoomConfig(int32_t type, double size) {
  if (!isZoomConfig(type, size)) return kInvalidParameter;
  context_.thread.post([this, type, size] {
    if (type == kZoomConfigTypeFocusOffset) {
      zoom_->setZoomStep(size);
    } else {
      zoom_->setMoveStep(size);
    }
  });
  return kSuccess;
}

int32_t RtcVideo::setVideoDigitalZoomControl(int32_t direction) {
  if (!isZoomDirection(direction)) return kInvalidParameter;
  context_.thread.post([this, direction] { zoom_->step(direction); });
  return kSuccess;
}

int32_t RtcVideo::startVideoDigitalZoomControl(int32_t direction) {
  if (!isZoomDirection(direction)) return kInvalidParameter;
  context_.thread.post([this, direction] { zoom_->start(direction); });
  return kSuccess;
}

int32_t RtcVideo::stopVideoDigitalZoomControl() {
  context_.thread.post([this] { zoom_->stop(); });
  return kSuccess;
}

// Raw video in and out.

int32_t RtcVideo::setLocalVideoSink(int32_t stream_index, IVideoSink* sink, int32_t required_format) {
  if (stream_index == kStreamIndexMain) return local_video_.sink().attach(sink, required_format);
  return stream_index == kStreamIndexScreen ? screen_sink_.attach(sink, required_format) : kInvalidParameter;
}

int32_t RtcVideo::setRemoteVideoSink(const StreamKey& stream_key, IVideoSink* sink, int32_t required_format) {
  if (!isRoomOrUserId(stream_key.room_id) || !isRoomOrUserId(stream_key.user_id)) return kInvalidParameter;
  if (stream_key.stream_index != kStreamIndexMain && stream_key.stream_index != kStreamIndexScreen) {
    return kInvalidParameter;
  }
  return remote_sinks_.find(stream_key.room_id, stream_key.user_id, stream_key.stream_index)
      ->attach(sink, required_format);
}

int32_t RtcVideo::setPublicStreamVideoSink(const char* /*public_stream_id*/, IVideoSink* /*sink*/,
                                           int32_t /*required_format*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::registerVideoProcessor(IVideoProcessor* processor, const VideoPreprocessorConfig& config) {
  return local_video_.processor().attach(processor, config.required_pixel_format);
}

int32_t RtcVideo::setVideoSourceType(int32_t stream_index, int32_t type) {
  if (type != kVideoSourceTypeExternal && type != kVideoSourceTypeInternal) return kInvalidParameter;
  if (stream_index == kStreamIndexScreen) return notSupported("setVideoSourceType of the screen");
  if (stream_index != kStreamIndexMain) return kInvalidParameter;
  const bool pushed = type == kVideoSourceTypeExternal;
  if (pushed) {
    pushed_video_.open();
  } else {
    pushed_video_.close();
  }
  context_.thread.post([this, pushed] { video_capture_->setPushed(pushed); });
  return kSuccess;
}

int32_t RtcVideo::pushExternalVideoFrame(IVideoFrame* frame) {
  return pushed_video_.push(frame);
}

}  // namespace corvane::rtc
