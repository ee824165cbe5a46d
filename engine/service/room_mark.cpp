#include "service/room_mark.h"

#include <algorithm>
#include <string_view>

#include "core/stable_hash.h"
#include "service/secret.h"

namespace corvane::rtc {

namespace {

constexpr std::string_view kOwn = "corvane:";
constexpr std::string_view kClosing = ":closing:";
constexpr size_t kSecret = 48;

bool isSecret(std::string_view text) {
  const auto is_digit = [](char each) { return (each >= '0' && each <= '9') || (each >= 'a' && each <= 'f'); };
  return text.size() == kSecret && std::all_of(text.begin(), text.end(), is_digit);
}

}  // namespace

std::string makeRoomMark() {
  return std::string(kOwn) + makeSecret();
}

std::string closingMark(const std::string& open_mark) {
  return open_mark + std::string(kClosing) + makeSecret();
}

std::string openMarkOf(const std::string& description) {
  constexpr size_t kOpen = kOwn.size() + kSecret;
  const std::string_view text = description;
  if (!text.starts_with(kOwn) || !isSecret(text.substr(kOwn.size(), kSecret))) return {};
  const std::string_view rest = text.substr(kOpen);
  const bool is_mark = rest.empty() || (rest.starts_with(kClosing) && isSecret(rest.substr(kClosing.size())));
  return is_mark ? description.substr(0, kOpen) : std::string();
}

std::string messageRoomOf(const std::string& room_id, const std::string& open_mark) {
  constexpr size_t kLength = 24;
  if (!open_mark.empty()) return open_mark.substr(kOwn.size(), kLength);
  const bool is_plain = room_id.size() <= kLength && std::all_of(room_id.begin(), room_id.end(), [](char each) {
                          return each >= ' ' && each != '"' && each != '\\' && each != '\x7f';
                        });
  return is_plain ? room_id : "corvane " + std::to_string(stableHash(room_id)).substr(0, kLength - 8);
}

}  // namespace corvane::rtc
