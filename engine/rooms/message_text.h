// Messages of a room as the texts that the service carries for them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane::rtc {

struct OutgoingMessage {
  int64_t id = 0;
  std::string to;  ///< a user, or "" for the room
  std::string body;
  bool is_binary = false;
};

/// One text, or several for a body that one cannot hold, to be sent in this order.
std::vector<std::string> writeMessage(const OutgoingMessage& message);

/// Puts together what comes in several texts.
class MessageReader {
 public:
  struct Message {
    std::string body;
    bool is_binary = false;
  };

  /// Nothing unless the text is a message, or the last of one. Those of one sender come in order.
  std::optional<Message> read(const std::string& from, bool to_one, const std::string& text);
  /// The sender cannot complete what it has begun any more.
  void forget(const std::string& from);

 private:
  struct Begun {
    int64_t id = 0;
    int64_t parts = 0;
    std::string body;
  };

  std::map<std::pair<std::string, bool>, Begun> begun_;  // by sender, and whether to one user
};

}  // namespace corvane::rtc
