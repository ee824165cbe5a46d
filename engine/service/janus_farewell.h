// A member's leaving of a room of Janus's plug-in VideoRoom, and the end of the room when that was the last.
#pragma once

#include <memory>
#include <string>

#include "service/janus_handle.h"

namespace corvane::rtc {

/// What a leaving member leaves behind. It is the connection's until it is done.
class JanusFarewell final : public JanusHandle::Listener {
 public:
  struct Leaving {
    std::string place;  ///< what the member holds until the service knows that it has left
    std::string room_id;
    std::string last_state;  ///< told to the others once more before the leaving; "" for none
    /// The room's mark as the service has told it, "" for an administrator's room. May become known with answers that
    /// the handle still waits for.
    std::shared_ptr<const std::string> mark;
  };

  JanusFarewell(JanusConnection& connection, std::unique_ptr<JanusHandle> handle, Leaving leaving);
  JanusFarewell(const JanusFarewell&) = delete;
  JanusFarewell& operator=(const JanusFarewell&) = delete;

  /// Once it belongs to the connection. One step at a time: a server works on several messages at once.
  void begin();
  const std::string& place() const { return leaving_.place; }
  bool hasLeft() const { return left_; }

 private:
  using Step = void (JanusFarewell::*)(const Json& answer);

  void ask(Json body, Step next);
  void setMark(const std::string& from, const std::string& to, Step next);
  void leave(const Json& answer);
  void look(const Json& answer);
  void close(const Json& members);
  void lookAgain(const Json& answer);
  void endRoom(const Json& members);
  void endMessages(const Json& answer);
  void finish(const Json& answer);

  void onHandleEvent(const Json& /*data*/, const std::string& /*sdp*/) override {}
  void onHandleHungUp(const std::string& /*reason*/) override {}
  void onHandleEnded(const std::string& reason) override;
  // The connection forgets all farewells.
  void onHandleLost() override {}

  JanusConnection& connection_;
  const Leaving leaving_;
  bool left_ = false;
  std::string closing_;  // the mark that this has given the room
  const std::unique_ptr<JanusHandle> handle_;
  std::unique_ptr<JanusHandle> messages_;
};

}  // namespace corvane::rtc
