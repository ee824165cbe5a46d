// A picture file that is blended into the local picture.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "corvane_rtc/video_effect.h"
#include "media/image.h"
#include "media/picture.h"

namespace corvane::rtc {

struct Watermark {
  Image image;
  WatermarkConfig config;
};

/// Whether both places lie in the picture at least in part, or are empty.
bool isWatermarkPlace(const WatermarkConfig& config);

/// Keeps the watermark in the size, direction and colours in which the last picture took it. One thread at a time.
class WatermarkBlender {
 public:
  /// False, with the picture as it was, when there is no memory.
  bool blend(Picture& picture, const std::shared_ptr<const Watermark>& watermark);

 private:
  // What the overlay below was made for.
  struct Shape {
    int32_t width = 0;
    int32_t height = 0;
    int32_t rotation = 0;
    bool operator==(const Shape&) const = default;
  };

  struct Plane {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> pixels;
    std::vector<uint8_t> alpha;
  };

  void prepare(const Watermark& watermark, const Shape& shape);

  std::shared_ptr<const Watermark> prepared_;
  Shape shape_;
  int32_t x_ = 0;  // where the overlay's first pixel goes, even
  int32_t y_ = 0;
  Plane planes_[3];  // empty where nothing of the watermark is seen
  PicturePool pool_;
};

}  // namespace corvane::rtc
