// Base64 with the standard alphabet and padding, in one line.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace corvane {

std::string encodeBase64(std::span<const uint8_t> bytes);

}  // namespace corvane
