#include "core/parameters.h"

#include <nlohmann/json.hpp>

namespace corvane::rtc {

EngineParameters readParameters(std::string_view json_text, std::string& problem) {
  EngineParameters parameters;
  problem.clear();
  if (json_text.find_first_not_of(" \t\r\n") == std::string_view::npos) return parameters;

  const auto json = nlohmann::json::parse(json_text, nullptr, /*allow_exceptions=*/false);
  if (!json.is_object()) {
    problem = "the parameters are not a JSON object";
    return parameters;
  }
  if (const auto cameras = json.find("cameras"); cameras != json.end()) {
    if (!cameras->is_array()) problem = "\"cameras\" is not a list";
    for (const auto& camera : cameras->is_array() ? *cameras : nlohmann::json::array()) {
      if (const auto* id = camera.get_ptr<const std::string*>()) {
        parameters.cameras.push_back(*id);
      } else {
        problem = "\"cameras\" holds something that is not a text";
      }
    }
  }
  return parameters;
}

}  // namespace corvane::rtc
