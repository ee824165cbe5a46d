// Turns JavaScript values into native ones, one value at a time. JavaScript thread only.
#pragma once

#include <napi.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// A JavaScript string as zero-terminated UTF-8. Short texts stay inside the object.
class Text {
 public:
  Text() = default;
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  const char* c_str() const { return long_.empty() ? short_ : long_.c_str(); }
  size_t size() const { return long_.empty() ? short_size_ : long_.size(); }
  std::string_view view() const { return {c_str(), size()}; }

 private:
  friend class Reader;
  static constexpr size_t kShortCapacity = 248;
  size_t short_size_ = 0;
  char short_[kShortCapacity] = {0};  // only the first byte matters until it is filled
  std::string long_;
};

/// The bytes of a typed array. Valid while the array is neither detached nor collected, so: during the call.
struct Bytes {
  uint8_t* data = nullptr;
  size_t size = 0;
};

/// Reads values with the host's own conversions. A conversion that fails yields 0, false or "" and keeps the host's
/// error; reading goes on, and the first error becomes the pending exception when the reader goes out of scope.
class Reader {
 public:
  explicit Reader(napi_env env) : env_(env) {}
  ~Reader();
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  napi_env env() const { return env_; }

  int32_t int32(napi_value value);
  uint32_t uint32(napi_value value);
  int64_t int64(napi_value value);
  double number(napi_value value);
  bool boolean(napi_value value);
  void text(napi_value value, Text& into);
  std::string string(napi_value value);
  Bytes bytes(napi_value value);

  /// Properties of records and elements of lists. A failed read (a throwing getter, a value that is no object)
  /// gives null, which every conversion above takes as a missing value.
  napi_value get(napi_value object, const char* key);
  napi_value at(napi_value array, uint32_t index);
  uint32_t length(napi_value array);

  int32_t int32(napi_value object, const char* key) { return int32(get(object, key)); }
  double number(napi_value object, const char* key) { return number(get(object, key)); }
  bool boolean(napi_value object, const char* key) { return boolean(get(object, key)); }
  void text(napi_value object, const char* key, Text& into) { text(get(object, key), into); }
  std::string string(napi_value object, const char* key) { return string(get(object, key)); }

  /// True once a conversion failed.
  bool failed() const { return !error_.IsEmpty(); }

 private:
  void keepError();
  bool check(napi_status status);

  napi_env env_;
  Napi::Error error_;
};

/// JavaScript types as arguments are tested for.
enum class Kind : uint8_t {
  kAny,
  kNumber,
  kBoolean,
  kString,
  kObject,  ///< an object or a function
  kFunction,
  kArray,
  kBytes,  ///< a typed array, Node's Buffer included
};

bool isKind(napi_env env, napi_value value, Kind kind);

/// The host's number for the type of a value, as some refusal lines print it.
int32_t typeCode(napi_env env, napi_value value);

}  // namespace corvane
