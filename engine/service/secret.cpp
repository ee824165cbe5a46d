#include "service/secret.h"

#include <sys/random.h>

namespace corvane::rtc {

std::string makeSecret() {
  unsigned char bytes[24] = {};
  if (getrandom(bytes, sizeof(bytes), 0) != static_cast<ssize_t>(sizeof(bytes))) return {};
  std::string text;
  for (const unsigned char byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

}  // namespace corvane::rtc
