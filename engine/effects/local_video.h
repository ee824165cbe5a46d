// What becomes of the local picture between its capture and those who receive it.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "corvane_rtc/common.h"
#include "corvane_rtc/video_config.h"
#include "effects/picture_shaper.h"
#include "effects/snapshots.h"
#include "effects/video_processor_slot.h"
#include "effects/watermark.h"
#include "media/picture.h"
#include "media/picture_taps.h"
#include "media/video_sink_slot.h"

namespace corvane::rtc {

/// Zoom, rotation, the application's processor, mirror, watermark, sink and taps, in this order. What is off costs
/// nothing: the captured buffer itself reaches the sink then.
class LocalVideo {
 public:
  /// `snapshots` are offered what the sink is given.
  explicit LocalVideo(Snapshots& snapshots) : snapshots_(snapshots) {}

  // Settings: any thread; they count from the next picture on.

  void setRotation(int32_t degrees);
  void setMirror(int32_t mirror_type);  ///< MirrorType
  void setZoom(const ZoomArea& area);
  /// Null removes it.
  void setWatermark(std::shared_ptr<const Watermark> watermark);
  VideoProcessorSlot& processor() { return processor_; }
  VideoSinkSlot& sink() { return sink_; }
  /// Who sends or stores what the others are to see: mirrored and marked as for them, not as for the sink.
  PictureTaps& taps() { return taps_; }

  // Pictures in I420: one thread at a time.

  /// A captured picture. Returns the size and rotation in which it is handed out.
  VideoFrameInfo show(Picture picture);
  /// A picture that stands in for captured ones.
  void showAsIs(Picture picture);

 private:
  struct Settings {
    int32_t rotation = 0;
    int32_t mirror = kMirrorTypeNone;
    ZoomArea zoom;
    std::shared_ptr<const Watermark> watermark;
  };

  Settings settings();

  Snapshots& snapshots_;
  std::mutex mutex_;  // of settings_ only
  Settings settings_;
  VideoProcessorSlot processor_;
  VideoSinkSlot sink_;
  PictureTaps taps_;
  // The thread's that shows.
  PictureShaper turner_;
  PictureShaper mirrorer_;
  WatermarkBlender blender_;
};

}  // namespace corvane::rtc
