// A decoded picture file.
#pragma once

#include <cstdint>
#include <vector>

namespace corvane::rtc {

struct Image {
  int32_t width = 0;            ///< pixels
  int32_t height = 0;           ///< pixels
  std::vector<uint8_t> pixels;  ///< bytes R, G, B, A; A is not multiplied into the others
};

}  // namespace corvane::rtc
