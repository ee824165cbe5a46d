// Records without defaults: every key must be there with its type, or the whole call is refused.
#pragma once

#include <array>
#include <optional>

#include "binding/rows.h"

namespace corvane {

struct RequiredKey {
  const char* name;
  Kind kind;
};

/// The keys' values in order, or none after the refusal line. Every property is read exactly once.
template <size_t N>
std::optional<std::array<napi_value, N>> readRequired(const Call& call, Reader& reader, napi_value record,
                                                      const RequiredKey (&keys)[N]) {
  std::array<napi_value, N> values{};
  for (size_t i = 0; i < N; ++i) {
    values[i] = reader.get(record, keys[i].name);
    if (isKind(call.env, values[i], keys[i].kind)) continue;
    call.say(kLogInfo, kParamInvalid);
    return std::nullopt;
  }
  return values;
}

}  // namespace corvane
