// Copies of planes that nobody reads at once.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::rtc {

/// memcpy() that goes past the caches where much is copied: the target's old content need not be fetched first, and
/// what the caches hold stays there. Any thread.
void copyPixels(uint8_t* to, const uint8_t* from, size_t size);

}  // namespace corvane::rtc
