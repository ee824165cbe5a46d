#include "service/janus_screen.h"

#include <utility>

#include "service/janus_connection.h"

namespace corvane::rtc {

namespace {

constexpr size_t kLongestUserId = 128;

// With it the shortest id is longer than the longest of a user.
const std::string& screenMark() {
  static const std::string mark = std::string(kLongestUserId - 7, ' ') + "'screen";
  return mark;
}

}  // namespace

std::string screenIdOf(const std::string& member) {
  return member + screenMark();
}

bool isScreenId(const std::string& id) {
  return id.size() > kLongestUserId && id.ends_with(screenMark());
}

std::string memberOfScreen(const std::string& id) {
  return id.substr(0, id.size() - screenMark().size());
}

JanusScreen::JanusScreen(JanusConnection& connection, JoinRequest room, PeerLink::Listener& listener)
    : room_(std::move(room)), listener_(listener), handle_(connection, "janus.plugin.videoroom", *this) {}

void JanusScreen::sendDescription(const std::string& sdp) {
  Json body = {{"request", "joinandconfigure"},
               {"ptype", "publisher"},
               {"room", room_.room_id},
               {"id", screenIdOf(room_.member_id)}};
  if (!room_.token.empty()) {
    body["token"] = room_.token;
    body["pin"] = room_.token;
  }
  handle_.send(std::move(body), "offer", sdp, [this](const Json& data, const std::string& answer) {
    if (answer.empty()) return listener_.onLinkFailed(textOf(data, "error"));
    listener_.onRemoteDescription(answer);
  });
}

void JanusScreen::onHandleEvent(const Json& data, const std::string& /*sdp*/) {
  if (textOf(data, "leaving") == "ok") listener_.onLinkFailed("the service put the screen out of the room");
}

void JanusScreen::onHandleCandidate(unsigned line, const std::string& candidate) {
  listener_.onRemoteCandidate(line, candidate);
}

}  // namespace corvane::rtc
