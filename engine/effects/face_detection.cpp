#include "effects/face_detection.h"

#include <libyuv.h>

#include <algorithm>
#include <utility>

#include "capture/pipeline.h"
#include "core/engine_thread.h"

namespace corvane::rtc {

namespace {

// What is looked at: a face of a seventh of the picture's height still has the pixels that it takes.
constexpr int32_t kMaxWidth = 320;
constexpr int32_t kMaxHeight = 180;

}  // namespace

FaceDetection::FaceDetection(PictureTaps& taps, std::unique_ptr<const FaceCascade> cascade, int32_t interval_ms,
                             IFaceDetectionObserver& observer)
    : taps_(taps),
      cascade_(std::move(cascade)),
      interval_(static_cast<GstClockTime>(interval_ms) * GST_MSECOND),
      observer_(observer) {
  thread_ = std::jthread([this](const std::stop_token& stop) {
    nameThread("face-detection");
    run(stop);
  });
  taps_.add(*this);
}

FaceDetection::~FaceDetection() {
  taps_.remove(*this);
}

void FaceDetection::onPicture(const Picture& picture) {
  const GstClockTime now = clockNow();
  if (now < next_) return;
  {
    const std::lock_guard lock(mutex_);
    if (looking_ || waiting_) return;
    waiting_ = Picture{GstPtr<GstBuffer>(gst_buffer_ref(picture.buffer.get())), picture.info, picture.timestamp_us,
                       picture.rotation};
  }
  next_ = now + interval_;
  changed_.notify_all();
}

void FaceDetection::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (changed_.wait(lock, stop, [this] { return waiting_.has_value(); })) {
    Picture picture = std::move(*waiting_);
    waiting_.reset();
    looking_ = true;
    lock.unlock();
    look(picture);
    picture = {};
    lock.lock();
    looking_ = false;
  }
}

void FaceDetection::look(Picture& picture) {
  if (picture.rotation != 0) shaper_.turn(picture, picture.rotation, false);
  const int32_t width = GST_VIDEO_INFO_WIDTH(&picture.info);
  const int32_t height = GST_VIDEO_INFO_HEIGHT(&picture.info);
  const double scale =
      std::max({1.0, static_cast<double>(width) / kMaxWidth, static_cast<double>(height) / kMaxHeight});
  small_.width = std::max(1, static_cast<int32_t>(width / scale));
  small_.height = std::max(1, static_cast<int32_t>(height / scale));
  small_.pixels.resize(static_cast<size_t>(small_.width) * static_cast<size_t>(small_.height));
  FaceDetectionResult result = {kMediaFailure, 0, nullptr, width, height, picture.timestamp_us};
  std::vector<Rectangle> faces;
  if (const PicturePixels pixels(picture.buffer.get(), picture.info, GST_MAP_READ); pixels) {
    libyuv::ScalePlane(pixels.plane(0), pixels.stride(0), width, height, small_.pixels.data(), small_.width,
                       small_.width, small_.height, libyuv::kFilterBox);
    faces = cascade_->find(small_);
    for (Rectangle& face : faces) {
      const auto full = [scale](int32_t value) { return static_cast<int32_t>(value * scale); };
      face = {full(face.x), full(face.y), full(face.width), full(face.height)};
    }
    result.detect_result = kSuccess;
    result.face_count = static_cast<int32_t>(faces.size());
    result.rect = faces.data();
  }
  observer_.onFaceDetectResult(result);
}

}  // namespace corvane::rtc
