#include "soft_plane.h"

#include <algorithm>
#include <cstddef>

namespace privacy_blur {
namespace {

// Averages are kept with this many binary places, so that the surface has no steps.
constexpr int32_t kPlaces = 8;

int32_t blocksIn(int32_t pixels, int32_t block) {
  return (pixels + block - 1) / block;
}

// The surface runs evenly from the middle of a block to that of the next. Stretch n ends at the middle of block n;
// before the first middle and behind the last one it is level.
int32_t stretchOf(int32_t pixel, int32_t block) {
  return (pixel + block / 2) / block;
}

int32_t startOf(int32_t stretch, int32_t block) {
  return stretch * block - block / 2;
}

}  // namespace

void SoftPlane::soften(uint8_t* pixels, int32_t stride, int32_t width, int32_t height, int32_t block,
                       const Area& kept) {
  average(pixels, stride, width, height, block);
  smooth();
  line_.resize(static_cast<size_t>(columns_));
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* row = pixels + static_cast<ptrdiff_t>(y) * stride;
    blendRow(y, block);
    const bool is_kept = y >= kept.y && y < kept.y + kept.height;
    spread(row, 0, is_kept ? std::clamp(kept.x, 0, width) : width, block);
    if (is_kept) spread(row, std::clamp(kept.x + kept.width, 0, width), width, block);
  }
}

void SoftPlane::average(const uint8_t* pixels, int32_t stride, int32_t width, int32_t height, int32_t block) {
  columns_ = blocksIn(width, block);
  rows_ = blocksIn(height, block);
  blocks_.resize(static_cast<size_t>(columns_) * static_cast<size_t>(rows_));
  uint16_t* out = blocks_.data();
  for (int32_t top = 0; top < height; top += block) {
    const int32_t bottom = std::min(top + block, height);
    sums_.assign(static_cast<size_t>(columns_), 0);
    for (int32_t y = top; y < bottom; ++y) {
      const uint8_t* row = pixels + static_cast<ptrdiff_t>(y) * stride;
      for (int32_t column = 0; column < columns_; ++column) {
        const int32_t right = std::min((column + 1) * block, width);
        uint32_t sum = 0;
        for (int32_t x = column * block; x < right; ++x) sum += row[x];
        sums_[static_cast<size_t>(column)] += sum;
      }
    }
    for (int32_t column = 0; column < columns_; ++column) {
      const int32_t across = std::min(block, width - column * block);
      const auto count = static_cast<uint32_t>(across * (bottom - top));
      *out++ = static_cast<uint16_t>((sums_[static_cast<size_t>(column)] << kPlaces) / count);
    }
  }
}

// Without this the grid of the blocks shows.
void SoftPlane::smooth() {
  smoothed_.resize(blocks_.size());
  const auto at = [this](int32_t row, int32_t column) {
    const auto inside_row = static_cast<size_t>(std::clamp(row, 0, rows_ - 1));
    const auto inside_column = static_cast<size_t>(std::clamp(column, 0, columns_ - 1));
    return uint32_t{blocks_[inside_row * static_cast<size_t>(columns_) + inside_column]};
  };
  uint16_t* out = smoothed_.data();
  for (int32_t row = 0; row < rows_; ++row) {
    for (int32_t column = 0; column < columns_; ++column) {
      uint32_t sum = 0;
      for (int32_t near = -1; near <= 1; ++near) {
        const uint32_t weight = near == 0 ? 2 : 1;
        sum += weight * (at(row + near, column - 1) + 2 * at(row + near, column) + at(row + near, column + 1));
      }
      *out++ = static_cast<uint16_t>(sum / 16);
    }
  }
}

void SoftPlane::blendRow(int32_t y, int32_t block) {
  const int32_t stretch = stretchOf(y, block);
  const auto share = static_cast<uint32_t>((y - startOf(stretch, block)) * 256 / block);
  const uint16_t* upper = smoothed_.data() + static_cast<ptrdiff_t>(std::max(stretch - 1, 0)) * columns_;
  const uint16_t* lower = smoothed_.data() + static_cast<ptrdiff_t>(std::min(stretch, rows_ - 1)) * columns_;
  for (size_t i = 0; i < line_.size(); ++i) {
    line_[i] = static_cast<uint16_t>((upper[i] * (256 - share) + lower[i] * share) / 256);
  }
}

// In even steps, which compilers turn into vector instructions.
void SoftPlane::spread(uint8_t* row, int32_t from, int32_t to, int32_t block) const {
  for (int32_t x = from; x < to;) {
    const int32_t stretch = stretchOf(x, block);
    const int32_t start = startOf(stretch, block);
    const int32_t end = std::min(start + block, to);
    const int32_t left = line_[static_cast<size_t>(std::max(stretch - 1, 0))];
    const int32_t right = line_[static_cast<size_t>(std::min(stretch, columns_ - 1))];
    const int32_t step = ((right - left) << kPlaces) / block;
    const int32_t first = (left << kPlaces) + step * (x - start);
    for (int32_t i = 0; i < end - x; ++i) row[x + i] = static_cast<uint8_t>((first + step * i) >> (2 * kPlaces));
    x = end;
  }
}

}  // namespace privacy_blur
