// One of another user's streams: what the service has of it, what of that is wanted, and the feed over which it comes.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/picture_rate.h"
#include "playback/remote_sounds.h"
#include "rooms/connection_stats.h"
#include "rooms/layer_choice.h"
#include "rooms/remote_feed.h"
#include "rooms/remote_flow.h"
#include "rooms/retry_pause.h"
#include "rooms/room_context.h"

namespace corvane::rtc {

/// Engine thread only, but for the pictures.
class RemoteStream final : public PeerConnection::Listener, public RemoteFeed::Receiver {
 public:
  /// stream_index: StreamIndex; wanted: MediaStreamType.
  RemoteStream(RoomContext& room, std::string uid, int32_t stream_index, int32_t wanted);
  ~RemoteStream();
  RemoteStream(const RemoteStream&) = delete;
  RemoteStream& operator=(const RemoteStream&) = delete;

  bool isVideo(const std::string& mid) const;
  bool isScreen() const { return stream_index_ == kStreamIndexScreen; }

  /// What the user says that it publishes: MediaStreamType.
  void setPublished(int32_t media) { published_ = media; }
  int32_t published() const { return published_; }
  void setMetaData(const std::string& text);
  /// What the service has.
  void setStreams(std::vector<FeedStream> streams);
  /// The sizes of its video's layers, as the user tells of them; none where there is one layer.
  void setLayers(std::vector<LayerSize> layers) { layers_ = std::move(layers); }
  /// The largest picture wanted.
  void setConfig(const RemoteVideoConfig& config);
  void setWanted(int32_t media);
  int32_t wanted() const { return wanted_; }
  /// Media that do not arrive although they are wanted.
  void setPaused(int32_t media) { paused_ = media; }
  /// What the user publishes and the service has.
  int32_t available() const;

  /// Opens, changes or closes the feed as all of the above now wants it.
  void update(RoomSession* session, bool loopback_only);
  /// After update(), for who has asked for more of the stream, or for less. What is just being opened, or is not
  /// there yet, is reported once it stands.
  void answerSubscription(bool for_more);
  /// The connection to the service is gone, where the stream may still be, or its user is.
  void suspend(RemoteFlow::Reason reason);

  /// Several times a second: whether pictures still come, where the user captures some.
  void check(bool capturing);

  /// Percent, of this stream alone and of its room.
  void setVolume(int32_t user, int32_t room);
  void setPlace(const SoundPlace& place) { sound_->setPlace(place); }
  void setPreferred(bool preferred) { sound_->setPreferred(preferred); }

  /// Brings the connection's counters up to date, a moment later.
  void requestStatistics();
  /// What arrived since the call before; bytes are added to `received_bytes`. False when nothing is received.
  bool takeStatistics(int32_t interval_ms, RemoteStreamStats& stats, int64_t& received_bytes);

 private:
  struct Size {
    int32_t width = 0;
    int32_t height = 0;
    bool operator==(const Size&) const = default;
  };

  StreamKey key() const;
  int serviceLayer() const;
  void chooseLayer();
  void openFeed();
  void closeFeed();
  void forgetFailures();
  void follow(int32_t media);
  void reportSubscribed(SubscribeState state);
  void onSize(Size size);
  void onShown(Size size);

  void onPeerConnected() override;
  void onPeerFailed(const std::string& reason) override;
  void onRemotePicture(const Picture& picture) override;
  void onRemoteSound(const SoundBlock& block) override;
  void onRemoteLayer(int layer) override;
  void onFirstSound();
  void onFirstPicture();

  RoomContext& room_;
  const std::string uid_;
  const int32_t stream_index_;
  const std::shared_ptr<VideoSinkSlot> sink_;
  const std::shared_ptr<Snapshots::Stream> snapshots_;
  std::vector<FeedStream> streams_;
  int32_t published_ = 0;
  std::vector<LayerSize> layers_;
  RemoteVideoConfig config_ = {};
  int32_t layer_asked_ = 0;              // index, 0 the largest
  int32_t layer_comes_ = -1;             // likewise; -1 while it is not known
  bool layer_reached_ = false;           // since it was asked for
  std::atomic<int32_t> shown_rate_ = 0;  // pictures a second at most that are shown; 0 for all
  std::atomic<int64_t> shown_ = 0;
  int32_t wanted_;
  int32_t paused_ = 0;
  RoomSession* session_ = nullptr;
  bool loopback_only_ = false;
  RemoteFlow video_;
  RemoteFlow sound_flow_;
  Size reported_size_;
  bool connected_ = false;
  bool rendered_told_ = false;
  bool sound_told_ = false;
  int64_t checked_pictures_ = 0;
  std::chrono::steady_clock::time_point last_picture_;
  std::shared_ptr<void> opening_;  // what the feed's thread posts is for this opening only
  AttachedSource retry_;
  RetryPause retry_pause_ = RetryPause(std::chrono::milliseconds(500));
  // The feed's own thread's:
  Size seen_size_;
  int32_t seen_rate_ = 0;
  PictureRate rate_ = PictureRate(0);
  // Which firsts are to be told: set on the engine thread, cleared by the feed's.
  std::atomic<bool> picture_awaited_ = false;
  std::atomic<bool> showing_awaited_ = false;
  std::atomic<bool> sound_awaited_ = false;
  const std::shared_ptr<RemoteSound> sound_;

  // As they were when statistics were taken last.
  struct Counters {
    ConnectionStats connection;
    int64_t pictures = 0;
    int64_t shown = 0;
    int64_t stalls = 0;
    int64_t stall_ns = 0;
  };
  ConnectionStats connection_;
  Counters taken_;
  std::unique_ptr<RemoteFeed> feed_;
};

}  // namespace corvane::rtc
