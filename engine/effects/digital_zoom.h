// Digital zoom as applications steer it: in steps.
#pragma once

#include <cstdint>

#include "core/engine_thread.h"
#include "effects/local_video.h"

namespace corvane::rtc {

/// Sizes of steps and directions are those of the published headers, and valid. Engine thread only.
class DigitalZoom {
 public:
  /// How much one step does until the application says otherwise.
  static constexpr double kUsualZoomStep = 0.5;
  static constexpr double kUsualMoveStep = 0.1;

  DigitalZoom(EngineThread& thread, LocalVideo& local) : thread_(thread), local_(local) {}

  void setZoomStep(double size) { zoom_step_ = size; }
  void setMoveStep(double size) { move_step_ = size; }
  void step(int32_t direction);
  /// Steps until stop(), or until another direction is started.
  void start(int32_t direction);
  void stop() { next_.reset(); }

 private:
  EngineThread& thread_;
  LocalVideo& local_;
  double zoom_step_ = kUsualZoomStep;
  double move_step_ = kUsualMoveStep;
  ZoomArea area_;
  AttachedSource next_;
};

/// Whether setVideoDigitalZoomConfig() takes the size.
bool isZoomConfig(int32_t type, double size);
bool isZoomDirection(int32_t direction);

}  // namespace corvane::rtc
