// How the layers of a video share what a link carries.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane::rtc {

struct BitrateShare {
  int32_t full = 0;     ///< kbit/s that the layer takes where there is room; 0 while it is not known
  bool paused = false;  ///< in: until now; out: from now on
  int32_t limit = 0;    ///< out: kbit/s
};

/// Layers come the largest first. The smallest is served first, since everybody can be sent it, and never pauses; one
/// that would be left with a small part of its bitrate does: it would look worse than the next smaller one.
inline void shareBitrate(int32_t total, std::vector<BitrateShare>& layers) {
  constexpr int32_t kPausingPart = 4;
  // More than it paused at: receivers are not to change over and over.
  constexpr int32_t kResumingPart = 2;
  int32_t left = total;
  for (size_t at = layers.size(); at > 0; --at) {
    BitrateShare& layer = layers[at - 1];
    const int32_t enough = layer.full / (layer.paused ? kResumingPart : kPausingPart);
    layer.paused = at < layers.size() && left < enough;
    layer.limit = layer.paused ? 0 : left;
    if (!layer.paused) left -= std::min(left, layer.full);
  }
}

}  // namespace corvane::rtc
