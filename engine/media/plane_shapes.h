// What the planes of a published pixel format hold.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

inline constexpr size_t kMaxPlanes = 3;
/// Larger than any picture that can be shown, small enough that no size in bytes overflows.
inline constexpr int32_t kMaxPictureSide = 16384;

struct PlaneShape {
  int32_t row_bytes = 0;
  int32_t rows = 0;  ///< 0 for a plane that the format lacks
};

/// Of I420, RGBA or ARGB pixels.
constexpr std::array<PlaneShape, kMaxPlanes> planeShapes(int32_t pixel_format, int32_t width, int32_t height) {
  if (pixel_format != kVideoPixelFormatI420) return {{{width * 4, height}}};
  const PlaneShape chroma = {(width + 1) / 2, (height + 1) / 2};
  return {{{width, height}, chroma, chroma}};
}

/// Whether pictures come in this format, size and rotation.
constexpr bool isPictureShape(int32_t pixel_format, int32_t width, int32_t height, int32_t rotation) {
  const bool known_format = pixel_format == kVideoPixelFormatI420 || pixel_format == kVideoPixelFormatRGBA ||
                            pixel_format == kVideoPixelFormatARGB;
  return known_format && width > 0 && width <= kMaxPictureSide && height > 0 && height <= kMaxPictureSide &&
         rotation >= 0 && rotation < 360 && rotation % 90 == 0;
}

}  // namespace corvane::rtc
