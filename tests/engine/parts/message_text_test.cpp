#include "rooms/message_text.h"

#include <gtest/gtest.h>

namespace corvane::rtc {
namespace {

constexpr size_t kLargest = 64 * 1024;

std::string repeated(const std::string& text) {
  std::string body;
  while (body.size() < kLargest) body += text;
  return body;
}

// What comes of a message whose texts arrive as they were sent; every text is one that a service carries.
std::optional<MessageReader::Message> delivered(const OutgoingMessage& message, size_t& texts) {
  MessageReader reader;
  std::optional<MessageReader::Message> last;
  const std::vector<std::string> written = writeMessage(message);
  texts = written.size();
  for (const std::string& text : written) {
    EXPECT_FALSE(last) << "whole before its end";
    size_t escaped = text.size();
    for (const char each : text) escaped += each == '"' || each == '\\' ? 1 : 0;
    EXPECT_LE(escaped, 60'000U);
    last = reader.read("ann", true, text);
  }
  return last;
}

TEST(MessageText, CarriesWhateverOneMaySend) {
  const std::string bytes("\0\x80\xff{", 4);
  size_t texts = 0;
  for (const std::string& body : {std::string(), std::string("hello"), repeated("x"), repeated("\""), repeated("\x01"),
                                  repeated("\\"), repeated("ü")}) {
    const auto message = delivered({7, "bob", body}, texts);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->body, body);
    EXPECT_FALSE(message->is_binary);
    EXPECT_EQ(texts, body.size() < kLargest ? 1U : 2U);
  }
  for (const std::string& body : {std::string(), bytes, repeated(bytes)}) {
    const auto message = delivered({7, "bob", body, true}, texts);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->body, body);
    EXPECT_TRUE(message->is_binary);
  }
}

TEST(MessageText, KeepsSendersAndMessagesApart) {
  const auto parts = [](int64_t id, const std::string& text) { return writeMessage({id, "", repeated(text)}); };
  const std::vector<std::string> first = parts(1, "a");
  const std::vector<std::string> second = parts(2, "b");
  MessageReader reader;
  const auto read = [&](const std::string& from, const std::string& text) { return reader.read(from, false, text); };
  // Those of two senders, and of one to all and to one, come between each other.
  EXPECT_FALSE(read("ann", first[0]));
  EXPECT_FALSE(read("bob", second[0]));
  EXPECT_FALSE(reader.read("ann", true, second[0]));
  EXPECT_EQ(read("ann", first[1])->body, repeated("a"));
  EXPECT_EQ(read("bob", second[1])->body, repeated("b"));
  EXPECT_EQ(reader.read("ann", true, second[1])->body, repeated("b"));
  // Nothing is made of what was not begun, was begun anew or was given up.
  EXPECT_FALSE(read("ann", first[1]));
  EXPECT_FALSE(read("ann", first[0]));
  EXPECT_FALSE(read("ann", second[1]));
  EXPECT_FALSE(read("ann", first[1]));
  EXPECT_FALSE(read("ann", first[0]));
  reader.forget("ann");
  EXPECT_FALSE(read("ann", first[1]));
}

TEST(MessageText, BearsNonsense) {
  MessageReader reader;
  for (const char* text : {"", "{", "[]", R"({"text":7})", R"({"text64":"/w=="})", R"({"text64":"YQ==","parts":0})",
                           R"({"text64":"YQ==","parts":9,"part":0})", R"({"text64":"YQ==","parts":2,"part":-1})",
                           R"({"bytes":"YQ==","parts":-9223372036854775808,"part":0})"}) {
    EXPECT_FALSE(reader.read("ann", false, text)) << text;
  }
}

}  // namespace
}  // namespace corvane::rtc
