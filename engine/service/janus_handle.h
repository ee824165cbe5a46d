// One attachment to a plug-in of a Janus server: what it is told, what it tells, and its peer connection, if it has
// one.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "core/json.h"

namespace corvane::rtc {

class JanusConnection;

class JanusHandle {
 public:
  /// May end the handle.
  class Listener {
   public:
    /// What the plug-in says unasked.
    virtual void onHandleEvent(const Json& data, const std::string& sdp) = 0;
    virtual void onHandleCandidate(unsigned /*line*/, const std::string& /*candidate*/) {}
    /// The server has ended the peer connection.
    virtual void onHandleHungUp(const std::string& reason) = 0;
    /// The server refuses the handle, or has ended it.
    virtual void onHandleEnded(const std::string& reason) { onHandleHungUp(reason); }
    virtual void onHandleLost() = 0;

   protected:
    ~Listener() = default;
  };

  /// data: the plug-in's, or "error_code" and "error" when the server itself refuses.
  using Answer = std::function<void(const Json& data, const std::string& sdp)>;

  /// Attaches; what is sent until that is done waits.
  JanusHandle(JanusConnection& connection, const char* plugin, Listener& listener);
  /// Detaches. No answer and no event comes afterwards.
  ~JanusHandle();
  JanusHandle(const JanusHandle&) = delete;
  JanusHandle& operator=(const JanusHandle&) = delete;

  void send(Json body, Answer answer = nullptr) { send(std::move(body), "", "", std::move(answer)); }
  /// With a session description of type "offer" or "answer".
  void send(Json body, const char* sdp_type, const std::string& sdp, Answer answer = nullptr);
  void sendCandidate(unsigned line, const std::string& candidate);

  /// Expires with the handle: for what calls its listener more than once.
  std::weak_ptr<void> alive() const { return alive_; }

  /// Another one is told from now on.
  void setListener(Listener& listener) { listener_ = &listener; }

  // Of the connection.

  void onEvent(const std::string& kind, const Json& message);
  void onConnectionLost();

 private:
  void post(const char* kind, Json message, Answer answer);
  void onAttached(const Json& message);

  JanusConnection& connection_;
  Listener* listener_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  int64_t id_ = 0;
  bool lost_ = false;
  std::deque<std::function<void()>> waiting_;
};

/// A member's id, or "" for what no member can be called. JSON is UTF-8.
inline std::string idOf(const Json& json, const char* key) {
  constexpr size_t kMaxIdBytes = 128;
  std::string id = textOf(json, key);
  const bool is_id = id.size() <= kMaxIdBytes && id.find('\0') == std::string::npos;
  return is_id ? id : std::string();
}

/// 0 when the data tell of no error.
inline int64_t errorCodeOf(const Json& data) {
  return numberOf(data, "error_code");
}

}  // namespace corvane::rtc
