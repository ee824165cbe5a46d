#include "platform/posix/bicubic.h"

#include <algorithm>
#include <cmath>

namespace corvane::platform {
namespace {

constexpr size_t kChannels = 4;

// The cubic that passes through its samples (a = -0.5), for distances in samples.
double cubic(double distance) {
  const double d = std::abs(distance);
  if (d < 1) return (1.5 * d - 2.5) * d * d + 1;
  if (d < 2) return ((-0.5 * d + 2.5) * d - 4) * d + 2;
  return 0;
}

// Which samples make one new sample, and by how much; beyond the border the outermost sample goes on.
struct Taps {
  std::vector<size_t> samples;
  std::vector<float> weights;
};

std::vector<Taps> makeTaps(int32_t size, int32_t new_size) {
  const double step = static_cast<double>(size) / new_size;
  const double spread = std::max(step, 1.0);
  std::vector<Taps> all(static_cast<size_t>(new_size));
  for (int32_t i = 0; i < new_size; ++i) {
    Taps& taps = all[static_cast<size_t>(i)];
    const double centre = (i + 0.5) * step - 0.5;
    const auto first = static_cast<int64_t>(std::floor(centre - 2 * spread)) + 1;
    const auto last = static_cast<int64_t>(std::ceil(centre + 2 * spread)) - 1;
    double sum = 0;
    for (int64_t sample = first; sample <= last; ++sample)
      sum += cubic((static_cast<double>(sample) - centre) / spread);
    for (int64_t sample = first; sample <= last; ++sample) {
      const double weight = cubic((static_cast<double>(sample) - centre) / spread) / sum;
      taps.samples.push_back(static_cast<size_t>(std::clamp<int64_t>(sample, 0, size - 1)));
      taps.weights.push_back(static_cast<float>(weight));
    }
  }
  return all;
}

}  // namespace

std::vector<uint8_t> resizeBicubic(const uint8_t* pixels, int32_t width, int32_t height, int32_t new_width,
                                   int32_t new_height) {
  const size_t row = static_cast<size_t>(width) * kChannels;
  const size_t new_row = static_cast<size_t>(new_width) * kChannels;
  const std::vector<Taps> columns = makeTaps(width, new_width);
  const std::vector<Taps> rows = makeTaps(height, new_height);
  std::vector<float> blended(row);
  std::vector<uint8_t> result(new_row * static_cast<size_t>(new_height));

  for (size_t y = 0; y < rows.size(); ++y) {
    std::ranges::fill(blended, 0.0F);
    for (size_t tap = 0; tap < rows[y].samples.size(); ++tap) {
      const uint8_t* source = pixels + rows[y].samples[tap] * row;
      const float weight = rows[y].weights[tap];
      for (size_t i = 0; i < row; ++i) blended[i] += weight * static_cast<float>(source[i]);
    }
    uint8_t* out = result.data() + y * new_row;
    for (const Taps& taps : columns) {
      for (size_t channel = 0; channel < kChannels; ++channel) {
        float value = 0.5F;
        for (size_t tap = 0; tap < taps.samples.size(); ++tap) {
          value += taps.weights[tap] * blended[taps.samples[tap] * kChannels + channel];
        }
        *out++ = static_cast<uint8_t>(std::clamp(value, 0.0F, 255.0F));
      }
    }
  }
  return result;
}

}  // namespace corvane::platform
