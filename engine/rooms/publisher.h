// The connection over which the local user's camera and microphone go to one room.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <cstdint>
#include <memory>

#include "media/video_encoder.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Offers both media for as long as it lives; which of them are sent changes without a new negotiation.
/// Engine thread only.
class Publisher final : public EncodedTap {
 public:
  Publisher(EngineContext& context, RoomSession& session, bool loopback_only, PeerConnection::Listener& listener);
  ~Publisher();
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  void start();
  /// Null stops sending. The encoder must live until it is replaced.
  void setVideo(VideoEncoder* encoder);

  PeerConnection& peer() { return peer_; }
  int64_t picturesSent() const { return pictures_sent_.load(std::memory_order_relaxed); }

 private:
  void addVideo();
  GstElement* addPayloader(const char* kind, const char* name, GstElement* source, const char* rtp_caps);
  void onEncoded(GstBuffer* buffer) override;

  PeerConnection peer_;
  GstAppSrc* video_source_ = nullptr;
  std::atomic<VideoEncoder*> video_ = nullptr;  // read by the connection's threads, to ask it for key frames
  std::atomic<int64_t> pictures_sent_ = 0;
  std::unique_ptr<PeerLink> link_;  // goes first: the service need not answer any more
};

}  // namespace corvane::rtc
