// Resizing with bicubic interpolation.
#pragma once

#include <cstdint>
#include <vector>

namespace corvane::platform {

/// Resizes a picture of 4 bytes a pixel and rows without gaps; all sizes are above 0. A smaller picture averages over
/// everything that falls into each of its pixels.
std::vector<uint8_t> resizeBicubic(const uint8_t* pixels, int32_t width, int32_t height, int32_t new_width,
                                   int32_t new_height);

}  // namespace corvane::platform
