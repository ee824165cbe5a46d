// The log's formatter against the C library's.
#include "log/format.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <string>

#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

namespace corvane {
namespace {

std::string formatted(size_t space, const char* format, ...) {
  std::string text(space, '#');
  va_list arguments;
  va_start(arguments, format);
  const size_t length = formatMessage(text.data(), space, format, arguments);
  va_end(arguments);
  EXPECT_LT(length, space);
  EXPECT_EQ(text[length], '\0');
  return text.substr(0, length);
}

template <class... Values>
void expectSame(const char* format, Values... values) {
  char expected[512];
  std::snprintf(expected, sizeof expected, format, values...);
  EXPECT_EQ(formatted(512, format, values...), expected) << format;
  for (const size_t space : {size_t{1}, size_t{2}, size_t{5}, size_t{11}}) {
    std::snprintf(expected, space, format, values...);
    EXPECT_EQ(formatted(space, format, values...), expected) << format << " in " << space;
  }
}

TEST(LogFormatTest, AgreesWithTheLibrary) {
  expectSame("plain text, no conversion\n");
  expectSame("+%s(%d)", "setPlaybackVolume", 412);
  expectSame("%d %d %u", INT_MIN, INT_MAX, UINT_MAX);
  expectSame("%lld|%llu", LLONG_MIN, ULLONG_MAX);
  expectSame("%s %s", "", "\xe9\x94\x99\xe8\xaf\xaf");
  expectSame("100%% of %d", 5);
  expectSame("%s %f %d", "mixed", 1.5, 3);
  expectSame("%s lost_rate:%lf, %02d %5.2f", "padded", 0.25, 7, 3.14159);
  expectSame("%p %x %c %zu", static_cast<void*>(nullptr), 255u, 'c', size_t{9});
}

}  // namespace
}  // namespace corvane
