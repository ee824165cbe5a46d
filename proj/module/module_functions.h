// The plain functions of the module.
#pragma once

#include <napi.h>

namespace corvane {

/// Sets setLogConfig, getSDKVersion, getTimestampMs, getTimestampUs, getCurrentProcessId and getErrorDescription.
void addModuleFunctions(Napi::Env env, Napi::Object exports);

}  // namespace corvane
