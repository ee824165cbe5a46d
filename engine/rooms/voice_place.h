// Where a user speaks from, as it tells the others of its room.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "core/json.h"

namespace corvane::rtc {

/// In the application's coordinates: x, y, z.
using SpaceVector = std::array<float, 3>;

struct VoicePlace {
  std::optional<SpaceVector> at = {};
  std::optional<SpaceVector> facing = {};  ///< which way it speaks; of length 1
  std::vector<std::string> flags = {};     ///< those who share one hear each other at full volume

  bool operator==(const VoicePlace&) const = default;
};

inline constexpr size_t kMaxPlaceFlags = 10;

/// Null where there is nothing to tell.
Json writeVoicePlace(const VoicePlace& place);
/// What is no place is left out.
VoicePlace readVoicePlace(const Json& json);

}  // namespace corvane::rtc
