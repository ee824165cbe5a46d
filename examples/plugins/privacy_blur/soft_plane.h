// One plane of a picture, made so soft that what was in it cannot be brought back.
#pragma once

#include <cstdint>
#include <vector>

namespace privacy_blur {

/// A rectangle in pixels of the plane; empty when the width or height is 0.
struct Area {
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
};

/// Keeps its memory from picture to picture. One thread.
class SoftPlane {
 public:
  /// Replaces all pixels but those in `kept` by a smooth surface through the averages of blocks of `block` x `block`
  /// pixels, at least 2.
  void soften(uint8_t* pixels, int32_t stride, int32_t width, int32_t height, int32_t block, const Area& kept);

 private:
  void average(const uint8_t* pixels, int32_t stride, int32_t width, int32_t height, int32_t block);
  void smooth();
  void blendRow(int32_t y, int32_t block);
  void spread(uint8_t* row, int32_t from, int32_t to, int32_t block) const;

  int32_t columns_ = 0;
  int32_t rows_ = 0;
  std::vector<uint16_t> blocks_;    // averages of all blocks, row by row
  std::vector<uint16_t> smoothed_;  // each mixed with its neighbours
  std::vector<uint32_t> sums_;
  std::vector<uint16_t> line_;  // the surface at the height of one row of pixels, one value a block
};

}  // namespace privacy_blur
