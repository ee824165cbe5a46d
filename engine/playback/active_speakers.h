// Who is heard best in each room.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>

#include "corvane_rtc/audio_properties.h"

namespace corvane::rtc {

/// One thread at a time.
class ActiveSpeakers {
 public:
  using Tell = std::function<void(const std::string& room, const std::string& user)>;

  /// `heard`: what remote users measure just now, in all rooms. Tells of each room whose best heard user is another one
  /// than before. Who is hardly heard does not count, and who speaks stays it until another is clearly louder.
  void update(std::span<const RemoteAudioPropertiesInfo> heard, const Tell& tell);

 private:
  std::map<std::string, std::string, std::less<>> speakers_;  // by room; the last, while nobody speaks
};

}  // namespace corvane::rtc
