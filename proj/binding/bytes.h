// Typed arrays as method arguments.
#pragma once

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "binding/row.h"

namespace corvane {

/// Bytes as %s prints them in a line at kLogInfo: up to the first zero, and no more than fits into a line. Empty when
/// the line will not be written.
inline std::string loggedText(const uint8_t* data, size_t size) {
  if (size == 0 || kLogInfo > logThreshold()) return {};
  constexpr size_t kLongestLine = 10240;
  const char* first = reinterpret_cast<const char*>(data);
  return {first, strnlen(first, std::min(size, kLongestLine))};
}

/// False, with `refusal` in the log, for more bytes than the engine counts with its 32 bits.
inline bool isCountable(const Call& call, const Bytes& bytes, const char* refusal) {
  if (bytes.size <= static_cast<size_t>(std::numeric_limits<int32_t>::max())) return true;
  call.say(call.row.refusal_level, refusal);
  return false;
}

}  // namespace corvane
