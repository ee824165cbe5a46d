// The one function by which a test drives the scripted engine; not part of the engine's headers.
#pragma once

#include <cstddef>

#include "corvane_rtc/export.h"

extern "C" {

/// `request`: a JSON object with "do", the command's name, and its parameters. `reply` is called once, before this
/// returns, with {"value": ...} or {"error": message}; its text is valid during the call only.
CORVANE_RTC_API void scriptedEngineCommand(const char* request, size_t size,
                                           void (*reply)(void* context, const char* text, size_t size), void* context);
}
