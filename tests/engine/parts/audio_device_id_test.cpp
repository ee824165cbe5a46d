#include "devices/audio_device_id.h"

#include <gtest/gtest.h>

namespace corvane::rtc {
namespace {

TEST(AudioDeviceId, ReadsEveryKind) {
  EXPECT_EQ(std::get<ClipMicrophone>(parseMicrophoneId("file:/a b/c?d=1.wav")).path, "/a b/c?d=1.wav");
  const auto plain = std::get<TestMicrophone>(parseMicrophoneId("test:"));
  EXPECT_EQ(plain.wave, "sine");
  EXPECT_EQ(plain.frequency, 440);
  EXPECT_EQ(plain.level, -20);
  const auto full = std::get<TestMicrophone>(parseMicrophoneId("test:white-noise?level=-90&frequency=20000"));
  EXPECT_EQ(full.wave, "white-noise");
  EXPECT_EQ(full.frequency, 20000);
  EXPECT_EQ(full.level, -90);
  const auto device = std::get<SoundDevice>(parseMicrophoneId(soundDeviceId("pulsesrc", "mic:1")));
  EXPECT_EQ(device.name, "mic:1");
  EXPECT_STREQ(device.source_element, "pulsesrc");
  EXPECT_STREQ(std::get<SoundDevice>(parseSpeakerId("alsa:hw:0,1")).sink_element, "alsasink");
  EXPECT_TRUE(std::holds_alternative<NullSpeaker>(parseSpeakerId("null:")));
  EXPECT_EQ(soundDeviceId("jackaudiosrc", "x"), "");
}

TEST(AudioDeviceId, RefusesEverythingElse) {
  for (const char* id : {"", "file:", "pulse:", "alsa", "null:", "Test:", "test:?frequency=19", "test:?frequency=20001",
                         "test:?level=-91", "test:?level=1", "test:?level=-1.5", "test:?level=-", "test:?=1", "test:?&",
                         "test:?level=-1&", "test:sine&level=-1", "test:?level=-99999999999"}) {
    const bool is_none = std::holds_alternative<std::monostate>(parseMicrophoneId(id));
    EXPECT_EQ(is_none, std::string_view(id) != "test:?level=-1&") << id;
  }
  for (const char* id : {"", "null", "null:1", "file:/a.wav", "test:", "pulse:"}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(parseSpeakerId(id))) << id;
  }
}

}  // namespace
}  // namespace corvane::rtc
