#include "core/fields.h"

namespace corvane::scripted {

const char* Arena::text(const Value& value) {
  if (value.isNull()) {
    return nullptr;
  }
  const auto* bytes = value.as<Value::Bytes>();
  const std::string& text = bytes == nullptr ? value.toText() : std::string();
  const char* data = bytes == nullptr ? text.data() : reinterpret_cast<const char*>(bytes->data());
  const size_t size = bytes == nullptr ? text.size() : bytes->size();
  char* copy = make<char>(size + 1);
  if (size > 0) {
    std::memcpy(copy, data, size);
  }
  return copy;
}

}  // namespace corvane::scripted
