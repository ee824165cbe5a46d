// Which of a video's layers a receiver is sent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "corvane_rtc/rtc_room.h"

namespace corvane::rtc {

/// Of one layer, in pixels; 0 stands for the camera's own.
struct LayerSize {
  int32_t width = 0;
  int32_t height = 0;

  bool operator==(const LayerSize&) const = default;
};

/// The index of the smallest layer that is as large as is wanted; of the largest when none is, or nothing is wanted.
/// Layers come the largest first.
inline size_t chooseLayer(const std::vector<LayerSize>& layers, const RemoteVideoConfig& wanted) {
  if (wanted.resolution_width <= 0 && wanted.resolution_height <= 0) return 0;
  const auto reaches = [](int32_t side, int32_t wanted_side) { return side == 0 || side >= wanted_side; };
  for (size_t at = layers.size(); at > 1; --at) {
    const LayerSize& layer = layers[at - 1];
    if (reaches(layer.width, wanted.resolution_width) && reaches(layer.height, wanted.resolution_height)) return at - 1;
  }
  return 0;
}

}  // namespace corvane::rtc
