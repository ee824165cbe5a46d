#include "playback/active_speakers.h"

#include <cstdint>

namespace corvane::rtc {

namespace {

// In dB of full scale.
constexpr int32_t kAudible = -50;
constexpr int32_t kClearly = 3;

struct Loudness {
  const char* loudest = nullptr;
  int32_t level = kAudible;
  int32_t speakers_level = kAudible - kClearly - 1;  // that of who was the loudest before
};

}  // namespace

void ActiveSpeakers::update(std::span<const RemoteAudioPropertiesInfo> heard, const Tell& tell) {
  std::map<std::string, Loudness, std::less<>> rooms;
  for (const RemoteAudioPropertiesInfo& info : heard) {
    if (info.stream_key.stream_index != kStreamIndexMain) continue;  // a screen's sound
    Loudness& room = rooms[info.stream_key.room_id];
    const int32_t level = info.audio_properties_info.nonlinear_volume;
    if (level >= room.level) {
      room.level = level;
      room.loudest = info.stream_key.user_id;
    }
    const auto speaker = speakers_.find(info.stream_key.room_id);
    if (speaker != speakers_.end() && speaker->second == info.stream_key.user_id && level >= kAudible) {
      room.speakers_level = level;
    }
  }
  std::erase_if(speakers_, [&](const auto& speaker) { return !rooms.contains(speaker.first); });
  for (const auto& [id, room] : rooms) {
    if (room.loudest == nullptr || room.level < room.speakers_level + kClearly) continue;
    std::string& speaker = speakers_[id];
    if (speaker == room.loudest) continue;
    speaker = room.loudest;
    tell(id, speaker);
  }
}

}  // namespace corvane::rtc
