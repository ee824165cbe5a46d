// Faces found in the local video.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Faces in one picture.
struct FaceDetectionResult {
  int32_t detect_result;       ///< 0, or a negative ReturnStatus; there are no faces then
  int32_t face_count;          ///< entries of rect; any number
  const Rectangle* rect;       ///< in pixels of the picture; may be null when face_count is 0
  int32_t image_width;         ///< pixels
  int32_t image_height;        ///< pixels
  int64_t frame_timestamp_us;  ///< the picture's time in microseconds on the engine's clock
};

/// Observer given to IVideoEffect::enableFaceDetection(). Called on the engine's video thread, one result at a time;
/// a result is valid during the call only. The observer stays the caller's and lives until replaced, until
/// disableFaceDetection() or until destroyRTCVideo() has returned, whichever comes first.
class IFaceDetectionObserver {
 public:
  virtual void onFaceDetectResult([[maybe_unused]] const FaceDetectionResult& result) {}

 protected:
  ~IFaceDetectionObserver() = default;
};

}  // namespace corvane::rtc
