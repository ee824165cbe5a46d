// The files that a private Janus server is started with.
#pragma once

#include <cstdint>
#include <string>

namespace corvane::rtc {

struct LocalServiceConfig {
  std::string folder;  ///< where the files go; it exists
  std::string secret;
  uint16_t port = 0;
};

/// Writes a file that only the user can read. False when it cannot be written.
bool writePrivateFile(const std::string& path, const std::string& text);

/// False when a file cannot be written.
bool writeServiceConfig(const LocalServiceConfig& config);

}  // namespace corvane::rtc
