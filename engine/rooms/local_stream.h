// The local user's camera and microphone in one room: what is published, and the connection it goes over.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "rooms/publisher.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only.
class LocalStream final : public PeerConnection::Listener, public LocalMedia::User {
 public:
  explicit LocalStream(RoomContext& room);
  ~LocalStream();
  LocalStream(const LocalStream&) = delete;
  LocalStream& operator=(const LocalStream&) = delete;

  /// MediaStreamType, 0 for nothing. Kept while there is no session.
  void setPublished(int32_t media);
  int32_t published() const { return published_; }

  /// Null when the stay has ended, or is interrupted. The session must live until it is replaced.
  void setSession(RoomSession* session, bool loopback_only);

  Publisher* publisher() { return publisher_.get(); }

 private:
  void update();
  void close();

  void onPeerConnected() override;
  void onPeerFailed(const std::string& reason) override;
  void onEncodingFailed(const std::string& reason) override;

  RoomContext& room_;
  RoomSession* session_ = nullptr;
  bool loopback_only_ = false;
  int32_t published_ = 0;
  std::unique_ptr<Publisher> publisher_;
  AttachedSource retry_;
};

}  // namespace corvane::rtc
