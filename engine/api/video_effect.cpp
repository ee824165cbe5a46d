#include "api/video_effect.h"

#include <unistd.h>

#include <memory>
#include <string>
#include <utility>

#include "capture/image_file.h"

namespace corvane::rtc {

namespace {

// Where the package that has cascades puts them.
constexpr const char* kUsualFaceModel = "/usr/share/opencv4/lbpcascades/lbpcascade_frontalface.xml";

}  // namespace

int32_t VideoEffect::enableVideoEffect() {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::disableVideoEffect() {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::setEffectNodes(const char* /*effect_node_path*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::updateEffectNode(const char* /*effect_node_path*/, const char* /*node_key*/,
                                      double /*node_value*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::setColorFilter(const char* /*filter_path*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::setColorFilterIntensity(double /*intensity*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::enableEffectBeauty(bool /*enable*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::setBeautyIntensity(int32_t /*beauty_mode*/, double /*intensity*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::enableVirtualBackground(const char* /*bg_sticker_path*/,
                                             const VirtualBackgroundSource& /*source*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::disableVirtualBackground() {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::enableFaceDetection(int32_t interval_ms, const char* face_model_path,
                                         IFaceDetectionObserver* observer) {
  if (interval_ms <= 0 || observer == nullptr) return kInvalidParameter;
  const bool is_named = face_model_path != nullptr && *face_model_path != '\0';
  const std::string path = is_named ? face_model_path : kUsualFaceModel;
  if (access(path.c_str(), R_OK) != 0) {
    context_.log.warning("face detection: %s cannot be read%s", path.c_str(),
                         is_named ? "" : "; the Debian package opencv-data has it");
    return kNotFound;
  }
  std::string problem;
  std::unique_ptr<const FaceCascade> cascade = FaceCascade::load(path, problem);
  if (cascade == nullptr) {
    context_.log.warning("face detection: %s", problem.c_str());
    return kInvalidParameter;
  }
  const std::lock_guard lock(mutex_);
  faces_.reset();
  faces_ = std::make_unique<FaceDetection>(local_.taps(), std::move(cascade), interval_ms, *observer);
  return kSuccess;
}

int32_t VideoEffect::disableFaceDetection() {
  const std::lock_guard lock(mutex_);
  faces_.reset();
  return kSuccess;
}

int32_t VideoEffect::setVideoWatermark(int32_t stream_index, const char* image_path, const WatermarkConfig& config) {
  if (stream_index == kStreamIndexScreen) return missing_.refuse("setVideoWatermark of the screen");
  if (stream_index != kStreamIndexMain || image_path == nullptr || !isWatermarkPlace(config)) return kInvalidParameter;
  auto watermark = std::make_shared<Watermark>();
  watermark->config = config;
  std::string problem;
  const int32_t status = loadImage(image_path, watermark->image, problem);
  if (status != kSuccess) {
    context_.log.warning("watermark %s: %s", image_path, problem.c_str());
    return status;
  }
  local_.setWatermark(std::move(watermark));
  return kSuccess;
}

int32_t VideoEffect::clearVideoWatermark(int32_t stream_index) {
  if (stream_index == kStreamIndexScreen) return missing_.refuse("clearVideoWatermark of the screen");
  if (stream_index != kStreamIndexMain) return kInvalidParameter;
  local_.setWatermark(nullptr);
  return kSuccess;
}

}  // namespace corvane::rtc
