// Prefix codes as deflate has them.
#pragma once

#include <cstdint>
#include <span>

namespace corvane::platform {

inline constexpr int32_t kMaxCodeBits = 15;

struct HuffmanCode {
  uint16_t bits;   ///< in the order in which they are written: the first one lowest
  uint16_t count;  ///< how many bits; 0 for a symbol that does not occur
};

/// Makes the codes of symbols that occur `counts` times, none longer than kMaxCodeBits. At least two symbols occur.
void makeHuffmanCodes(std::span<const uint32_t> counts, std::span<HuffmanCode> codes);

}  // namespace corvane::platform
