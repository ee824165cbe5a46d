// Effects on the local picture as applications call them.
#pragma once

#include <memory>
#include <mutex>

#include "api/missing_operations.h"
#include "core/engine_context.h"
#include "corvane_rtc/video_effect.h"
#include "effects/face_detection.h"
#include "effects/local_video.h"

namespace corvane::rtc {

class VideoEffect final : public IVideoEffect {
 public:
  /// All outlive this.
  VideoEffect(EngineContext& context, MissingOperations& missing, LocalVideo& local)
      : context_(context), missing_(missing), local_(local) {}

  int32_t enableVideoEffect() override;
  int32_t disableVideoEffect() override;
  int32_t setEffectNodes(const char* effect_node_path) override;
  int32_t updateEffectNode(const char* effect_node_path, const char* node_key, double node_value) override;
  int32_t setColorFilter(const char* filter_path) override;
  int32_t setColorFilterIntensity(double intensity) override;
  int32_t enableEffectBeauty(bool enable) override;
  int32_t setBeautyIntensity(int32_t beauty_mode, double intensity) override;
  int32_t enableVirtualBackground(const char* bg_sticker_path, const VirtualBackgroundSource& source) override;
  int32_t disableVirtualBackground() override;
  int32_t enableFaceDetection(int32_t interval_ms, const char* face_model_path,
                              IFaceDetectionObserver* observer) override;
  int32_t disableFaceDetection() override;
  int32_t setVideoWatermark(int32_t stream_index, const char* image_path, const WatermarkConfig& config) override;
  int32_t clearVideoWatermark(int32_t stream_index) override;

 private:
  EngineContext& context_;
  MissingOperations& missing_;
  LocalVideo& local_;
  std::mutex mutex_;
  std::unique_ptr<FaceDetection> faces_;
};

}  // namespace corvane::rtc
