// What the codes that the engine answers and reports mean, in words.
#pragma once

#include <cstdint>

namespace corvane::rtc {

/// One English sentence about a ReturnStatus, which onError() carries too; "" for any other number.
const char* describeError(int32_t code);

}  // namespace corvane::rtc
