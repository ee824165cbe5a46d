// Mends files whose writing was cut off, so that every player takes them.
#pragma once

#include <string>

namespace corvane::rtc {

/// Cuts off an MP4 file's last box if it is not all there.
void dropPartialBox(const std::string& path);

/// Has the head of a WAV file of 16-bit samples tell the length that the file has now. Also while it is written.
void updateWavHead(const std::string& path);

}  // namespace corvane::rtc
