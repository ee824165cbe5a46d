#include "plugin/video_record.h"

#include <cstddef>
#include <cstring>
#include <new>

namespace corvane {
namespace {

static_assert(offsetof(plugin::VideoFrame, data_y) == 24 && offsetof(plugin::VideoFrame, rotation) == 48 &&
              offsetof(plugin::VideoFrame, timestamp) == 56);

constexpr int32_t kPlanes = 3;
constexpr int64_t kMostPixels = int64_t{1} << 29U;

void copyRows(uint8_t* to, size_t to_stride, const uint8_t* from, size_t from_stride, size_t width, size_t rows) {
  if (to_stride == width && from_stride == width) {
    std::memcpy(to, from, width * rows);
    return;
  }
  for (size_t row = 0; row < rows; ++row) std::memcpy(to + row * to_stride, from + row * from_stride, width);
}

}  // namespace

std::optional<PlanarSize> PlanarSize::of(const rtc::IVideoFrame& frame) {
  if (frame.frameType() != rtc::kVideoFrameRawMemory || frame.pixelFormat() != rtc::kVideoPixelFormatI420) return {};
  const PlanarSize size{frame.width(), frame.height()};
  if (size.width <= 0 || size.height <= 0 || int64_t{size.width} * size.height > kMostPixels) return {};
  for (int32_t plane = 0; plane < kPlanes; ++plane) {
    if (frame.planeData(plane) == nullptr || frame.planeStride(plane) < size.planeWidth(plane)) return {};
  }
  return size;
}

bool VideoRecord::resize(const PlanarSize& size) {
  if (size_ == size) return true;
  size_ = {};
  pixels_.reset(new (std::nothrow) uint8_t[size.bytes()]);
  if (pixels_ == nullptr) return false;
  size_ = size;
  return true;
}

uint8_t* VideoRecord::plane(int32_t plane) const {
  uint8_t* start = pixels_.get();
  for (int32_t before = 0; before < plane; ++before) start += size_.bytes(before);
  return start;
}

void VideoRecord::copyFrom(const rtc::IVideoFrame& frame, uint32_t index) {
  index_ = index;
  frame_ = {size_.width,
            size_.height,
            size_.planeWidth(0),
            size_.planeWidth(1),
            size_.planeWidth(2),
            0,
            plane(0),
            plane(1),
            plane(2),
            frame.rotation(),
            0,
            frame.timestampUs()};
  for (int32_t i = 0; i < kPlanes; ++i) {
    const auto width = static_cast<size_t>(size_.planeWidth(i));
    copyRows(plane(i), width, frame.planeData(i), static_cast<size_t>(frame.planeStride(i)), width,
             static_cast<size_t>(size_.planeHeight(i)));
  }
}

void VideoRecord::copyTo(rtc::IVideoFrame& frame) const {
  const PlanarSize wanted{frame.width(), frame.height()};
  if (wanted != size_ || wanted != PlanarSize{frame_.width, frame_.height}) return;
  for (int32_t i = 0; i < kPlanes; ++i) {
    const auto width = static_cast<size_t>(size_.planeWidth(i));
    copyRows(frame.planeData(i), static_cast<size_t>(frame.planeStride(i)), plane(i), width, width,
             static_cast<size_t>(size_.planeHeight(i)));
  }
}

std::unique_ptr<VideoRecord> VideoRecords::take(const PlanarSize& size) {
  std::unique_ptr<VideoRecord> record;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!resting_.empty()) {
      record = std::move(resting_.back());
      resting_.pop_back();
    }
  }
  if (record == nullptr) record = std::make_unique<VideoRecord>();
  return record->resize(size) ? std::move(record) : nullptr;
}

void VideoRecords::giveBack(std::unique_ptr<VideoRecord> record) {
  if (record == nullptr) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  resting_.push_back(std::move(record));
}

void VideoRecords::clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  resting_.clear();
}

}  // namespace corvane
