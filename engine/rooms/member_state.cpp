#include "rooms/member_state.h"

#include <algorithm>
#include <utility>

#include "core/json.h"
#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

// Pairs of one member; a room has up to ten.
constexpr size_t kMaxPairs = 32;
constexpr size_t kMaxLayers = 3;
constexpr uint64_t kLongestSide = 16384;
// What setting a pair allows.
constexpr size_t kMaxKey = 10;
constexpr size_t kMaxValue = 128;
// A time that leaves room for later ones: in the year 10000.
constexpr int64_t kMaxTime = 253'402'300'800'000;

bool isPair(const std::string& key, const ExtraInfo& info) {
  return !key.empty() && key.size() <= kMaxKey && info.value.size() <= kMaxValue && info.time_ms >= 0 &&
         info.time_ms <= kMaxTime;
}

// Pixels; 0 for what is no number of them.
int32_t sideOf(const Json& layer, size_t at) {
  if (!layer.is_array() || at >= layer.size() || !layer[at].is_number_unsigned()) return 0;
  return static_cast<int32_t>(std::min<uint64_t>(layer[at].get<uint64_t>(), kLongestSide));
}

}  // namespace

std::string writeMemberState(const MemberState& state) {
  Json json = {{"corvane", 1}, {"extra", state.extra_info}, {"published", state.published}};
  if (state.screen != 0) json["screen"] = state.screen;
  if (state.capturing != 0) json["captures"] = state.capturing;
  if (state.screen_captured) json["shares"] = true;
  for (const LayerSize& layer : state.layers) json["layers"].push_back({layer.width, layer.height});
  if (!state.visible) json["visible"] = false;
  if (state.forwarded) json["forwarded"] = true;
  if (state.preferred) json["preferred"] = true;
  if (state.leaving) json["leaving"] = true;
  for (const auto& [key, info] : state.room_info) {
    json["room"][key] = {{"value", info.value}, {"user", info.user}, {"time", info.time_ms}};
  }
  if (Json place = writeVoicePlace(state.place); !place.is_null()) json["place"] = std::move(place);
  return jsonText(json);
}

MemberState readMemberState(const std::string& text) {
  MemberState state;
  const Json json = parseJson(text);
  if (numberOf(json, "corvane") != 1) {
    state.published = kMediaStreamBoth;
    state.capturing = kMediaStreamBoth;
    return state;
  }
  state.extra_info = textOf(json, "extra");
  state.published = static_cast<int32_t>(numberOf(json, "published")) & kMediaStreamBoth;
  state.screen = static_cast<int32_t>(numberOf(json, "screen")) & kMediaStreamBoth;
  state.capturing = static_cast<int32_t>(numberOf(json, "captures")) & kMediaStreamBoth;
  state.screen_captured = flagOf(json, "shares", false);
  if (const Json& layers = memberOf(json, "layers"); layers.is_array() && layers.size() <= kMaxLayers) {
    for (const Json& layer : layers) state.layers.push_back({sideOf(layer, 0), sideOf(layer, 1)});
  }
  state.visible = flagOf(json, "visible", true);
  state.forwarded = flagOf(json, "forwarded", false);
  state.preferred = flagOf(json, "preferred", false);
  state.leaving = flagOf(json, "leaving", false);
  state.place = readVoicePlace(memberOf(json, "place"));
  if (const Json& room = memberOf(json, "room"); room.is_object()) {
    for (const auto& [key, info] : room.items()) {
      if (state.room_info.size() == kMaxPairs) break;
      ExtraInfo pair = {textOf(info, "value"), textOf(info, "user"), numberOf(info, "time")};
      if (isPair(key, pair)) state.room_info[key] = std::move(pair);
    }
  }
  return state;
}

}  // namespace corvane::rtc
