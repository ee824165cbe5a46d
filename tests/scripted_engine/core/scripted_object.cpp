#include "core/scripted_object.h"

namespace corvane::scripted {

bool TextOut::fill(const Value& answer) const {
  const Value* member = answer.find(name);
  if (member == nullptr || member->isNull()) {
    return false;
  }
  Arena arena;
  const std::string_view text = arena.text(*member);
  size_t length = std::min(text.size(), size - 1);
  // Not inside a UTF-8 sequence.
  while (length < text.size() && length > 0 && (static_cast<uint8_t>(text[length]) & 0xC0U) == 0x80U) {
    --length;
  }
  text.copy(buffer, length);
  buffer[length] = '\0';
  return true;
}

int64_t ScriptedObject::nextNumber() {
  static std::atomic<int64_t> last{0};
  return ++last;
}

}  // namespace corvane::scripted
