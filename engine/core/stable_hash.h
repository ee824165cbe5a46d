// A number for a text that is the same in every process, on every machine.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvane::rtc {

inline uint64_t stableHash(std::string_view text) {
  uint64_t hash = 14695981039346656037ULL;
  for (const char character : text) {
    hash ^= static_cast<unsigned char>(character);
    hash *= 1099511628211ULL;
  }
  return hash;
}

}  // namespace corvane::rtc
