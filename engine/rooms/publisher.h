// The connection over which one of the local user's streams goes to one room.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "media/sound_encoder.h"
#include "media/video_encoder.h"
#include "rooms/packet_feedback.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// Offers both media for as long as it lives; which of them are sent changes without a new negotiation.
/// Engine thread only.
class Publisher final {
 public:
  /// layers: how many of the video can be sent, 1 to kMaxVideoLayers.
  Publisher(EngineContext& context, RoomSession& session, int32_t stream_index, size_t layers, bool loopback_only,
            PeerConnection::Listener& listener);
  ~Publisher();
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  void start();
  /// One for each layer, the largest first; none stops sending. Encoders must live until they are replaced.
  void setVideo(const std::vector<VideoEncoder*>& encoders);
  void setSound(SoundEncoder* encoder);

  PeerConnection& peer() { return peer_; }
  size_t layers() const { return video_.size(); }
  /// What the service tells of the video's packets, where it does.
  PacketFeedback& packetFeedback() { return packet_feedback_; }
  int64_t videoBytes() const;
  int64_t soundBytes() const { return sound_.bytes(); }

 private:
  // One medium's way from its encoder into the connection.
  class Stream final : public EncodedTap {
   public:
    void onEncoded(GstBuffer* buffer) override;
    int64_t bytes() const { return bytes_.load(std::memory_order_relaxed); }

    GstAppSrc* source = nullptr;
    uint32_t number = 0;              // of the packets' source
    VideoEncoder* encoder = nullptr;  // of a video's; under the lock

   private:
    std::atomic<int64_t> bytes_ = 0;
  };

  void addVideo();
  GstElement* addVideoLayer(Stream& layer);
  GstElement* addLayersBeside(GstElement* largest);
  void addSound();
  GstElement* addStream(Stream& stream, const char* caps, const char* payloader_kind);
  void connect(GstElement* packets, const char* rtp_caps, uint32_t number);

  void followPackets(GstPad* pad);

  PacketFeedback packet_feedback_;
  std::mutex encoders_mutex_;  // the connection's threads ask encoders for key frames, which may be about to go
  PeerConnection peer_;
  std::vector<Stream> video_;  // a layer each, the largest first
  Stream sound_;
  SoundEncoder* sound_encoder_ = nullptr;
  std::unique_ptr<PeerLink> link_;  // goes first: the service need not answer any more
};

}  // namespace corvane::rtc
