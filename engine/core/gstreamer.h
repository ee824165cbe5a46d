// Start-up of GStreamer, which the whole process shares and never takes down.
#pragma once

#include <string>

namespace corvane::rtc {

/// Starts GStreamer on the first call. May take a second on a machine that has never done so, while its plug-ins are
/// listed. Returns false, with the reason, when it cannot be used. Any thread.
bool startGStreamer(std::string& problem);

}  // namespace corvane::rtc
