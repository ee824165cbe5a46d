#include "core/parameters.h"

#include "core/json.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kMaxHeardUsers = 1000;

void readIds(const Json& json, const char* key, std::vector<std::string>& ids, std::string& problem) {
  const auto list = json.find(key);
  if (list == json.end()) return;
  if (!list->is_array()) {
    problem = std::string("\"") + key + "\" is not a list";
    return;
  }
  for (const auto& entry : *list) {
    if (const auto* id = entry.get_ptr<const std::string*>()) {
      ids.push_back(*id);
    } else {
      problem = std::string("\"") + key + "\" holds something that is not a text";
    }
  }
}

}  // namespace

bool isServiceAddress(std::string_view url) {
  for (const std::string_view scheme : {"ws://", "wss://"}) {
    if (url.starts_with(scheme) && url.size() > scheme.size() && url[scheme.size()] != '/') return true;
  }
  return false;
}

EngineParameters readParameters(std::string_view json_text, std::string& problem) {
  EngineParameters parameters;
  problem.clear();
  if (json_text.find_first_not_of(" \t\r\n") == std::string_view::npos) return parameters;

  const Json json = parseJson(json_text);
  if (!json.is_object()) {
    problem = "the parameters are not a JSON object";
    return parameters;
  }
  readIds(json, "cameras", parameters.cameras, problem);
  readIds(json, "microphones", parameters.microphones, problem);
  if (const auto sound = json.find("screen_sound"); sound != json.end()) {
    const auto* id = sound->get_ptr<const std::string*>();
    if (id != nullptr) parameters.screen_sound = *id;
    if (id == nullptr) problem = "\"screen_sound\" is not a text";
  }
  if (json.contains("heard_users")) {
    const int64_t users = numberOf(json, "heard_users");
    const bool fits = users >= 1 && users <= kMaxHeardUsers;
    if (fits) parameters.heard_users = static_cast<int32_t>(users);
    if (!fits) problem = "\"heard_users\" is not a number from 1 to 1000";
  }
  if (const auto service = json.find("service"); service != json.end()) {
    const auto add = [&](const Json& address) {
      const auto* url = address.get_ptr<const std::string*>();
      parameters.services.push_back(url != nullptr ? *url : jsonText(address));
      if (!isServiceAddress(parameters.services.back())) {
        problem = "\"service\" holds something that is not an address such as ws://host:8188";
      }
    };
    if (service->is_array()) {
      for (const Json& address : *service) add(address);
    } else {
      add(*service);
    }
  }
  return parameters;
}

}  // namespace corvane::rtc
