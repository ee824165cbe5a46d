#include "playback/active_speakers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane::rtc {
namespace {

RemoteAudioPropertiesInfo level(const char* room, const char* user, int32_t decibels, int32_t stream_index = 0) {
  RemoteAudioPropertiesInfo info = {};
  info.stream_key = {room, user, stream_index};
  info.audio_properties_info.nonlinear_volume = decibels;
  return info;
}

TEST(ActiveSpeakers, AreTheLoudestOfTheirRoomsUntilOthersAreClearlyLouder) {
  ActiveSpeakers speakers;
  const auto update = [&](const std::vector<RemoteAudioPropertiesInfo>& heard) {
    std::string told;
    speakers.update(heard, [&](const std::string& room, const std::string& user) { told += room + ":" + user + " "; });
    return told;
  };
  EXPECT_EQ(update({level("r", "a", -60), level("s", "c", -127)}), "");
  EXPECT_EQ(update({level("r", "a", -30), level("r", "b", -20), level("s", "c", -50)}), "r:b s:c ");
  EXPECT_EQ(update({level("r", "a", -18), level("r", "b", -20), level("s", "c", -127)}), "");
  EXPECT_EQ(update({level("r", "b", -20), level("r", "a", -17)}), "r:a ");
  // Who has fallen silent is followed by anyone; a screen does not speak.
  EXPECT_EQ(update({level("r", "a", -70), level("r", "b", -49), level("r", "c", -1, 1)}), "r:b ");
  EXPECT_EQ(update({level("r", "a", -70), level("r", "b", -70)}), "");
  EXPECT_EQ(update({level("r", "a", -70), level("r", "b", -40)}), "");
}

}  // namespace
}  // namespace corvane::rtc
