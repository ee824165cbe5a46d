#include "module/module_functions.h"

#include <chrono>
#include <string>

#include "binding/reader.h"
#include "corvane_rtc/entry_points.h"
#include "log/log.h"
#include "platform/platform.h"

namespace corvane {
namespace {

// JavaScript counts severities upward from info, the log's threshold counts downward from errors.
void applyLogLevel(int32_t log_level) {
  switch (log_level) {
    case 0:
      setLogThreshold(2);
      break;
    case 1:
      setLogThreshold(1);
      break;
    case 2:
      setLogThreshold(0);
      break;
    case 3:
      setLogThreshold(-1);
      break;
    case -1:
      setLogThreshold(3);
      break;
    default:
      break;
  }
}

int32_t readAndSetLogConfig(Napi::Env env, napi_value config) {
  Reader reader(env);
  Text path;
  Text prefix;
  reader.text(config, "log_path", path);
  const int32_t log_level = reader.int32(config, "log_level");
  const int32_t file_size = reader.int32(config, "log_file_size");
  reader.text(config, "log_filename_prefix", prefix);
  applyLogLevel(log_level);
  const int32_t result = rtc::setLogConfig({path.c_str(), log_level, file_size, prefix.c_str()});
  if (result == 0) setLogDirectory(path.c_str());
  return result;
}

Napi::Value jsSetLogConfig(const Napi::CallbackInfo& info) {
  int32_t result = -1;
  if (isKind(info.Env(), info[0], Kind::kObject)) {
    result = readAndSetLogConfig(info.Env(), info[0]);
  } else {
    LogWrite(kLogWarning, "%s(%d), invalid param, not a object type", "setLogConfig", __LINE__);
  }
  LogWrite(kLogInfo, "%s(%d), ret: %d", "setLogConfig", __LINE__, result);
  return Napi::Number::New(info.Env(), result);
}

Napi::Value jsGetSDKVersion(const Napi::CallbackInfo& info) {
  const char* version = rtc::getSDKVersion();
  if (version == nullptr) version = "";
  LogWrite(kLogInfo, "%s(%d), version: %s", "getSDKVersion", __LINE__, version);
  return Napi::String::New(info.Env(), version);
}

// The wall clock in ticks of 100 nanoseconds.
int64_t wallClockTicks() {
  using Ticks = std::chrono::duration<int64_t, std::ratio<1, 10000000>>;
  return std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch()).count();
}

Napi::Value jsGetTimestampMs(const Napi::CallbackInfo& info) {
  const int64_t milliseconds = wallClockTicks() / 10000;
  return Napi::Number::New(info.Env(), static_cast<double>(milliseconds));
}

Napi::Value jsGetTimestampUs(const Napi::CallbackInfo& info) {
  const int64_t microseconds = wallClockTicks() / 10;
  return Napi::Number::New(info.Env(), static_cast<double>(microseconds));
}

Napi::Value jsGetCurrentProcessId(const Napi::CallbackInfo& info) {
  const int32_t pid = platform::currentProcessId();
  LogWrite(kLogInfo, "%s(%d), pid: %d", "getCurrentProcessId", __LINE__, pid);
  return Napi::String::New(info.Env(), std::to_string(pid));
}

Napi::Value jsGetErrorDescription(const Napi::CallbackInfo& info) {
  std::string description;
  if (isKind(info.Env(), info[0], Kind::kNumber)) {
    Reader reader(info.Env());
    const char* text = rtc::getErrorDescription(static_cast<int32_t>(reader.uint32(info[0])));
    if (text != nullptr) description = text;
  } else {
    LogWrite(kLogWarning, "%s(%d), invalid param, not a number type", "getErrorDescription", __LINE__);
  }
  LogWrite(kLogInfo, "%s(%d), error_desc: %s", "getErrorDescription", __LINE__, description.c_str());
  return Napi::String::New(info.Env(), description);
}

}  // namespace

void addModuleFunctions(Napi::Env env, Napi::Object exports) {
  exports.Set("setLogConfig", Napi::Function::New<jsSetLogConfig>(env, "setLogConfig"));
  exports.Set("getSDKVersion", Napi::Function::New<jsGetSDKVersion>(env, "getSDKVersion"));
  exports.Set("getTimestampMs", Napi::Function::New<jsGetTimestampMs>(env, "getTimestampMs"));
  exports.Set("getTimestampUs", Napi::Function::New<jsGetTimestampUs>(env, "getTimestampUs"));
  exports.Set("getCurrentProcessId", Napi::Function::New<jsGetCurrentProcessId>(env, "getCurrentProcessId"));
  exports.Set("getErrorDescription", Napi::Function::New<jsGetErrorDescription>(env, "getErrorDescription"));
}

}  // namespace corvane
