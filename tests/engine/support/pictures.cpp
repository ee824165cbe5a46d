#include "support/pictures.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace corvane::test {

namespace {

constexpr size_t kKept = 200;

}  // namespace

int32_t TestPicture::rowBytes(size_t plane) const {
  if (format != rtc::kVideoPixelFormatI420) return width * 4;
  return plane == 0 ? width : (width + 1) / 2;
}

int32_t TestPicture::rows(size_t plane) const {
  return plane == 0 ? height : (height + 1) / 2;
}

uint8_t TestPicture::at(size_t plane, int32_t x, int32_t y) const {
  const int32_t shift = plane == 0 ? 0 : 1;
  const auto row = planes[plane].begin() + static_cast<ptrdiff_t>(y >> shift) * rowBytes(plane);
  return row[x >> shift];
}

rtc::VideoFrameBuilder TestPicture::builder() const {
  rtc::VideoFrameBuilder builder = {};
  builder.pixel_format = format;
  builder.width = width;
  builder.height = height;
  builder.rotation = rotation;
  builder.timestamp_us = timestamp_us;
  for (size_t plane = 0; plane < planeCount(); ++plane) {
    builder.data[plane] = planes[plane].data();
    builder.linesize[plane] = rowBytes(plane);
  }
  return builder;
}

TestPicture quartered(int32_t width, int32_t height, const Quarters& quarters) {
  TestPicture picture;
  picture.width = width;
  picture.height = height;
  for (size_t plane = 0; plane < 3; ++plane) {
    const int32_t columns = picture.rowBytes(plane);
    const int32_t rows = picture.rows(plane);
    for (int32_t y = 0; y < rows; ++y) {
      for (int32_t x = 0; x < columns; ++x) {
        const size_t quarter = (y >= rows / 2 ? 2U : 0U) + (x >= columns / 2 ? 1U : 0U);
        picture.planes[plane].push_back(quarters[quarter][plane]);
      }
    }
  }
  return picture;
}

Quarters quartersOf(const TestPicture& picture) {
  Quarters quarters = {};
  for (size_t quarter = 0; quarter < 4; ++quarter) {
    const int32_t x = picture.width * (quarter % 2 == 0 ? 1 : 3) / 4;
    const int32_t y = picture.height * (quarter < 2 ? 1 : 3) / 4;
    for (size_t plane = 0; plane < 3; ++plane) quarters[quarter][plane] = picture.at(plane, x, y);
  }
  return quarters;
}

bool isLike(const Quarters& left, const Quarters& right, int tolerance) {
  for (size_t quarter = 0; quarter < 4; ++quarter) {
    for (size_t plane = 0; plane < 3; ++plane) {
      if (std::abs(left[quarter][plane] - right[quarter][plane]) > tolerance) return false;
    }
  }
  return true;
}

TestPicture copyOf(const rtc::IVideoFrame& frame) {
  TestPicture picture;
  picture.format = frame.pixelFormat();
  picture.width = frame.width();
  picture.height = frame.height();
  picture.rotation = frame.rotation();
  picture.timestamp_us = frame.timestampUs();
  for (size_t plane = 0; plane < picture.planeCount(); ++plane) {
    const auto index = static_cast<int32_t>(plane);
    for (int32_t row = 0; row < picture.rows(plane); ++row) {
      const uint8_t* start = frame.planeData(index) + static_cast<ptrdiff_t>(row) * frame.planeStride(index);
      picture.planes[plane].insert(picture.planes[plane].end(), start, start + picture.rowBytes(plane));
    }
  }
  return picture;
}

bool PictureSink::onFrame(rtc::IVideoFrame* frame) {
  {
    const std::lock_guard lock(mutex_);
    if (pictures_.size() >= kKept) pictures_.erase(pictures_.begin());
    pictures_.push_back(copyOf(*frame));
    last_memory_ = frame->planeData(0);
  }
  frame->release();
  changed_.notify_all();
  return true;
}

std::optional<TestPicture> PictureSink::waitFor(const std::function<bool(const TestPicture&)>& fits,
                                                std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  std::optional<TestPicture> found;
  changed_.wait_for(lock, patience, [&] {
    const auto first = std::find_if(pictures_.begin(), pictures_.end(), fits);
    if (first != pictures_.end()) found = *first;
    return found.has_value();
  });
  return found;
}

std::vector<TestPicture> PictureSink::pictures() {
  const std::lock_guard lock(mutex_);
  return pictures_;
}

void PictureSink::forget() {
  const std::lock_guard lock(mutex_);
  pictures_.clear();
}

const uint8_t* PictureSink::lastMemory() {
  const std::lock_guard lock(mutex_);
  return last_memory_;
}

}  // namespace corvane::test
