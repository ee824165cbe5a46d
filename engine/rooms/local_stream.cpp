#include "rooms/local_stream.h"

#include "core/json.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kRetryPause(1000);

}  // namespace

LocalStream::LocalStream(RoomContext& room) : room_(room) {}

LocalStream::~LocalStream() {
  close();
}

void LocalStream::setPublished(int32_t media) {
  published_ = media;
  update();
}

void LocalStream::setSession(RoomSession* session, bool loopback_only) {
  close();
  session_ = session;
  loopback_only_ = loopback_only;
  update();
}

void LocalStream::update() {
  if (session_ == nullptr || (published_ == 0 && publisher_ == nullptr)) return;
  // Once there, the connection stays: publishing again takes no negotiation.
  const bool is_new = publisher_ == nullptr;
  if (is_new) publisher_ = std::make_unique<Publisher>(room_.engine, *session_, loopback_only_, *this);
  if ((published_ & kMediaStreamVideo) != 0) {
    publisher_->setVideo(room_.media.borrowVideo(*this));
  } else {
    publisher_->setVideo(nullptr);
    room_.media.giveBackVideo(*this);
  }
  if (is_new) publisher_->start();
}

void LocalStream::close() {
  retry_.reset();
  publisher_.reset();
  room_.media.giveBackVideo(*this);
}

void LocalStream::onPeerConnected() {
  const Json extra = {{"published", published_}};
  room_.events->onStreamStateChanged(room_.room_id.c_str(), room_.user_id.c_str(), kStreamStateOk,
                                     jsonText(extra).c_str());
}

void LocalStream::onPeerFailed(const std::string& reason) {
  room_.engine.log.error("room %s: publishing failed: %s", room_.room_id.c_str(), reason.c_str());
  close();
  retry_ = room_.engine.thread.after(kRetryPause, [this] { update(); });
  const Json extra = {{"reason", reason}};
  room_.events->onStreamStateChanged(room_.room_id.c_str(), room_.user_id.c_str(), kStreamStatePublishFailed,
                                     jsonText(extra).c_str());
}

void LocalStream::onEncodingFailed(const std::string& reason) {
  onPeerFailed(reason);
}

}  // namespace corvane::rtc
