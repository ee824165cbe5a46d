// The parameters text of createRTCVideo(): a JSON object. Unknown keys are left alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::rtc {

struct EngineParameters {
  /// "cameras": ids ("file:..." or "test:...") that are listed among the cameras.
  std::vector<std::string> cameras;
  /// "microphones": the same for microphones.
  std::vector<std::string> microphones;
  /// "screen_sound": a microphone's id that stands for what the machine plays. None takes the default speaker's.
  std::string screen_sound;
  /// "heard_users": how many microphones of others are heard at once, 1 to 1000.
  int32_t heard_users = 10;
  /// "service": an address ("ws://host:port") or a list of them, on which rooms are spread by their ids. None stands
  /// for the private service of this machine. What is no address keeps its place in the list: elsewhere the same rooms
  /// are held on the services after it. Joining a room on it fails.
  std::vector<std::string> services;
};

/// Whether a text looks like "ws://host:port" or "wss://host:port".
bool isServiceAddress(std::string_view url);

/// Reads what it can. `problem` says what could not be read, "" when all could.
EngineParameters readParameters(std::string_view json_text, std::string& problem);

}  // namespace corvane::rtc
