// What each member of a room tells the others of itself, as the text that the service carries for it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "rooms/layer_choice.h"
#include "rooms/voice_place.h"

namespace corvane::rtc {

/// One pair of a room's extra information.
struct ExtraInfo {
  std::string value;
  std::string user;     ///< who set it
  int64_t time_ms = 0;  ///< when, in milliseconds since 1970 UTC

  bool operator==(const ExtraInfo&) const = default;
};

struct MemberState {
  std::string extra_info;  ///< of the user
  int32_t published = 0;   ///< of camera and microphone: MediaStreamType
  int32_t screen = 0;      ///< likewise, of the screen
  int32_t capturing = 0;   ///< of camera and microphone, whether published or not: MediaStreamType
  bool screen_captured = false;
  std::vector<LayerSize> layers;  ///< of the camera's video, the largest first; none where there is one
  bool visible = true;
  bool forwarded = false;                      ///< a user of another room, who sends only: no messages reach it
  bool preferred = false;                      ///< heard by the others however many are louder
  bool leaving = false;                        ///< the user leaves of its own will
  std::map<std::string, ExtraInfo> room_info;  ///< pairs that this member keeps for the room, by key

  VoicePlace place = {};

  bool operator==(const MemberState&) const = default;
};

std::string writeMemberState(const MemberState& state);

/// Of a member that does not use this engine: visible, and publishing whatever it sends.
MemberState readMemberState(const std::string& text);

}  // namespace corvane::rtc
