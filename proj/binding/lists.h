// Lists from JavaScript arrays, and the texts of their records.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "binding/row.h"

namespace corvane {

/// Records that one call takes. The engine counts with 32 bits, and an array may claim to have four thousand million
/// elements: memory would run out long before its end.
inline constexpr uint32_t kLongestList = 1U << 20U;

/// The length of an array, 0 for what is no array. A longer list than can be taken is refused with `refusal`.
inline std::optional<uint32_t> listLength(const Call& call, Reader& reader, napi_value array, const char* refusal) {
  const uint32_t length = reader.length(array);
  if (length <= kLongestList) return length;
  call.say(call.row.refusal_level, refusal);
  return std::nullopt;
}

/// Keeps the texts of a list's records where they are until the engine call has returned.
class Texts {
 public:
  const char* keep(std::string text) { return kept_.emplace_back(std::move(text)).c_str(); }

 private:
  std::deque<std::string> kept_;
};

}  // namespace corvane
