// Finds faces by a cascade of local binary patterns, as OpenCV trains and stores them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Brightness of a small picture, row by row without padding.
struct GreyPicture {
  std::vector<uint8_t> pixels;
  int32_t width = 0;
  int32_t height = 0;
};

/// May be used by several threads.
class FaceCascade {
 public:
  /// Null, with the reason, when the file is no such cascade.
  static std::unique_ptr<FaceCascade> load(const std::string& path, std::string& problem);

  /// Faces in pixels of the picture, the surest first.
  std::vector<Rectangle> find(const GreyPicture& picture) const;

 private:
  // Nine blocks of this size, three by three, the first at x and y in the window.
  struct Feature {
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
  };

  struct Weak {
    size_t feature;
    std::array<uint32_t, 8> patterns;  // those of 256 that the first score is for, a bit each
    float match;
    float other;
  };

  struct Stage {
    float threshold;
    std::vector<Weak> weaks;
  };

  struct Sums;
  friend struct CascadeReader;

  FaceCascade() = default;
  bool isFace(const Sums& sums, int32_t x, int32_t y) const;
  bool isSound() const;

  int32_t width_ = 0;  // of the window, in pixels
  int32_t height_ = 0;
  std::vector<Stage> stages_;
  std::vector<Feature> features_;
};

}  // namespace corvane::rtc
