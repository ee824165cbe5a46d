#include "devices/device_text.h"

#include <algorithm>
#include <cstring>

namespace corvane::rtc {

void copyDeviceText(const std::string& text, char* buffer) {
  size_t length = std::min(text.size(), static_cast<size_t>(kDeviceTextSize - 1));
  // A byte 10xxxxxx continues a character of UTF-8: none may stand where the text is cut.
  while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

}  // namespace corvane::rtc
