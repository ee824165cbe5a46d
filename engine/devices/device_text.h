// Names and ids of devices as the published interfaces hand them out.
#pragma once

#include <string>

#include "corvane_rtc/device_manager.h"

namespace corvane::rtc {

/// Fills one of the buffers of kDeviceTextSize bytes in which device names and ids are handed out, cutting between
/// characters.
void copyDeviceText(const std::string& text, char* buffer);

}  // namespace corvane::rtc
