// Texts that nobody can guess.
#pragma once

#include <string>

namespace corvane::rtc {

/// 48 hexadecimal digits; "" when the system gives no random numbers.
std::string makeSecret();

}  // namespace corvane::rtc
