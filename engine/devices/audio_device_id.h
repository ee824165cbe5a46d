// What the id of a microphone or speaker says: a clip, a synthetic sound, a device of the machine, or none.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace corvane::rtc {

/// "file:<path>": a clip's sound, played over and over.
struct ClipMicrophone {
  std::string path;
};

/// "test:[wave][?frequency=..&level=..]": a synthetic sound.
struct TestMicrophone {
  std::string wave = "sine";
  int32_t frequency = 440;  ///< Hz, 20 to 20000
  int32_t level = -20;      ///< amplitude in dB of full scale, -90 to 0
};

/// "pulse:<name>" or "alsa:<name>": a device that a sound server or the system has.
struct SoundDevice {
  const char* source_element;  ///< GStreamer's, that reads from it
  const char* sink_element;    ///< GStreamer's, that plays on it
  std::string name;            ///< as the server or system knows it
};

/// "null:": a speaker that nobody hears.
struct NullSpeaker {};

/// The first alternative stands for a text that is no id.
using MicrophoneId = std::variant<std::monostate, ClipMicrophone, TestMicrophone, SoundDevice>;
using SpeakerId = std::variant<std::monostate, NullSpeaker, SoundDevice>;

inline constexpr std::string_view kNullSpeaker = "null:";

/// They do not look whether the clip or device is there.
MicrophoneId parseMicrophoneId(std::string_view id);
SpeakerId parseSpeakerId(std::string_view id);

/// The id under which a device is listed, by the element that opens it; "" for an element that is not known.
std::string soundDeviceId(std::string_view element, std::string_view name);

/// What a person would call a microphone of parameters: a clip's file name, a test sound's wave.
std::string microphoneName(std::string_view id);

}  // namespace corvane::rtc
