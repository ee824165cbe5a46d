#include "api/room_sound_space.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "api/rtc_room.h"

namespace corvane::rtc {

namespace {

// What arithmetic in single precision may be off by.
constexpr float kTolerance = 0.01F;

bool isPosition(const Position& position) {
  return std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(position.z);
}

float dot(const Orientation& a, const Orientation& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Of length 1 and at right angles to each other; written so that what is no number is refused, too.
bool isOrientation(const HumanOrientation& head) {
  const auto is_unit = [](const Orientation& direction) {
    return std::abs(dot(direction, direction) - 1.0F) <= 2 * kTolerance;
  };
  const auto is_right_angle = [](const Orientation& a, const Orientation& b) {
    return std::abs(dot(a, b)) <= kTolerance;
  };
  return is_unit(head.forward) && is_unit(head.right) && is_unit(head.up) && is_right_angle(head.forward, head.right) &&
         is_right_angle(head.right, head.up) && is_right_angle(head.up, head.forward);
}

bool isPlace(const PositionInfo& info) {
  return isPosition(info.position) && isOrientation(info.orientation);
}

}  // namespace

int32_t RoomSoundSpace::updatePosition(const Position& position) {
  if (!isPosition(position)) return kInvalidParameter;
  return post_([position](RoomSpace& space) { space.setPosition(position); });
}

// Range audio.

int32_t RoomSoundSpace::enableRangeAudio(bool enable) {
  return post_([enable](RoomSpace& space) { space.enableRange(enable); });
}

int32_t RoomSoundSpace::updateReceiveRange(const ReceiveRange& range) {
  if (range.min < 0 || range.min >= range.max) return kInvalidParameter;
  return post_([range](RoomSpace& space) { space.setRange(range); });
}

int32_t RoomSoundSpace::setAttenuationModel(int32_t type, float coefficient) {
  if (type < kAttenuationTypeNone || type > kAttenuationTypeExponential) return kInvalidParameter;
  const bool fits = std::isfinite(coefficient) && coefficient > 0.0F;
  if (type == kAttenuationTypeExponential && !fits) return kInvalidParameter;
  return post_([type, coefficient](RoomSpace& space) { space.setModel(type, coefficient); });
}

int32_t RoomSoundSpace::setNoAttenuationFlags(const char* const* flags, int32_t count) {
  if (count < 0 || count > static_cast<int32_t>(kMaxPlaceFlags) || (count > 0 && flags == nullptr)) {
    return kInvalidParameter;
  }
  std::vector<std::string> texts;
  for (int32_t index = 0; index < count; ++index) {
    // As long as an id may be.
    if (!isRoomOrUserId(flags[index])) return kInvalidParameter;
    texts.emplace_back(flags[index]);
  }
  return post_([texts](RoomSpace& space) { space.setFlags(texts); });
}

// Spatial audio.

int32_t RoomSoundSpace::enableSpatialAudio(bool enable) {
  return post_([enable](RoomSpace& space) { space.enableSpatial(enable); });
}

int32_t RoomSoundSpace::updateSelfOrientation(const HumanOrientation& orientation) {
  if (!isOrientation(orientation)) return kInvalidParameter;
  return post_([orientation](RoomSpace& space) { space.setOrientation(orientation); });
}

int32_t RoomSoundSpace::updateSelfPosition(const PositionInfo& info) {
  if (!isPlace(info)) return kInvalidParameter;
  return post_([info](RoomSpace& space) {
    space.setPosition(info.position);
    space.setOrientation(info.orientation);
  });
}

int32_t RoomSoundSpace::disableRemoteOrientation() {
  return post_([](RoomSpace& space) { space.ignoreFacing(); });
}

int32_t RoomSoundSpace::updateListenerPosition(const Position& position) {
  if (!isPosition(position)) return kInvalidParameter;
  return post_([position](RoomSpace& space) { space.setListenerPosition(position); });
}

int32_t RoomSoundSpace::updateListenerOrientation(const HumanOrientation& orientation) {
  if (!isOrientation(orientation)) return kInvalidParameter;
  return post_([orientation](RoomSpace& space) { space.setListenerOrientation(orientation); });
}

int32_t RoomSoundSpace::updateRemotePosition(const char* uid, const PositionInfo& info) {
  if (!isRoomOrUserId(uid) || !isPlace(info)) return kInvalidParameter;
  return post_([user = std::string(uid), info](RoomSpace& space) { space.setRemote(user, info); });
}

int32_t RoomSoundSpace::removeRemotePosition(const char* uid) {
  if (!isRoomOrUserId(uid)) return kInvalidParameter;
  return post_([user = std::string(uid)](RoomSpace& space) { space.removeRemote(user); });
}

int32_t RoomSoundSpace::removeAllRemotePosition() {
  return post_([](RoomSpace& space) { space.removeAllRemote(); });
}

}  // namespace corvane::rtc
