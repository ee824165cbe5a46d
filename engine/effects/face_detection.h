// Looks for faces in the local picture and tells the application.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>

#include "corvane_rtc/face_detection.h"
#include "effects/face_cascade.h"
#include "effects/picture_shaper.h"
#include "media/picture.h"
#include "media/picture_taps.h"

namespace corvane::rtc {

/// Runs while it lives, on a thread of its own: pictures that come while it looks at one pass by.
class FaceDetection final : public PictureTap {
 public:
  /// `interval_ms`: shortest time between two results. All outlive this.
  FaceDetection(PictureTaps& taps, std::unique_ptr<const FaceCascade> cascade, int32_t interval_ms,
                IFaceDetectionObserver& observer);
  /// No call is inside the observer any more when it returns.
  ~FaceDetection();
  FaceDetection(const FaceDetection&) = delete;
  FaceDetection& operator=(const FaceDetection&) = delete;

  void onPicture(const Picture& picture) override;

 private:
  void run(const std::stop_token& stop);
  void look(Picture& picture);

  PictureTaps& taps_;
  const std::unique_ptr<const FaceCascade> cascade_;
  const GstClockTime interval_;
  IFaceDetectionObserver& observer_;
  GstClockTime next_ = 0;  // the pictures' thread's

  // The looking thread's.
  PictureShaper shaper_;
  GreyPicture small_;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::optional<Picture> waiting_;
  bool looking_ = false;
  std::jthread thread_;  // the last, as it uses the others
};

}  // namespace corvane::rtc
