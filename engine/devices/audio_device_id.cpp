#include "devices/audio_device_id.h"

#include <algorithm>
#include <iterator>

#include "devices/test_parameters.h"

namespace corvane::rtc {

namespace {

constexpr std::string_view kClipScheme = "file:";
constexpr std::string_view kTestScheme = "test:";

struct Backend {
  std::string_view scheme;
  const char* source_element;
  const char* sink_element;
};

constexpr Backend kBackends[] = {
    {"pulse:", "pulsesrc", "pulsesink"},
    {"alsa:", "alsasrc", "alsasink"},
};

// The generator's own names of its waves.
constexpr std::string_view kWaves[] = {
    "sine",  "square",         "saw",       "triangle",   "silence",      "white-noise", "pink-noise", "sine-table",
    "ticks", "gaussian-noise", "red-noise", "blue-noise", "violet-noise",
};

constexpr TestParameter<TestMicrophone> kTestParameters[] = {
    {"frequency", &TestMicrophone::frequency, 20, 20000},
    {"level", &TestMicrophone::level, -90, 0},
};

MicrophoneId parseTestMicrophone(std::string_view text) {
  TestMicrophone microphone;
  const size_t question = text.find('?');
  if (const std::string_view wave = text.substr(0, question); !wave.empty()) {
    if (std::find(std::begin(kWaves), std::end(kWaves), wave) == std::end(kWaves)) return {};
    microphone.wave = wave;
  }
  const std::string_view parameters =
      question == std::string_view::npos ? std::string_view() : text.substr(question + 1);
  if (!readTestParameters<TestMicrophone>(parameters, kTestParameters, microphone)) return {};
  return microphone;
}

template <class Id>
Id parseDevice(std::string_view id) {
  for (const Backend& backend : kBackends) {
    if (!id.starts_with(backend.scheme) || id.size() == backend.scheme.size()) continue;
    return SoundDevice{backend.source_element, backend.sink_element, std::string(id.substr(backend.scheme.size()))};
  }
  return {};
}

}  // namespace

MicrophoneId parseMicrophoneId(std::string_view id) {
  if (id.starts_with(kTestScheme)) return parseTestMicrophone(id.substr(kTestScheme.size()));
  if (id.starts_with(kClipScheme) && id.size() > kClipScheme.size()) {
    return ClipMicrophone{std::string(id.substr(kClipScheme.size()))};
  }
  return parseDevice<MicrophoneId>(id);
}

SpeakerId parseSpeakerId(std::string_view id) {
  if (id == kNullSpeaker) return NullSpeaker{};
  return parseDevice<SpeakerId>(id);
}

std::string soundDeviceId(std::string_view element, std::string_view name) {
  for (const Backend& backend : kBackends) {
    if (element == backend.source_element || element == backend.sink_element) {
      return std::string(backend.scheme).append(name);
    }
  }
  return {};
}

std::string microphoneName(std::string_view id) {
  const MicrophoneId microphone = parseMicrophoneId(id);
  if (const auto* clip = std::get_if<ClipMicrophone>(&microphone)) return clip->path.substr(clip->path.rfind('/') + 1);
  if (const auto* test = std::get_if<TestMicrophone>(&microphone)) return "Test sound (" + test->wave + ")";
  return std::string(id);
}

}  // namespace corvane::rtc
