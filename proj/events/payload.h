// Builds the objects that events carry. JavaScript thread only.
//
// A payload is written key by key, in the order in which JavaScript is to see the keys. The writer only gathers the
// values; finish() hands them to a function that makes the whole object with one literal. Such a function is made
// once for each sequence of keys and kept: several times faster than setting properties one by one.
#pragma once

#include <napi.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace corvane {

class Payload {
 public:
  /// The payload of an event: finish() gives {"Type": event_name, "Object": {...}}.
  Payload(napi_env env, const char* event_name) : env_(env), event_name_(event_name) {}
  /// A plain object, such as an element of a list.
  explicit Payload(napi_env env) : Payload(env, nullptr) {}
  Payload(const Payload&) = delete;
  Payload& operator=(const Payload&) = delete;

  napi_env env() const { return env_; }

  /// Keys must be literals: they are kept by pointer. Numbers of any width become JavaScript numbers.
  template <class Value>
  requires std::is_arithmetic_v<Value>
  void put(const char* key, Value value) {
    if constexpr (std::is_same_v<Value, bool>) {
      add(key, booleanValue(value));
    } else if constexpr (std::is_integral_v<Value> && sizeof(Value) <= 4 && std::is_signed_v<Value>) {
      add(key, integerValue(value));
    } else {
      add(key, numberValue(static_cast<double>(value)));
    }
  }
  /// Text as UTF-8, up to its first zero byte.
  void put(const char* key, const std::string& text) { add(key, textValue(text)); }
  void put(const char* key, const char*) = delete;  // engine text must be owned by the record
  /// Any value, such as a buffer. Null is set as undefined.
  void put(const char* key, napi_value value) { add(key, value); }

  /// A nested object.
  template <class Fill>
  requires std::invocable<Fill, Payload&>
  void object(const char* key, Fill fill) {
    open(key);
    fill(*this);
    close();
  }

  /// An array of objects; `fill` gets each element's writer and the element.
  template <class Records, class Fill>
  void list(const char* key, const Records& records, Fill fill) {
    napi_value array = newArray(std::size(records));
    uint32_t index = 0;
    for (const auto& record : records) {
      Payload element(env_);
      fill(element, record);
      setElement(array, index++, element.finish());
    }
    add(key, array);
  }

  /// An array of numbers.
  void numbers(const char* key, const float* values, size_t count);

  /// The finished object, or null when the host refused to make it (its exception is pending then).
  napi_value finish();
  /// Calls `function` with undefined as its receiver and the finished object as its one argument. Its exception stays
  /// pending. Costs one call into JavaScript where finish() and a call of one's own cost two.
  void deliver(napi_value function);

 private:
  napi_value make(napi_value function);
  // The largest payload, a remote stream's statistics, has 46 keys and marks.
  static constexpr size_t kCapacity = 64;
  // Marks in the sequence of keys: the next key opens a nested object, or the innermost one ends.
  static constexpr char kOpen[] = "{";
  static constexpr char kClose[] = "}";

  void open(const char* key) {
    addKey(kOpen);
    addKey(key);
  }
  void close() { addKey(kClose); }
  void add(const char* key, napi_value value) {
    addKey(key);
    if (value_count_ < kCapacity) values_[value_count_++] = value;
  }
  // What does not fit is left out, which finish() reports.
  void addKey(const char* key) {
    if (key_count_ < kCapacity) keys_[key_count_] = key;
    ++key_count_;
  }
  napi_value integerValue(int32_t value);
  napi_value numberValue(double value);
  napi_value booleanValue(bool value);
  napi_value textValue(const std::string& text);
  napi_value newArray(size_t length);
  void setElement(napi_value array, uint32_t index, napi_value value);

  friend std::string factorySource(bool delivers, const char* event_name, std::span<const char* const> keys);

  napi_env env_;
  const char* event_name_;
  size_t key_count_ = 0;
  size_t value_count_ = 1;  // the first value is kept free for the function that is called
  // Written as far as they are counted.
  std::array<const char*, kCapacity> keys_;
  std::array<napi_value, kCapacity> values_;
};

/// Text up to its first zero byte as a JavaScript string.
napi_value makeText(napi_env env, std::string_view text);

}  // namespace corvane
