// What crosses between a test and the scripted engine: JSON's kinds of values plus byte strings and exact 64-bit
// integers.
#pragma once

#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace corvane::scripted {

/// A test asked for something that does not fit the engine's headers. Becomes an exception in JavaScript.
class BadRequest : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Value {
 public:
  using Bytes = std::vector<uint8_t>;
  using List = std::vector<Value>;
  /// In the order in which they were added, so that tests see records in the order of the headers.
  using Members = std::vector<std::pair<std::string, Value>>;

  Value() = default;
  // Not inline: half of every record and list is one of these.
  Value(const Value&);
  Value(Value&&) noexcept;
  Value& operator=(const Value&);
  Value& operator=(Value&&) noexcept;
  ~Value();

  Value(std::same_as<bool> auto flag) : data_(flag) {}
  Value(std::signed_integral auto number) : data_(static_cast<int64_t>(number)) {}
  Value(std::unsigned_integral auto number) requires(!std::same_as<decltype(number), bool>)
      : data_(static_cast<uint64_t>(number)) {}
  Value(std::floating_point auto number) : data_(static_cast<double>(number)) {}
  Value(const char* text) {
    if (text != nullptr) {
      data_ = std::string(text);
    }
  }
  Value(std::string text) : data_(std::move(text)) {}
  Value(Bytes bytes) : data_(std::move(bytes)) {}
  Value(List list) : data_(std::move(list)) {}
  Value(Members members) : data_(std::move(members)) {}

  template <class T>
  const T* as() const {
    return std::get_if<T>(&data_);
  }
  bool isNull() const { return std::holds_alternative<std::monostate>(data_); }

  bool toBool() const;
  int64_t toInt64() const;
  uint64_t toUint64() const;
  double toDouble() const;
  const std::string& toText() const;
  /// Of null: an empty list.
  const List& toList() const;
  /// Of null: no members.
  const Members& toMembers() const;

  /// Null when this is no object or has no such member.
  const Value* find(std::string_view name) const;
  /// Adds a member or replaces it.
  void set(std::string_view name, Value value);

  /// "a number", "text", ...: for messages.
  const char* kind() const;

 private:
  std::variant<std::monostate, bool, int64_t, uint64_t, double, std::string, Bytes, List, Members> data_;
};

/// Throws BadRequest for text that is no JSON. Beyond JSON: {"$bytes": base64} is a byte string and {"$int": digits}
/// an integer that a JavaScript number cannot hold.
Value parseJson(std::string_view text);

/// The reverse. Text that is not UTF-8 goes as {"$bytes"}, a double that JSON lacks as {"$double": "NaN"}.
std::string toJson(const Value& value);

}  // namespace corvane::scripted
