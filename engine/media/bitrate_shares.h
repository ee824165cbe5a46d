// How the layers of a video share what a link carries.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace corvane::rtc {

struct BitrateShare {
  int32_t full = 0;        ///< kbit/s that the layer takes where there is room; 0 while it is not known
  bool paused = false;     ///< in: until now; out: from now on
  int32_t limit = 0;       ///< out: kbit/s
  bool may_return = true;  ///< a paused layer, where there is room for it
};

/// When a layer that paused may return. What a link has room for beyond what is sent is only guessed: a layer that
/// returns in vain delays all the others, so each return that does not last puts off the next one.
class LayerReturn {
 public:
  using Clock = std::chrono::steady_clock;

  bool allowed(Clock::time_point now) const { return now >= next_; }
  void onPaused(Clock::time_point now) {
    const bool in_vain = returned_ && now - *returned_ < kLasting;
    wait_ = in_vain ? std::min(wait_ * 2, kLongestWait) : kShortestWait;
    next_ = now + wait_;
  }
  void onReturned(Clock::time_point now) { returned_ = now; }

 private:
  static constexpr std::chrono::seconds kShortestWait{10};
  static constexpr std::chrono::seconds kLongestWait{320};
  static constexpr std::chrono::seconds kLasting{30};

  std::chrono::seconds wait_ = kShortestWait;
  Clock::time_point next_ = Clock::time_point::min();
  std::optional<Clock::time_point> returned_;
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
    layer.paused = at < layers.size() && (left < enough || (layer.paused && !layer.may_return));
    layer.limit = layer.paused ? 0 : left;
    if (!layer.paused) left -= std::min(left, layer.full);
  }
}

}  // namespace corvane::rtc
