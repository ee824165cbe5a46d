#include "rooms/room_space.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvane::rtc {

namespace {

// Of a voice, directly behind who speaks and directly behind who listens.
constexpr float kBehindSpeaker = 0.5F;
constexpr float kBehindListener = 0.8F;
// Of a voice at one side, in the other ear: heads do not keep sound away altogether.
constexpr float kFarEar = 0.2F;

SpaceVector vectorOf(const Position& position) {
  return {position.x, position.y, position.z};
}

SpaceVector vectorOf(const Orientation& direction) {
  return {direction.x, direction.y, direction.z};
}

float dot(const SpaceVector& a, const SpaceVector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// From -1 to 1: from `behind` to 1.
float byDirection(float cosine, float behind) {
  return behind + (1.0F - behind) * (1.0F + cosine) / 2.0F;
}

// One ear's share of a voice: `towards` is 1 on the ear's side, -1 on the other. As loud in both ears together wherever
// it comes from, as far as no ear gets more than there is.
float ear(float towards) {
  const float angle = (towards + 1.0F) * std::numbers::pi_v<float> / 4.0F;
  return std::clamp(std::numbers::sqrt2_v<float> * std::sin(angle), kFarEar, 1.0F);
}

}  // namespace

void RoomSpace::setModel(int32_t type, float coefficient) {
  model_ = type;
  coefficient_ = coefficient;
}

void RoomSpace::setPosition(const Position& position) {
  own_.at = vectorOf(position);
}

void RoomSpace::setOrientation(const HumanOrientation& orientation) {
  orientation_ = orientation;
  own_.facing = vectorOf(orientation.forward);
}

void RoomSpace::setListenerPosition(const Position& position) {
  listener_at_ = vectorOf(position);
}

void RoomSpace::setRemote(const std::string& user, const PositionInfo& info) {
  remote_[user] = {.at = vectorOf(info.position), .facing = vectorOf(info.orientation.forward)};
}

float RoomSpace::attenuation(float distance) const {
  if (!range_ || distance <= static_cast<float>(range_->min)) return 1.0F;
  if (distance >= static_cast<float>(range_->max)) return 0.0F;
  const float way = (distance - static_cast<float>(range_->min)) / static_cast<float>(range_->max - range_->min);
  if (model_ == kAttenuationTypeLinear) return 1.0F - way;
  if (model_ == kAttenuationTypeNone) return 1.0F;
  // From 1 to 0, so that nothing jumps at the end of the range; the larger the coefficient, the sooner it is faint.
  const float end = std::exp(-coefficient_);
  const float rest = 1.0F - end;
  return rest > 0.0F ? (std::exp(-coefficient_ * way) - end) / rest : 1.0F - way;
}

bool RoomSpace::sharesFlag(const VoicePlace& place) const {
  return std::any_of(place.flags.begin(), place.flags.end(), [this](const std::string& flag) {
    return std::find(own_.flags.begin(), own_.flags.end(), flag) != own_.flags.end();
  });
}

SoundPlace RoomSpace::heard(const std::string& user, const VoicePlace& place) const {
  const auto remote = remote_.find(user);
  const VoicePlace& from = remote != remote_.end() ? remote->second : place;
  if ((!range_enabled_ && !spatial_enabled_) || !from.at) return {};
  const SpaceVector here = listener_at_.value_or(own_.at.value_or(SpaceVector()));
  SpaceVector way = {};
  for (size_t axis = 0; axis < way.size(); ++axis) way[axis] = (*from.at)[axis] - here[axis];
  const float distance = std::hypot(way[0], way[1], way[2]);

  float gain = range_enabled_ && !sharesFlag(place) ? attenuation(distance) : 1.0F;
  // What is too far for numbers is out of everyone's hearing, and has no direction.
  if (!spatial_enabled_ || distance == 0.0F || !std::isfinite(distance)) return {gain, gain};
  for (float& part : way) part /= distance;
  const HumanOrientation& head = listener_orientation_ ? *listener_orientation_ : orientation_;
  if (hears_facing_ && from.facing) gain *= byDirection(-dot(*from.facing, way), kBehindSpeaker);
  gain *= byDirection(std::min(0.0F, dot(way, vectorOf(head.forward))) * 2.0F + 1.0F, kBehindListener);
  const float right = std::clamp(dot(way, vectorOf(head.right)), -1.0F, 1.0F);
  return {std::clamp(gain, 0.0F, 1.0F) * ear(-right), std::clamp(gain, 0.0F, 1.0F) * ear(right)};
}

}  // namespace corvane::rtc
