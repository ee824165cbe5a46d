#include "events/payload.h"

#include <algorithm>
#include <cstring>

#include "events/environment_data.h"

namespace corvane {
namespace {

std::string quoted(const char* text) {
  std::string result = "\"";
  for (; *text != '\0'; ++text) {
    if (*text == '"' || *text == '\\') result += '\\';
    result += *text;
  }
  return result + '"';
}

}  // namespace

// The source of a function that makes an object with these keys from its arguments in order, and returns it or, when it
// `delivers`, calls its first argument with it.
std::string factorySource(bool delivers, const char* event_name, std::span<const char* const> keys) {
  std::string body = "{";
  size_t parameters = 0;
  bool comma = false;
  for (size_t i = 0; i < keys.size(); ++i) {
    if (keys[i] == Payload::kClose) {
      body += '}';
      comma = true;
      continue;
    }
    if (comma) body += ',';
    comma = true;
    if (keys[i] == Payload::kOpen) {
      body += quoted(keys[++i]) + ":{";
      comma = false;
      continue;
    }
    body += quoted(keys[i]) + ":v" + std::to_string(parameters++);
  }
  body += '}';
  if (event_name != nullptr) body = "{\"Type\":" + quoted(event_name) + ",\"Object\":" + body + "}";

  std::string source = "(function(){\"use strict\";return function(f";
  for (size_t i = 0; i < parameters; ++i) source += ",v" + std::to_string(i);
  return source + (delivers ? "){f(" + body + ");};})()" : "){return " + body + ";};})()");
}

namespace {

napi_value makeFactory(napi_env env, bool delivers, const char* event_name, std::span<const char* const> keys) {
  const std::string source = factorySource(delivers, event_name, keys);
  napi_value script = nullptr;
  napi_value factory = nullptr;
  if (napi_create_string_utf8(env, source.data(), source.size(), &script) != napi_ok ||
      napi_run_script(env, script, &factory) != napi_ok) {
    return nullptr;
  }
  return factory;
}

bool makesThese(const EnvironmentData::Factory& factory, bool delivers, const char* event_name,
                std::span<const char* const> keys) {
  return factory.delivers == delivers && factory.event_name == event_name && std::ranges::equal(factory.keys, keys);
}

const EnvironmentData::Factory* findOrMakeFactory(napi_env env, EnvironmentData& data, const void* first, bool delivers,
                                                  const char* event_name, std::span<const char* const> keys) {
  auto& candidates = data.factories[first];
  for (const auto& candidate : candidates) {
    if (makesThese(candidate, delivers, event_name, keys)) return &candidate;
  }
  napi_value factory = makeFactory(env, delivers, event_name, keys);
  napi_ref reference = nullptr;
  if (factory == nullptr || napi_create_reference(env, factory, 1, &reference) != napi_ok) return nullptr;
  return &candidates.emplace_back(
      EnvironmentData::Factory{delivers, event_name, {keys.begin(), keys.end()}, reference});
}

// The function for this sequence of keys; literals are compared by pointer, so that a look-up reads no text.
napi_value findFactory(napi_env env, EnvironmentData& data, bool delivers, const char* event_name,
                       std::span<const char* const> keys) {
  const void* first = event_name != nullptr ? event_name : (keys.empty() ? nullptr : keys.front());
  auto& recent = data.recent[reinterpret_cast<uintptr_t>(first) / 16 % data.recent.size()];
  if (recent == nullptr || !makesThese(*recent, delivers, event_name, keys)) {
    recent = findOrMakeFactory(env, data, first, delivers, event_name, keys);
    if (recent == nullptr) return nullptr;
  }
  napi_value factory = nullptr;
  return napi_get_reference_value(env, recent->function, &factory) == napi_ok ? factory : nullptr;
}

void raise(napi_env env) {
  Napi::Error::New(env).ThrowAsJavaScriptException();
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

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
  return make(nullptr);
}

void Payload::deliver(napi_value function) {
  make(function);
}

// Makes the object and hands it to `function`, or answers it when there is none.
napi_value Payload::make(napi_value function) {
  if (key_count_ > kCapacity) {
    napi_throw_range_error(env_, nullptr, "a payload has more keys than its writer holds");
    return nullptr;
  }
  const std::span<const char* const> keys(keys_.data(), key_count_);
  napi_value undefined = nullptr;
  napi_get_undefined(env_, &undefined);
  for (size_t i = 1; i < value_count_; ++i) {
    if (values_[i] == nullptr) values_[i] = undefined;
  }
  values_[0] = function != nullptr ? function : undefined;
  napi_value factory = findFactory(env_, EnvironmentData::of(env_), function != nullptr, event_name_, keys);
  napi_value result = nullptr;
  napi_status status = napi_generic_failure;
  if (factory != nullptr) status = napi_call_function(env_, undefined, factory, value_count_, values_.data(), &result);
  if (status == napi_ok) return result;
  // An exception of the called function stays pending: the host reports it as uncaught.
  if (status != napi_pending_exception) raise(env_);
  return nullptr;
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

}  // namespace corvane
