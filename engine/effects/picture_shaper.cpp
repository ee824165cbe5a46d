#include "effects/picture_shaper.h"

#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace corvane::rtc {

namespace {

struct Area {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
};

// Colour is stored for pixels two by two.
int32_t even(double pixels) {
  return static_cast<int32_t>(std::lround(pixels)) & ~1;
}

// The area in the pixels as they are stored, which turning clockwise by `upright` makes upright.
Area storedArea(const ZoomArea& area, int32_t upright, int32_t width, int32_t height) {
  double x = area.centre_x;
  double y = area.centre_y;
  switch (upright) {
    case 90:
      std::tie(x, y) = std::pair(y, 1 - x);
      break;
    case 180:
      std::tie(x, y) = std::pair(1 - x, 1 - y);
      break;
    case 270:
      std::tie(x, y) = std::pair(1 - y, x);
      break;
    default:
      break;
  }
  Area stored;
  stored.width = std::clamp(even(width / area.factor), std::min(2, width), width);
  stored.height = std::clamp(even(height / area.factor), std::min(2, height), height);
  stored.x = std::clamp(even(x * width - stored.width / 2.0), 0, width - stored.width) & ~1;
  stored.y = std::clamp(even(y * height - stored.height / 2.0), 0, height - stored.height) & ~1;
  return stored;
}

}  // namespace

bool PictureShaper::zoom(Picture& picture, const ZoomArea& area, int32_t upright) {
  const int32_t width = GST_VIDEO_INFO_WIDTH(&picture.info);
  const int32_t height = GST_VIDEO_INFO_HEIGHT(&picture.info);
  const GstVideoInfo info = pictureInfo(GST_VIDEO_FORMAT_I420, width, height);
  GstPtr<GstBuffer> zoomed = zoomed_.acquire(info);
  if (zoomed == nullptr) return false;
  {
    const PicturePixels from(picture.buffer.get(), picture.info, GST_MAP_READ);
    const PicturePixels to(zoomed.get(), info, GST_MAP_WRITE);
    if (!from || !to) return false;
    const Area part = storedArea(area, upright, width, height);
    const auto start = [&](int32_t plane) {
      const int32_t shift = plane == 0 ? 0 : 1;
      return from.plane(plane) + static_cast<ptrdiff_t>(part.y >> shift) * from.stride(plane) + (part.x >> shift);
    };
    if (libyuv::I420Scale(start(0), from.stride(0), start(1), from.stride(1), start(2), from.stride(2), part.width,
                          part.height, to.plane(0), to.stride(0), to.plane(1), to.stride(1), to.plane(2), to.stride(2),
                          width, height, libyuv::kFilterBilinear) != 0) {
      return false;
    }
  }
  picture.buffer = std::move(zoomed);
  picture.info = info;
  return true;
}

bool PictureShaper::turn(Picture& picture, int32_t degrees, bool mirror) {
  const bool lies = picture.rotation % 180 != 0;
  // Exchanging top and bottom is the same as turning by half and exchanging left and right.
  if (mirror && lies) degrees = (degrees + 180) % 360;
  const bool swaps = degrees % 180 != 0;
  const int32_t width = GST_VIDEO_INFO_WIDTH(&picture.info);
  const int32_t height = GST_VIDEO_INFO_HEIGHT(&picture.info);
  const GstVideoInfo info = pictureInfo(GST_VIDEO_FORMAT_I420, swaps ? height : width, swaps ? width : height);
  GstPtr<GstBuffer> turned = turned_.acquire(info);
  if (turned == nullptr) return false;
  {
    const PicturePixels from(picture.buffer.get(), picture.info, GST_MAP_READ);
    const PicturePixels to(turned.get(), info, GST_MAP_WRITE);
    if (!from || !to) return false;
    const auto apply = [&](auto operation, int32_t rows, auto... more) {
      return operation(from.plane(0), from.stride(0), from.plane(1), from.stride(1), from.plane(2), from.stride(2),
                       to.plane(0), to.stride(0), to.plane(1), to.stride(1), to.plane(2), to.stride(2), width, rows,
                       more...);
    };
    // With a negative number of rows the picture is read from its last row on. Before a quarter's turn that amounts to
    // exchanging left and right after it.
    int failed = 0;
    if (!mirror || swaps) {
      failed = apply(&libyuv::I420Rotate, mirror ? -height : height, static_cast<libyuv::RotationMode>(degrees));
    } else if (degrees == 180) {
      failed = apply(&libyuv::I420Copy, -height);
    } else {
      failed = apply(&libyuv::I420Mirror, height);
    }
    if (failed != 0) return false;
  }
  picture.buffer = std::move(turned);
  picture.info = info;
  return true;
}

}  // namespace corvane::rtc
