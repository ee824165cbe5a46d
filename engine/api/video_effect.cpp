#include "api/video_effect.h"

#include <memory>
#include <string>
#include <utility>

#include "capture/image_file.h"

namespace corvane::rtc {

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

int32_t VideoEffect::enableFaceDetection(int32_t /*interval_ms*/, const char* /*face_model_path*/,
                                         IFaceDetectionObserver* /*observer*/) {
  return missing_.refuse(__func__);
}

int32_t VideoEffect::disableFaceDetection() {
  return missing_.refuse(__func__);
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
