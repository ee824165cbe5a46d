// printf formatting for log lines. Nearly all of them use %s, %d, %u and %lld only, and a call writes two: what the C
// library's formatter costs would be a quarter of a call.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace corvane {

/// Like vsnprintf(), but answers the characters written: at most `space` - 1, and a terminating zero behind them.
/// `space` is at least 1.
size_t formatMessage(char* to, size_t space, const char* format, va_list arguments);

}  // namespace corvane
