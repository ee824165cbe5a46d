#include "rooms/voice_place.h"

#include <cmath>
#include <limits>

namespace corvane::rtc {

namespace {

// Directions as others compute them may be a little off.
constexpr float kLengthTolerance = 0.1F;

std::optional<SpaceVector> readVector(const Json& json) {
  if (!json.is_array() || json.size() != SpaceVector().size()) return std::nullopt;
  SpaceVector vector = {};
  for (size_t index = 0; index < vector.size(); ++index) {
    const double value = json[index].is_number() ? json[index].get<double>() : std::numeric_limits<double>::infinity();
    if (std::abs(value) > double{std::numeric_limits<float>::max()}) return std::nullopt;
    vector[index] = static_cast<float>(value);
  }
  return vector;
}

std::optional<SpaceVector> readDirection(const Json& json) {
  const std::optional<SpaceVector> vector = readVector(json);
  if (!vector) return std::nullopt;
  const float length = std::hypot((*vector)[0], (*vector)[1], (*vector)[2]);
  return std::abs(length - 1.0F) <= kLengthTolerance ? vector : std::nullopt;
}

}  // namespace

Json writeVoicePlace(const VoicePlace& place) {
  Json json;
  if (place.at) json["at"] = *place.at;
  if (place.facing) json["facing"] = *place.facing;
  if (!place.flags.empty()) json["flags"] = place.flags;
  return json;
}

VoicePlace readVoicePlace(const Json& json) {
  VoicePlace place = {.at = readVector(memberOf(json, "at")), .facing = readDirection(memberOf(json, "facing"))};
  if (const Json& flags = memberOf(json, "flags"); flags.is_array()) {
    for (const Json& flag : flags) {
      const auto* text = flag.get_ptr<const std::string*>();
      if (text != nullptr && place.flags.size() < kMaxPlaceFlags) place.flags.push_back(*text);
    }
  }
  return place;
}

}  // namespace corvane::rtc
