// The connection over which one of the local user's streams goes to one room.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <cstdint>
#include <memory>

#include "media/sound_encoder.h"
#include "media/video_encoder.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Offers both media for as long as it lives; which of them are sent changes without a new negotiation.
/// Engine thread only.
class Publisher final {
 public:
  Publisher(EngineContext& context, RoomSession& session, int32_t stream_index, bool loopback_only,
            PeerConnection::Listener& listener);
  ~Publisher();
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  void start();
  /// Null stops sending. The encoder must live until it is replaced.
  void setVideo(VideoEncoder* encoder);
  void setSound(SoundEncoder* encoder);

  PeerConnection& peer() { return peer_; }
  int64_t videoBytes() const { return video_.bytes(); }
  int64_t soundBytes() const { return sound_.bytes(); }
  int64_t pictures() const { return video_.count(); }

 private:
  // One medium's way from its encoder into the connection.
  class Stream final : public EncodedTap {
   public:
    void onEncoded(GstBuffer* buffer) override;
    int64_t bytes() const { return bytes_.load(std::memory_order_relaxed); }
    int64_t count() const { return count_.load(std::memory_order_relaxed); }

    GstAppSrc* source = nullptr;

   private:
    std::atomic<int64_t> bytes_ = 0;
    std::atomic<int64_t> count_ = 0;
  };

  void addVideo();
  void addSound();
  GstElement* addStream(Stream& stream, const char* caps, const char* payloader_kind, const char* rtp_caps);

  PeerConnection peer_;
  Stream video_;
  Stream sound_;
  std::atomic<VideoEncoder*> video_encoder_ = nullptr;  // the connection's threads ask it for key frames
  SoundEncoder* sound_encoder_ = nullptr;
  std::unique_ptr<PeerLink> link_;  // goes first: the service need not answer any more
};

}  // namespace corvane::rtc
