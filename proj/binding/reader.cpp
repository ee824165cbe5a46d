#include "binding/reader.h"

namespace corvane {

Reader::~Reader() {
  if (!error_.IsEmpty()) error_.ThrowAsJavaScriptException();
}

// Takes the host's error, or its pending exception, out of the way so that the remaining values can be read.
void Reader::keepError() {
  if (error_.IsEmpty()) {
    error_ = Napi::Error::New(env_);
    return;
  }
  // Only the first one counts, and a long list may have many: no error is made for these.
  bool pending = false;
  napi_value ignored = nullptr;
  if (napi_is_exception_pending(env_, &pending) == napi_ok && pending) {
    napi_get_and_clear_last_exception(env_, &ignored);
  }
}

bool Reader::check(napi_status status) {
  if (status == napi_ok) return true;
  keepError();
  return false;
}

int32_t Reader::int32(napi_value value) {
  int32_t result = 0;
  if (!check(napi_get_value_int32(env_, value, &result))) return 0;
  return result;
}

uint32_t Reader::uint32(napi_value value) {
  uint32_t result = 0;
  if (!check(napi_get_value_uint32(env_, value, &result))) return 0;
  return result;
}

int64_t Reader::int64(napi_value value) {
  int64_t result = 0;
  if (!check(napi_get_value_int64(env_, value, &result))) return 0;
  return result;
}

double Reader::number(napi_value value) {
  double result = 0;
  if (!check(napi_get_value_double(env_, value, &result))) return 0;
  return result;
}

bool Reader::boolean(napi_value value) {
  bool result = false;
  if (!check(napi_get_value_bool(env_, value, &result))) return false;
  return result;
}

void Reader::text(napi_value value, Text& into) {
  into.long_.clear();
  into.short_[0] = '\0';
  into.short_size_ = 0;
  size_t copied = 0;
  if (!check(napi_get_value_string_utf8(env_, value, into.short_, Text::kShortCapacity, &copied))) return;
  into.short_size_ = copied;
  // The host cuts at a whole character, so up to three bytes may have stayed free in a text that did not fit.
  if (copied + 4 < Text::kShortCapacity) return;
  size_t length = 0;
  if (!check(napi_get_value_string_utf8(env_, value, nullptr, 0, &length)) || length <= copied) return;
  into.long_.resize(length);
  check(napi_get_value_string_utf8(env_, value, into.long_.data(), length + 1, &length));
}

std::string Reader::string(napi_value value) {
  Text text;
  this->text(value, text);
  return std::string(text.view());
}

Bytes Reader::bytes(napi_value value) {
  napi_typedarray_type type = napi_uint8_array;
  size_t count = 0;
  void* data = nullptr;
  if (!check(napi_get_typedarray_info(env_, value, &type, &count, &data, nullptr, nullptr))) return {};
  size_t element = 1;
  switch (type) {
    case napi_int16_array:
    case napi_uint16_array:
      element = 2;
      break;
    case napi_int32_array:
    case napi_uint32_array:
    case napi_float32_array:
      element = 4;
      break;
    case napi_float64_array:
    case napi_bigint64_array:
    case napi_biguint64_array:
      element = 8;
      break;
    default:
      break;
  }
  // A detached array keeps its type but owns no memory.
  if (data == nullptr) return {};
  return {static_cast<uint8_t*>(data), count * element};
}

napi_value Reader::get(napi_value object, const char* key) {
  // A value without properties costs the host an exception, and a long list may be full of them. After the first error
  // nothing hangs on it.
  if (failed() && typeCode(env_, object) <= static_cast<int32_t>(napi_null)) return nullptr;
  napi_value value = nullptr;
  if (!check(napi_get_named_property(env_, object, key, &value))) return nullptr;
  return value;
}

napi_value Reader::at(napi_value array, uint32_t index) {
  napi_value value = nullptr;
  if (!check(napi_get_element(env_, array, index, &value))) return nullptr;
  return value;
}

uint32_t Reader::length(napi_value array) {
  uint32_t length = 0;
  if (!check(napi_get_array_length(env_, array, &length))) return 0;
  return length;
}

bool isKind(napi_env env, napi_value value, Kind kind) {
  if (value == nullptr) return false;
  bool matches = false;
  switch (kind) {
    case Kind::kAny:
      return true;
    case Kind::kArray:
      return napi_is_array(env, value, &matches) == napi_ok && matches;
    case Kind::kBytes:
      return napi_is_typedarray(env, value, &matches) == napi_ok && matches;
    default:
      break;
  }
  napi_valuetype type = napi_undefined;
  if (napi_typeof(env, value, &type) != napi_ok) return false;
  switch (kind) {
    case Kind::kNumber:
      return type == napi_number;
    case Kind::kBoolean:
      return type == napi_boolean;
    case Kind::kString:
      return type == napi_string;
    case Kind::kFunction:
      return type == napi_function;
    default:
      return type == napi_object || type == napi_function;
  }
}

int32_t typeCode(napi_env env, napi_value value) {
  napi_valuetype type = napi_undefined;
  if (value == nullptr || napi_typeof(env, value, &type) != napi_ok) return napi_undefined;
  return static_cast<int32_t>(type);
}

}  // namespace corvane
