#include "core/value.h"

#include <array>
#include <cmath>
#include <limits>

namespace corvane::scripted {

namespace {

[[noreturn]] void refuse(const char* wanted, const Value& value) {
  throw BadRequest(std::string("expected ") + wanted + ", found " + value.kind());
}

}  // namespace

Value::Value(const Value&) = default;
Value::Value(Value&&) noexcept = default;
Value& Value::operator=(const Value&) = default;
Value& Value::operator=(Value&&) noexcept = default;
Value::~Value() = default;

const char* Value::kind() const {
  static constexpr std::array<const char*, 9> kKinds = {"null", "a boolean", "an integer", "an integer", "a number",
                                                        "text", "bytes",     "a list",     "an object"};
  return kKinds.at(data_.index());
}

bool Value::toBool() const {
  if (const auto* flag = as<bool>()) {
    return *flag;
  }
  refuse("a boolean", *this);
}

int64_t Value::toInt64() const {
  if (const auto* number = as<int64_t>()) {
    return *number;
  }
  if (const auto* number = as<uint64_t>()) {
    if (*number <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
      return static_cast<int64_t>(*number);
    }
  }
  refuse("a signed 64-bit integer", *this);
}

uint64_t Value::toUint64() const {
  if (const auto* number = as<uint64_t>()) {
    return *number;
  }
  if (const auto* number = as<int64_t>()) {
    if (*number >= 0) {
      return static_cast<uint64_t>(*number);
    }
  }
  refuse("an unsigned 64-bit integer", *this);
}

double Value::toDouble() const {
  if (const auto* number = as<double>()) {
    return *number;
  }
  if (const auto* number = as<int64_t>()) {
    return static_cast<double>(*number);
  }
  if (const auto* number = as<uint64_t>()) {
    return static_cast<double>(*number);
  }
  refuse("a number", *this);
}

const std::string& Value::toText() const {
  if (const auto* text = as<std::string>()) {
    return *text;
  }
  refuse("text", *this);
}

const Value::List& Value::toList() const {
  static const List none;
  if (const auto* list = as<List>()) {
    return *list;
  }
  if (isNull()) {
    return none;
  }
  refuse("a list", *this);
}

const Value::Members& Value::toMembers() const {
  static const Members none;
  if (const auto* members = as<Members>()) {
    return *members;
  }
  if (isNull()) {
    return none;
  }
  refuse("an object", *this);
}

const Value* Value::find(std::string_view name) const {
  if (const auto* members = as<Members>()) {
    for (const auto& [key, value] : *members) {
      if (key == name) {
        return &value;
      }
    }
  }
  return nullptr;
}

void Value::set(std::string_view name, Value value) {
  if (isNull()) {
    data_ = Members{};
  }
  auto& members = std::get<Members>(data_);
  for (auto& [key, old] : members) {
    if (key == name) {
      old = std::move(value);
      return;
    }
  }
  members.emplace_back(std::string(name), std::move(value));
}

}  // namespace corvane::scripted
