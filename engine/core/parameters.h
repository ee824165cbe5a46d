// The parameters text of createRTCVideo(): a JSON object. Unknown keys are left alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::rtc {

struct EngineParameters {
  /// "cameras": ids ("file:..." or "test:...") that are listed among the cameras.
  std::vector<std::string> cameras;
  /// "microphones": the same for microphones.
  std::vector<std::string> microphones;
  /// "service": an address ("ws://host:port") or a list of them, on which rooms are spread by their ids. None stands
  /// for the private service of this machine.
  std::vector<std::string> services;
};

/// Reads what it can. `problem` says what could not be read, "" when all could.
EngineParameters readParameters(std::string_view json_text, std::string& problem);

}  // namespace corvane::rtc
