// The bytes of pushed frames: known from a seed alone, so that a test can compute what must arrive.
// tests/module/support/pixels.js computes the same.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::scripted {

/// What lies between rows, between planes and behind the last: nothing that a test should ever see.
inline constexpr uint8_t kGapByte = 0xEE;
/// What a frame's memory holds after its release.
inline constexpr uint8_t kReleasedByte = 0xDD;

/// One byte of a plane. `column` counts bytes, not pixels.
constexpr uint8_t patternByte(uint32_t seed, uint32_t plane, uint32_t row, uint32_t column) {
  uint32_t bits = seed * 0x9E3779B1U + plane * 0x85EBCA77U + row * 0xC2B2AE3DU + column * 0x27D4EB2FU;
  bits ^= bits >> 15U;
  return static_cast<uint8_t>(bits * 0x2C1B3C6DU >> 24U);
}

inline void fillPattern(uint8_t* bytes, size_t size, uint32_t seed, uint32_t plane, uint32_t row) {
  for (size_t column = 0; column < size; ++column) {
    bytes[column] = patternByte(seed, plane, row, static_cast<uint32_t>(column));
  }
}

}  // namespace corvane::scripted
