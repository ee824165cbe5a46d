#include "effects/watermark.h"

#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr int32_t kPixelBytes = 4;

bool isPlace(const WatermarkPosition& place) {
  const auto is_share = [](double share) { return share >= 0 && share <= 1; };  // NaN is none
  return is_share(place.x) && is_share(place.y) && is_share(place.width) && is_share(place.height);
}

struct Rgba {
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> pixels;

  Rgba(int32_t columns, int32_t rows)
      : width(columns), height(rows), pixels(static_cast<size_t>(columns) * static_cast<size_t>(rows) * kPixelBytes) {}
  int32_t stride() const { return width * kPixelBytes; }
};

// What is transparent has a colour, too, which must not show at the edges: it counts by its weight while scaling.
Rgba scale(const Image& image, int32_t width, int32_t height) {
  Rgba weighted(image.width, image.height);
  libyuv::ARGBAttenuate(image.pixels.data(), image.width * kPixelBytes, weighted.pixels.data(), weighted.stride(),
                        image.width, image.height);
  Rgba scaled(width, height);
  libyuv::ARGBScale(weighted.pixels.data(), weighted.stride(), weighted.width, weighted.height, scaled.pixels.data(),
                    scaled.stride(), width, height, libyuv::kFilterBox);
  libyuv::ARGBUnattenuate(scaled.pixels.data(), scaled.stride(), scaled.pixels.data(), scaled.stride(), width, height);
  return scaled;
}

int32_t even(double pixels) {
  return static_cast<int32_t>(std::lround(pixels)) & ~1;
}

}  // namespace

bool isWatermarkPlace(const WatermarkConfig& config) {
  return isPlace(config.position_in_landscape_mode) && isPlace(config.position_in_portrait_mode);
}

bool WatermarkBlender::blend(Picture& picture, const std::shared_ptr<const Watermark>& watermark) {
  const Shape shape = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info), picture.rotation};
  if (watermark != prepared_ || shape != shape_) {
    prepare(*watermark, shape);
    prepared_ = watermark;
    shape_ = shape;
  }
  if (planes_[0].pixels.empty()) return true;
  if (!makeWritable(picture, pool_)) return false;
  const PicturePixels pixels(picture.buffer.get(), picture.info, GST_MAP_READWRITE);
  if (!pixels) return false;
  for (int32_t index = 0; index < 3; ++index) {
    const Plane& plane = planes_[index];
    const int32_t shift = index == 0 ? 0 : 1;
    const int32_t stride = pixels.stride(index);
    uint8_t* target = pixels.plane(index) + static_cast<ptrdiff_t>(y_ >> shift) * stride + (x_ >> shift);
    libyuv::BlendPlane(plane.pixels.data(), plane.width, target, stride, plane.alpha.data(), plane.width, target,
                       stride, plane.width, plane.height);
  }
  return true;
}

void WatermarkBlender::prepare(const Watermark& watermark, const Shape& shape) {
  for (Plane& plane : planes_) plane = {};
  const bool lies = shape.rotation % 180 != 0;
  const int32_t width = lies ? shape.height : shape.width;  // of the upright picture
  const int32_t height = lies ? shape.width : shape.height;
  const WatermarkPosition& place =
      width >= height ? watermark.config.position_in_landscape_mode : watermark.config.position_in_portrait_mode;
  const int32_t x = even(place.x * width);
  const int32_t y = even(place.y * height);
  const int32_t whole_width = even(place.width * width);
  const int32_t whole_height = even(place.height * height);
  // What would reach beyond the picture is cut off.
  const int32_t seen_width = std::min(whole_width, width - x) & ~1;
  const int32_t seen_height = std::min(whole_height, height - y) & ~1;
  if (seen_width <= 0 || seen_height <= 0) return;

  const Rgba scaled = scale(watermark.image, whole_width, whole_height);
  // The stored picture is the upright one turned back.
  Rgba stored(lies ? seen_height : seen_width, lies ? seen_width : seen_height);
  libyuv::ARGBRotate(scaled.pixels.data(), scaled.stride(), stored.pixels.data(), stored.stride(), seen_width,
                     seen_height, static_cast<libyuv::RotationMode>((360 - shape.rotation) % 360));
  switch (shape.rotation) {
    case 90:
      std::tie(x_, y_) = std::pair(y, shape.height - x - seen_width);
      break;
    case 180:
      std::tie(x_, y_) = std::pair(shape.width - x - seen_width, shape.height - y - seen_height);
      break;
    case 270:
      std::tie(x_, y_) = std::pair(shape.width - y - seen_height, x);
      break;
    default:
      std::tie(x_, y_) = std::pair(x, y);
      break;
  }
  x_ &= ~1;
  y_ &= ~1;

  for (int32_t index = 0; index < 3; ++index) {
    Plane& plane = planes_[index];
    plane.width = index == 0 ? stored.width : stored.width / 2;
    plane.height = index == 0 ? stored.height : stored.height / 2;
    plane.pixels.resize(static_cast<size_t>(plane.width) * static_cast<size_t>(plane.height));
    plane.alpha.resize(plane.pixels.size());
  }
  libyuv::ABGRToI420(stored.pixels.data(), stored.stride(), planes_[0].pixels.data(), planes_[0].width,
                     planes_[1].pixels.data(), planes_[1].width, planes_[2].pixels.data(), planes_[2].width,
                     stored.width, stored.height);
  libyuv::ARGBExtractAlpha(stored.pixels.data(), stored.stride(), planes_[0].alpha.data(), planes_[0].width,
                           stored.width, stored.height);
  libyuv::ScalePlane(planes_[0].alpha.data(), planes_[0].width, planes_[0].width, planes_[0].height,
                     planes_[1].alpha.data(), planes_[1].width, planes_[1].width, planes_[1].height,
                     libyuv::kFilterBox);
  planes_[2].alpha = planes_[1].alpha;
}

}  // namespace corvane::rtc
