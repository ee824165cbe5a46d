#include "log/format.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <type_traits>

namespace corvane {
namespace {

// Where the message goes. What does not fit is cut.
class Output {
 public:
  Output(char* to, size_t space) : at_(to), end_(to + space - 1) {}

  void put(const char* text, size_t length) {
    const auto space = static_cast<size_t>(end_ - at_);
    if (length > space) length = space;
    std::memcpy(at_, text, length);
    at_ += length;
  }
  // Most texts are names and words, which the library's functions take longer to start with than to handle.
  void put(const char* text) {
    for (int i = 0; i < kShort; ++i, ++at_, ++text) {
      if (*text == '\0' || at_ == end_) return;
      *at_ = *text;
    }
    put(text, std::strlen(text));
  }
  // Up to the next conversion or the end, which it answers.
  const char* putPlain(const char* format) {
    for (; *format != '%' && *format != '\0'; ++format) {
      if (at_ != end_) *at_++ = *format;
    }
    return format;
  }
  template <class Number>
  requires std::is_integral_v<Number>
  void put(Number number) {
    const auto direct = std::to_chars(at_, end_, number);
    if (direct.ec == std::errc()) {
      at_ = direct.ptr;
      return;
    }
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    put(digits, static_cast<size_t>(result.ptr - digits));
  }
  char* at() const { return at_; }

 private:
  static constexpr int kShort = 48;

  char* at_;
  char* const end_;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
size_t formatByLibrary(char* to, size_t space, const char* format, va_list arguments) {
  const int wanted = std::vsnprintf(to, space, format, arguments);
  if (wanted < 0) {
    to[0] = '\0';
    return 0;
  }
  return static_cast<size_t>(wanted) < space ? static_cast<size_t>(wanted) : space - 1;
}
#pragma GCC diagnostic pop

// Writes the argument of the conversion behind a '%' and answers where the format goes on; null for a conversion that
// is left to the library.
const char* putConversion(Output& output, const char* conversion, va_list* arguments) {
  switch (conversion[0]) {
    case 's': {
      const char* text = va_arg(*arguments, const char*);
      output.put(text == nullptr ? "(null)" : text);
      return conversion + 1;
    }
    case 'd':
      output.put(va_arg(*arguments, int));
      return conversion + 1;
    case 'u':
      output.put(va_arg(*arguments, unsigned));
      return conversion + 1;
    case 'l':
      if (conversion[1] != 'l' || (conversion[2] != 'd' && conversion[2] != 'u')) return nullptr;
      if (conversion[2] == 'd') {
        output.put(va_arg(*arguments, long long));
      } else {
        output.put(va_arg(*arguments, unsigned long long));
      }
      return conversion + 3;
    default:
      return nullptr;
  }
}

}  // namespace

size_t formatMessage(char* to, size_t space, const char* format, va_list arguments) {
  va_list own;
  va_copy(own, arguments);
  Output output(to, space);
  const char* at = format;
  bool finished = true;
  while (true) {
    at = output.putPlain(at);
    if (*at == '\0') break;
    at = putConversion(output, at + 1, &own);
    if (at == nullptr) {
      finished = false;
      break;
    }
  }
  va_end(own);
  if (!finished) return formatByLibrary(to, space, format, arguments);
  *output.at() = '\0';
  return static_cast<size_t>(output.at() - to);
}

}  // namespace corvane
