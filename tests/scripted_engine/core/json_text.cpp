// Values as JSON text and back. The only source that knows the JSON library, which is slow to compile.

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "core/value.h"

namespace corvane::scripted {

namespace {

using Json = nlohmann::ordered_json;

constexpr int64_t kMaxExactInteger = (int64_t{1} << 53) - 1;
constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string toBase64(const uint8_t* bytes, size_t size) {
  std::string text;
  text.reserve((size + 2) / 3 * 4);
  for (size_t at = 0; at < size; at += 3) {
    const size_t taken = std::min<size_t>(3, size - at);
    uint32_t group = 0;
    for (size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < taken ? bytes[at + i] : 0U);
    }
    for (size_t i = 0; i < 4; ++i) {
      text += i <= taken ? kBase64Digits[group >> (18 - 6 * i) & 63U] : '=';
    }
  }
  return text;
}

Value::Bytes fromBase64(std::string_view text) {
  Value::Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  uint32_t bits = 0;
  int count = 0;
  for (const char digit : text) {
    if (digit == '=') {
      break;
    }
    const size_t value = kBase64Digits.find(digit);
    if (value == std::string_view::npos) {
      throw BadRequest("$bytes is not base64");
    }
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes.push_back(static_cast<uint8_t>(bits >> count));
    }
  }
  return bytes;
}

bool isUtf8(const std::string& text) {
  // The library's own check: it refuses to dump what is not UTF-8.
  try {
    static_cast<void>(Json(text).dump());
    return true;
  } catch (const Json::type_error&) {
    return false;
  }
}

Value integerFrom(const std::string& digits) {
  const char* end = digits.data() + digits.size();
  int64_t number = 0;
  if (const auto [stop, error] = std::from_chars(digits.data(), end, number); error == std::errc{} && stop == end) {
    return number;
  }
  uint64_t positive = 0;
  if (const auto [stop, error] = std::from_chars(digits.data(), end, positive); error == std::errc{} && stop == end) {
    return positive;
  }
  throw BadRequest("$int is no 64-bit integer: " + digits);
}

double doubleFrom(const std::string& name) {
  if (name == "NaN") {
    return std::nan("");
  }
  if (name == "Infinity" || name == "-Infinity") {
    return name[0] == '-' ? -HUGE_VAL : HUGE_VAL;
  }
  throw BadRequest("$double is none of NaN, Infinity, -Infinity: " + name);
}

Value fromJson(const Json& json);

Value objectFrom(const Json& json) {
  if (json.size() == 1) {
    const auto only = json.begin();
    if (only.key() == "$bytes") {
      return fromBase64(only->get_ref<const std::string&>());
    }
    if (only.key() == "$int") {
      return integerFrom(only->get_ref<const std::string&>());
    }
    if (only.key() == "$double") {
      return doubleFrom(only->get_ref<const std::string&>());
    }
  }
  Value::Members members;
  for (const auto& item : json.items()) {
    members.emplace_back(item.key(), fromJson(item.value()));
  }
  return members;
}

Value fromJson(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
      return json.get<int64_t>();
    case Json::value_t::number_unsigned:
      return json.get<uint64_t>();
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::array: {
      Value::List list;
      list.reserve(json.size());
      for (const auto& item : json) {
        list.push_back(fromJson(item));
      }
      return list;
    }
    case Json::value_t::object:
      return objectFrom(json);
    default:
      return {};
  }
}

Json fromText(const std::string& text) {
  if (isUtf8(text)) {
    return text;
  }
  return Json{{"$bytes", toBase64(reinterpret_cast<const uint8_t*>(text.data()), text.size())}};
}

Json fromDouble(double number) {
  if (std::isnan(number)) {
    return Json{{"$double", "NaN"}};
  }
  if (std::isinf(number)) {
    return Json{{"$double", number < 0 ? "-Infinity" : "Infinity"}};
  }
  return number;
}

Json fromValue(const Value& value) {
  if (const auto* flag = value.as<bool>()) {
    return *flag;
  }
  if (const auto* number = value.as<int64_t>()) {
    const bool exact = *number <= kMaxExactInteger && *number >= -kMaxExactInteger;
    return exact ? Json(*number) : Json{{"$int", std::to_string(*number)}};
  }
  if (const auto* number = value.as<uint64_t>()) {
    return *number <= uint64_t{kMaxExactInteger} ? Json(*number) : Json{{"$int", std::to_string(*number)}};
  }
  if (const auto* number = value.as<double>()) {
    return fromDouble(*number);
  }
  if (const auto* text = value.as<std::string>()) {
    return fromText(*text);
  }
  if (const auto* bytes = value.as<Value::Bytes>()) {
    return Json{{"$bytes", toBase64(bytes->data(), bytes->size())}};
  }
  if (const auto* list = value.as<Value::List>()) {
    Json array = Json::array();
    for (const auto& item : *list) {
      array.push_back(fromValue(item));
    }
    return array;
  }
  if (const auto* members = value.as<Value::Members>()) {
    Json object = Json::object();
    for (const auto& [name, member] : *members) {
      object.emplace(name, fromValue(member));
    }
    return object;
  }
  return nullptr;
}

}  // namespace

Value parseJson(std::string_view text) {
  try {
    return fromJson(Json::parse(text));
  } catch (const Json::exception& error) {
    throw BadRequest(error.what());
  }
}

std::string toJson(const Value& value) {
  return fromValue(value).dump();
}

}  // namespace corvane::scripted
