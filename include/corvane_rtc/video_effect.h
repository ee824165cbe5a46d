// Effects on the local camera's picture, its background and what is found in it.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

class IFaceDetectionObserver;

enum VirtualBackgroundSourceType : int32_t {
  kVirtualBackgroundSourceTypeColor = 0,
  kVirtualBackgroundSourceTypeImage = 1,
};

/// What stands behind the person.
struct VirtualBackgroundSource {
  int32_t source_type;      ///< VirtualBackgroundSourceType
  const char* source_path;  ///< image file; with the image type only
  uint32_t source_color;    ///< 0xAARRGGBB; with the colour type only
};

enum EffectBeautyMode : int32_t {
  kEffectBeautyModeWhite = 0,
  kEffectBeautyModeSmooth = 1,
  kEffectBeautyModeSharpen = 2,
};

/// Place of a watermark as shares of the picture's width and height, 0 to 1.
struct WatermarkPosition {
  double width;
  double height;
  double x;  ///< left edge
  double y;  ///< top edge
};

struct WatermarkConfig {
  bool visible_in_preview;  ///< false: only receivers see it
  WatermarkPosition position_in_landscape_mode;
  WatermarkPosition position_in_portrait_mode;
};

/// Effects. Belongs to the engine; threads as for IRTCVideo. Intensities run from 0 (none) to 1.
class IVideoEffect {
 public:
  virtual int32_t enableVideoEffect() = 0;
  virtual int32_t disableVideoEffect() = 0;
  virtual int32_t setEffectNodes(const char* effect_node_path) = 0;  ///< folder of one effect; "" removes it
  virtual int32_t updateEffectNode(const char* effect_node_path, const char* node_key, double node_value) = 0;
  virtual int32_t setColorFilter(const char* filter_path) = 0;  ///< "" removes it
  virtual int32_t setColorFilterIntensity(double intensity) = 0;
  virtual int32_t enableEffectBeauty(bool enable) = 0;
  virtual int32_t setBeautyIntensity(int32_t beauty_mode, double intensity) = 0;  ///< EffectBeautyMode

  /// bg_sticker_path: folder of the model that tells person from background.
  virtual int32_t enableVirtualBackground(const char* bg_sticker_path, const VirtualBackgroundSource& source) = 0;
  virtual int32_t disableVirtualBackground() = 0;

  /// interval_ms: shortest time between two results, above 0. The observer replaces the previous one and stays
  /// the caller's.
  virtual int32_t enableFaceDetection(int32_t interval_ms, const char* face_model_path,
                                      IFaceDetectionObserver* observer) = 0;
  virtual int32_t disableFaceDetection() = 0;  ///< no call is inside the observer any more when this returns

  virtual int32_t setVideoWatermark(int32_t stream_index, const char* image_path, const WatermarkConfig& config) = 0;
  virtual int32_t clearVideoWatermark(int32_t stream_index) = 0;

 protected:
  ~IVideoEffect() = default;
};

}  // namespace corvane::rtc
