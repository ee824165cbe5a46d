// One of the local user's streams in one room: what is published, and the connection it goes over.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "rooms/bitrate_control.h"
#include "rooms/connection_stats.h"
#include "rooms/publisher.h"
#include "rooms/retry_pause.h"
#include "rooms/room_context.h"
#include "rooms/sent_flow.h"

namespace corvane::rtc {

/// Engine thread only.
class LocalStream final : public PeerConnection::Listener, public LocalMedia::User {
 public:
  LocalStream(RoomContext& room, int32_t stream_index);
  ~LocalStream();
  LocalStream(const LocalStream&) = delete;
  LocalStream& operator=(const LocalStream&) = delete;

  /// MediaStreamType, 0 for nothing. Kept while there is no session.
  void setPublished(int32_t media);
  int32_t published() const { return published_; }
  /// Several times a second: what has been sent and encoded for the first time.
  void check();

  /// Null when the stay has ended, or is interrupted. The session must live until it is replaced.
  void setSession(RoomSession* session, bool loopback_only);

  /// Brings the connection's counters up to date, a moment later.
  void requestStatistics();
  /// What was sent since the call before; bytes are added to `sent_bytes`. False when nothing is published.
  bool takeStatistics(int32_t interval_ms, LocalStreamStats& stats, int64_t& sent_bytes);

 private:
  void update();
  void updateAfter(std::chrono::milliseconds pause);
  void close();
  void reopen();
  void followLink();
  void forgetFailures();

  void onPeerConnected() override;
  void onPeerFailed(const std::string& reason) override;
  void onVideoEncoders(const VideoLayers& encoders) override;
  void onEncodingFailed(const std::string& reason) override;

  RoomContext& room_;
  const int32_t stream_index_;
  LocalMedia& media_;
  RoomSession* session_ = nullptr;
  bool loopback_only_ = false;
  bool connected_ = false;
  SentFlow sent_video_;
  SentFlow sent_sound_;
  int32_t published_ = 0;
  // As they were when statistics were taken last.
  struct Counters {
    int64_t sound_bytes = 0;
    int64_t video_bytes = 0;
    int64_t pictures_in = 0;
    int64_t pictures_out = 0;
    int64_t encoded_bytes = 0;
    int64_t encode_ns = 0;
  };

  std::unique_ptr<Publisher> publisher_;
  VideoLayers video_;  // borrowed
  ConnectionStats connection_;
  BitrateControl bitrate_;
  AttachedSource feedback_;
  Counters taken_;
  AttachedSource retry_;
  RetryPause retry_pause_ = RetryPause(std::chrono::milliseconds(1000));
  std::string failure_;  // as told, since the stream stood last
};

}  // namespace corvane::rtc
