// JSON of others, read without trust: what is missing or of another kind counts as empty.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace corvane::rtc {

using Json = nlohmann::json;

/// Whether lists and objects are nested no deeper than anything meant for the engine: a copy of a value goes as deep
/// into the stack as the value is nested.
inline bool isShallowJson(std::string_view text) {
  constexpr int kMaxDepth = 64;
  int depth = 0;
  bool quoted = false;
  for (size_t at = 0; at < text.size(); ++at) {
    const char character = text[at];
    if (quoted) {
      if (character == '\\') ++at;
      if (character == '"') quoted = false;
    } else if (character == '"') {
      quoted = true;
    } else if (character == '[' || character == '{') {
      if (++depth > kMaxDepth) return false;
    } else if (character == ']' || character == '}') {
      --depth;
    }
  }
  return true;
}

/// Discarded JSON (no object, no list) when the text is none.
inline Json parseJson(std::string_view text) {
  return isShallowJson(text) ? Json::parse(text, nullptr, /*allow_exceptions=*/false) : Json(Json::value_t::discarded);
}

/// Bytes that are not UTF-8 become replacement characters: an exception here would end the engine.
inline std::string jsonText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

inline const Json& memberOf(const Json& object, const char* key) {
  static const Json none;
  if (!object.is_object()) return none;
  const auto found = object.find(key);
  return found != object.end() ? *found : none;
}

inline std::string textOf(const Json& object, const char* key) {
  const auto* text = memberOf(object, key).get_ptr<const std::string*>();
  return text != nullptr ? *text : std::string();
}

inline int64_t numberOf(const Json& object, const char* key, int64_t otherwise = 0) {
  const Json& value = memberOf(object, key);
  return value.is_number_integer() ? value.get<int64_t>() : otherwise;
}

inline bool flagOf(const Json& object, const char* key, bool otherwise) {
  const Json& value = memberOf(object, key);
  return value.is_boolean() ? value.get<bool>() : otherwise;
}

}  // namespace corvane::rtc
