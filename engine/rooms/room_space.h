// How the places of a room's users are heard: fainter with the distance, and from their side.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "corvane_rtc/range_audio.h"
#include "corvane_rtc/spatial_audio.h"
#include "playback/sound_place.h"
#include "rooms/voice_place.h"

namespace corvane::rtc {

/// One thread at a time.
class RoomSpace {
 public:
  // Range audio. Until there is a range, everything is in it.

  void enableRange(bool enable) { range_enabled_ = enable; }
  void setRange(const ReceiveRange& range) { range_ = range; }
  void setModel(int32_t type, float coefficient);
  void setFlags(std::vector<std::string> flags) { own_.flags = std::move(flags); }

  // Spatial audio.

  void enableSpatial(bool enable) { spatial_enabled_ = enable; }
  void setPosition(const Position& position);
  void setOrientation(const HumanOrientation& orientation);
  void ignoreFacing() { hears_facing_ = false; }
  void setListenerPosition(const Position& position);
  void setListenerOrientation(const HumanOrientation& orientation) { listener_orientation_ = orientation; }
  void setRemote(const std::string& user, const PositionInfo& info);
  void removeRemote(const std::string& user) { remote_.erase(user); }
  void removeAllRemote() { remote_.clear(); }

  /// What the others are to know.
  const VoicePlace& own() const { return own_; }
  /// How a user is heard that has told of that place. Who has told of none is heard as without all this.
  SoundPlace heard(const std::string& user, const VoicePlace& place) const;

 private:
  float attenuation(float distance) const;
  bool sharesFlag(const VoicePlace& place) const;

  bool range_enabled_ = false;
  std::optional<ReceiveRange> range_;
  int32_t model_ = kAttenuationTypeLinear;
  float coefficient_ = 1.0F;

  bool spatial_enabled_ = false;
  bool hears_facing_ = true;
  HumanOrientation orientation_ = {{1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {0.0F, 0.0F, 1.0F}};
  std::optional<SpaceVector> listener_at_;
  std::optional<HumanOrientation> listener_orientation_;
  std::map<std::string, VoicePlace> remote_;  // by user, in place of what it tells

  VoicePlace own_;
};

}  // namespace corvane::rtc
