#include "video/base64.h"

#include <array>
#include <cstring>

namespace corvane {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two characters for every 12 bits: two look-ups for three bytes.
constexpr auto kPairs = [] {
  std::array<std::array<char, 2>, 4096> pairs{};
  for (size_t i = 0; i < pairs.size(); ++i) pairs[i] = {kAlphabet[i >> 6], kAlphabet[i & 63]};
  return pairs;
}();

}  // namespace

std::string encodeBase64(std::span<const uint8_t> bytes) {
  std::string text((bytes.size() + 2) / 3 * 4, '=');
  const uint8_t* in = bytes.data();
  char* out = text.data();
  for (size_t groups = bytes.size() / 3; groups > 0; --groups, in += 3, out += 4) {
    const uint32_t bits = uint32_t{in[0]} << 16 | uint32_t{in[1]} << 8 | in[2];
    std::memcpy(out, kPairs[bits >> 12].data(), 2);
    std::memcpy(out + 2, kPairs[bits & 4095].data(), 2);
  }
  const size_t rest = bytes.size() % 3;
  if (rest > 0) {
    const uint32_t bits = uint32_t{in[0]} << 16 | (rest == 2 ? uint32_t{in[1]} << 8 : 0);
    std::memcpy(out, kPairs[bits >> 12].data(), 2);
    if (rest == 2) out[2] = kAlphabet[bits >> 6 & 63];
  }
  return text;
}

}  // namespace corvane
