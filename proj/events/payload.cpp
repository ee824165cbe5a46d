#include "events/payload.h"

#include <algorithm>
#include <cstring>

#include "events/environment_data.h"

namespace corvane {
namespace {

// Marks the end of a nested object in a sequence of keys.
constexpr char kClose[] = "}";
// Marks that the next key opens a nested object.
constexpr char kOpen[] = "{";

std::string quoted(const char* text) {
  std::string result = "\"";
  for (; *text != '\0'; ++text) {
    if (*text == '"' || *text == '\\') result += '\\';
    result += *text;
  }
  return result + '"';
}

// The source of a function that makes an object with these keys from its arguments in order.
std::string factorySource(const char* event_name, std::span<const char* const> keys) {
  std::string body = "{";
  size_t parameters = 0;
  bool comma = false;
  for (size_t i = 0; i < keys.size(); ++i) {
    if (keys[i] == kClose) {
      body += '}';
      comma = true;
      continue;
    }
    if (comma) body += ',';
    comma = true;
    if (keys[i] == kOpen) {
      body += quoted(keys[++i]) + ":{";
      comma = false;
      continue;
    }
    body += quoted(keys[i]) + ":v" + std::to_string(parameters++);
  }
  body += '}';
  if (event_name != nullptr) body = "{\"Type\":" + quoted(event_name) + ",\"Object\":" + body + "}";

  std::string source = "(function(){\"use strict\";return function(";
  for (size_t i = 0; i < parameters; ++i) source += (i == 0 ? "v" : ",v") + std::to_string(i);
  return source + "){return " + body + ";};})()";
}

napi_value makeFactory(napi_env env, const char* event_name, std::span<const char* const> keys) {
  const std::string source = factorySource(event_name, keys);
  napi_value script = nullptr;
  napi_value factory = nullptr;
  if (napi_create_string_utf8(env, source.data(), source.size(), &script) != napi_ok ||
      napi_run_script(env, script, &factory) != napi_ok) {
    return nullptr;
  }
  return factory;
}

// The function for this sequence of keys; literals are compared by pointer, so that a look-up reads no text.
napi_value findFactory(napi_env env, EnvironmentData& data, const char* event_name, std::span<const char* const> keys) {
  const void* first = event_name != nullptr ? event_name : (keys.empty() ? nullptr : keys.front());
  auto& candidates = data.factories[first];
  for (const auto& candidate : candidates) {
    if (candidate.event_name != event_name || !std::ranges::equal(candidate.keys, keys)) continue;
    napi_value factory = nullptr;
    return napi_get_reference_value(env, candidate.function, &factory) == napi_ok ? factory : nullptr;
  }
  napi_value factory = makeFactory(env, event_name, keys);
  napi_ref reference = nullptr;
  if (factory == nullptr || napi_create_reference(env, factory, 1, &reference) != napi_ok) return factory;
  candidates.push_back({event_name, {keys.begin(), keys.end()}, reference});
  return factory;
}

void raise(napi_env env) {
  Napi::Error::New(env).ThrowAsJavaScriptException();
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

Payload::Payload(napi_env env, const char* event_name)
    : env_(env),
      event_name_(event_name),
      data_(EnvironmentData::of(env)),
      first_key_(data_.keys.size()),
      first_value_(data_.values.size()) {}

Payload::Payload(napi_env env) : Payload(env, nullptr) {}

Payload::~Payload() {
  data_.keys.resize(first_key_);
  data_.values.resize(first_value_);
}

void Payload::open(const char* key) {
  data_.keys.push_back(kOpen);
  data_.keys.push_back(key);
}

void Payload::close() {
  data_.keys.push_back(kClose);
}

void Payload::add(const char* key, napi_value value) {
  if (value == nullptr) napi_get_undefined(env_, &value);
  data_.keys.push_back(key);
  data_.values.push_back(value);
}

napi_value Payload::integerValue(int32_t value) {
  napi_value result = nullptr;
  if (napi_create_int32(env_, value, &result) != napi_ok) raise(env_);
  return result;
}

napi_value Payload::numberValue(double value) {
  napi_value result = nullptr;
  if (napi_create_double(env_, value, &result) != napi_ok) raise(env_);
  return result;
}

napi_value Payload::booleanValue(bool value) {
  napi_value result = nullptr;
  if (napi_get_boolean(env_, value, &result) != napi_ok) raise(env_);
  return result;
}

napi_value Payload::textValue(const std::string& text) {
  return makeText(env_, text);
}

napi_value Payload::newArray(size_t length) {
  napi_value array = nullptr;
  if (napi_create_array_with_length(env_, length, &array) != napi_ok) raise(env_);
  return array;
}

void Payload::setElement(napi_value array, uint32_t index, napi_value value) {
  if (value == nullptr || array == nullptr) return;
  if (napi_set_element(env_, array, index, value) != napi_ok) raise(env_);
}

void Payload::numbers(const char* key, const float* values, size_t count) {
  napi_value array = newArray(count);
  for (size_t i = 0; i < count; ++i) {
    setElement(array, static_cast<uint32_t>(i), numberValue(static_cast<double>(values[i])));
  }
  add(key, array);
}

napi_value Payload::finish() {
  const std::span<const char* const> keys(data_.keys.data() + first_key_, data_.keys.size() - first_key_);
  const std::span<const napi_value> values(data_.values.data() + first_value_, data_.values.size() - first_value_);
  napi_value result = nullptr;
  napi_value factory = findFactory(env_, data_, event_name_, keys);
  napi_value undefined = nullptr;
  napi_get_undefined(env_, &undefined);
  if (factory == nullptr ||
      napi_call_function(env_, undefined, factory, values.size(), values.data(), &result) != napi_ok) {
    raise(env_);
    return nullptr;
  }
  return result;
}

napi_value makeText(napi_env env, std::string_view text) {
  const size_t end = text.find('\0');
  const std::string_view shown = text.substr(0, end);
  napi_value result = nullptr;
  // The host makes one-byte strings several times faster than it decodes UTF-8.
  const napi_status status = isAscii(shown) ? napi_create_string_latin1(env, shown.data(), shown.size(), &result)
                                            : napi_create_string_utf8(env, shown.data(), shown.size(), &result);
  if (status != napi_ok) raise(env);
  return result;
}

void callWithEvent(napi_env env, napi_value function, napi_value event) {
  if (event == nullptr || function == nullptr) return;
  napi_value undefined = nullptr;
  napi_get_undefined(env, &undefined);
  // An exception of the callback stays pending: the host reports it as uncaught.
  napi_call_function(env, undefined, function, 1, &event, nullptr);
}

}  // namespace corvane
