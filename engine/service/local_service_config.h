// The files that a private Janus server is started with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "service/address.h"

namespace corvane::rtc {

struct LocalServiceConfig {
  std::string folder;  ///< where the files go; it exists
  std::string secret;
  uint16_t port = 0;
};

/// Writes a file that only the user can read. False when it cannot be written.
bool writePrivateFile(const std::string& path, const std::string& text);

/// What tells the other processes of the user where the server is.
std::string writeServiceFile(const LocalServiceConfig& config);
/// Empty when the text does not say it.
std::optional<ServiceAddress> readServiceFile(std::string_view text);

/// False when a file cannot be written.
bool writeServiceConfig(const LocalServiceConfig& config);

}  // namespace corvane::rtc
