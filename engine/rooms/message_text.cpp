#include "rooms/message_text.h"

#include <glib.h>

#include <algorithm>

#include "core/glib_pointers.h"
#include "core/gst_pointers.h"
#include "core/json.h"

namespace corvane::rtc {

namespace {

// Services carry texts of up to 64 kB, their own words to each included: names of rooms and users, escaped.
constexpr size_t kMaxText = 56'000;
// Of a body: as base64 that is a text.
constexpr size_t kPart = 40'000;
constexpr int64_t kMaxParts = 8;
constexpr size_t kMaxBody = 64 * 1024;
// Of those that are begun at the same time.
constexpr size_t kMaxBegun = 200;

std::string inBase64(const char* bytes, size_t size) {
  return takeText(g_base64_encode(reinterpret_cast<const guchar*>(bytes), size));
}

std::string fromBase64(const std::string& text) {
  gsize size = 0;
  const GstPtr<gchar> bytes(reinterpret_cast<gchar*>(g_base64_decode(text.c_str(), &size)));
  return {bytes.get(), size};
}

// The service's own words hold the text as a text again.
size_t escapedSize(const std::string& text) {
  const auto marks = std::count_if(text.begin(), text.end(), [](char each) { return each == '"' || each == '\\'; });
  return text.size() + static_cast<size_t>(marks);
}

}  // namespace

std::vector<std::string> writeMessage(const OutgoingMessage& message) {
  const std::string& body = message.body;
  if (!message.is_binary) {
    std::string plain = jsonText({{"text", body}});
    if (escapedSize(plain) <= kMaxText) return {std::move(plain)};
  }
  const char* kind = message.is_binary ? "bytes" : "text64";
  if (body.size() <= kPart) return {jsonText({{kind, inBase64(body.data(), body.size())}})};
  std::vector<std::string> texts;
  const size_t parts = (body.size() + kPart - 1) / kPart;
  for (size_t start = 0; start < body.size(); start += kPart) {
    const size_t size = std::min(kPart, body.size() - start);
    texts.push_back(jsonText(
        {{kind, inBase64(body.data() + start, size)}, {"id", message.id}, {"part", texts.size()}, {"parts", parts}}));
  }
  return texts;
}

std::optional<MessageReader::Message> MessageReader::read(const std::string& from, bool to_one,
                                                          const std::string& text) {
  const Json json = parseJson(text);
  if (const auto* plain = memberOf(json, "text").get_ptr<const std::string*>()) return Message{*plain, false};
  const bool is_binary = memberOf(json, "bytes").is_string();
  if (!is_binary && !memberOf(json, "text64").is_string()) return std::nullopt;
  Message message = {fromBase64(textOf(json, is_binary ? "bytes" : "text64")), is_binary};

  if (const int64_t parts = numberOf(json, "parts", 1); parts != 1) {
    const int64_t part = numberOf(json, "part");
    const std::pair key(from, to_one);
    if (part == 0 && (begun_.size() < kMaxBegun || begun_.contains(key))) begun_[key] = {numberOf(json, "id"), 0, ""};
    const auto found = begun_.find(key);
    if (found == begun_.end()) return std::nullopt;
    Begun& begun = found->second;
    const bool fits = parts > 1 && parts <= kMaxParts && part == begun.parts && numberOf(json, "id") == begun.id &&
                      begun.body.size() + message.body.size() <= kMaxBody;
    if (!fits) {
      begun_.erase(found);
      return std::nullopt;
    }
    begun.body += message.body;
    if (++begun.parts < parts) return std::nullopt;
    message.body = std::move(begun.body);
    begun_.erase(found);
  }
  const bool is_text = g_utf8_validate(message.body.data(), static_cast<gssize>(message.body.size()), nullptr) != FALSE;
  if (!is_binary && !is_text) return std::nullopt;
  return message;
}

void MessageReader::forget(const std::string& from) {
  begun_.erase({from, false});
  begun_.erase({from, true});
}

}  // namespace corvane::rtc
