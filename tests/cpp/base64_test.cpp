#include "video/base64.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

std::string encode(std::string_view text) {
  return encodeBase64({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

TEST(Base64, encodesTheVectorsOfTheRfc) {
  EXPECT_EQ(encode(""), "");
  EXPECT_EQ(encode("f"), "Zg==");
  EXPECT_EQ(encode("fo"), "Zm8=");
  EXPECT_EQ(encode("foo"), "Zm9v");
  EXPECT_EQ(encode("foob"), "Zm9vYg==");
  EXPECT_EQ(encode("fooba"), "Zm9vYmE=");
  EXPECT_EQ(encode("foobar"), "Zm9vYmFy");
}

TEST(Base64, usesEveryCharacterOfTheAlphabetInOrder) {
  std::vector<uint8_t> bytes;
  for (uint32_t group = 0; group < 64; group += 4) {
    const uint32_t bits = group << 18 | (group + 1) << 12 | (group + 2) << 6 | (group + 3);
    for (int shift = 16; shift >= 0; shift -= 8) bytes.push_back(static_cast<uint8_t>(bits >> shift));
  }
  EXPECT_EQ(encodeBase64(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, keepsBytesAboveAsciiAndZeros) {
  EXPECT_EQ(encode(std::string_view("\0\0\0", 3)), "AAAA");
  EXPECT_EQ(encode(std::string_view("\xff\xff", 2)), "//8=");
  EXPECT_EQ(encode("\xfb\xef\xbe"), "++++");
}

TEST(Base64, breaksNoLines) {
  const std::string text = encodeBase64(std::vector<uint8_t>(30000, 0x41));
  EXPECT_EQ(text.size(), 40000U);
  EXPECT_EQ(text.find_first_not_of("QUFB"), std::string::npos);
}

}  // namespace
}  // namespace corvane
