#include "rooms/remote_stream.h"

#include <algorithm>
#include <utility>

#include "core/json.h"
#include "corvane_rtc/rtc_video_events.h"
#include "rooms/room_report.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kFrozen(1000);

}  // namespace

RemoteStream::RemoteStream(RoomContext& room, std::string uid, int32_t stream_index, int32_t wanted)
    : room_(room),
      uid_(std::move(uid)),
      stream_index_(stream_index),
      sink_(room.sinks.find(room.room_id, uid_, stream_index)),
      snapshots_(room.snapshots.remoteStream(room.room_id, uid_, stream_index)),
      wanted_(wanted),
      video_(room, key(), /*is_video=*/true),
      sound_flow_(room, key(), /*is_video=*/false),
      sound_(room.sounds.add(room.room_id, uid_, stream_index)) {}

RemoteStream::~RemoteStream() {
  feed_.reset();
}

void RemoteStream::setStreams(std::vector<FeedStream> streams) {
  if (streams != streams_) forgetFailures();
  streams_ = std::move(streams);
}

void RemoteStream::setWanted(int32_t media) {
  if (std::exchange(wanted_, media) != media) forgetFailures();
}

// What has changed may be what was missing.
void RemoteStream::forgetFailures() {
  retry_.reset();
  retry_pause_.reset();
}

int32_t RemoteStream::available() const {
  int32_t sent = 0;
  for (const FeedStream& stream : streams_) sent |= stream.is_video ? kMediaStreamVideo : kMediaStreamAudio;
  return published_ & sent;
}

bool RemoteStream::isVideo(const std::string& mid) const {
  return std::any_of(streams_.begin(), streams_.end(),
                     [&mid](const FeedStream& stream) { return stream.mid == mid && stream.is_video; });
}

StreamKey RemoteStream::key() const {
  return {room_.room_id.c_str(), uid_.c_str(), stream_index_};
}

void RemoteStream::setMetaData(const std::string& text) {
  video_.setMetaData(text);
  sound_flow_.setMetaData(text);
}

void RemoteStream::update(RoomSession* session, bool loopback_only) {
  session_ = session;
  loopback_only_ = loopback_only;
  const int32_t media = session_ != nullptr ? wanted_ & available() : 0;
  if (media != 0 && retry_ != nullptr) return;
  follow(media & ~paused_);
  if (feed_ != nullptr && (media == 0 || feed_->streams() != streams_)) closeFeed();
  if (media == 0) return retry_.reset();
  chooseLayer();
  if (feed_ == nullptr) openFeed();
  feed_->setWanted(media & ~paused_);
}

void RemoteStream::openFeed() {
  opening_ = std::make_shared<char>();
  seen_size_ = {};
  picture_awaited_ = showing_awaited_ = sound_awaited_ = true;
  feed_ = std::make_unique<RemoteFeed>(room_.engine, *session_, uid_, stream_index_, streams_, serviceLayer(),
                                       loopback_only_, *this, *this);
  feed_->start();
}

void RemoteStream::setConfig(const RemoteVideoConfig& config) {
  config_ = config;
  shown_rate_.store(config.framerate, std::memory_order_relaxed);
}

// The layer that is asked for, as services count. A user of which no layers are known may send some.
int RemoteStream::serviceLayer() const {
  return layers_.empty() ? FeedLink::kLargestLayer : static_cast<int>(layers_.size()) - 1 - layer_asked_;
}

void RemoteStream::chooseLayer() {
  const auto layer = static_cast<int32_t>(rtc::chooseLayer(layers_, config_));
  if (layer != layer_asked_) layer_reached_ = false;
  layer_asked_ = layer;
  if (feed_ != nullptr) feed_->setLayer(serviceLayer());
}

void RemoteStream::onRemoteLayer(int layer) {
  if (layers_.empty() || layer >= static_cast<int>(layers_.size())) return;
  const int32_t before = std::exchange(layer_comes_, static_cast<int32_t>(layers_.size()) - 1 - layer);
  const bool was_reached = std::exchange(layer_reached_, layer_reached_ || layer_comes_ == layer_asked_);
  if (!was_reached || before == layer_comes_) return;
  // It changed without having been asked to.
  const SimulcastFallbackReason reason =
      layer_comes_ > before ? kSimulcastFallbackPublisher : kSimulcastRecoverPublisher;
  room_.engine.events->onSimulcastSubscribeFallback(
      {uid_.c_str(), isScreen(), before, layer_comes_, true, true, reason});
}

// Tells which media are to come from now on, or why they do not.
void RemoteStream::follow(int32_t media) {
  const auto reason = [this](int32_t medium) {
    return (available() & medium) != 0 ? kRemoteVideoStateReasonLocalMuted : kRemoteVideoStateReasonRemoteMuted;
  };
  if ((media & kMediaStreamVideo) == 0) {
    video_.end(reason(kMediaStreamVideo));
  } else if (video_.begin()) {
    picture_awaited_ = showing_awaited_ = true;
  }
  if ((media & kMediaStreamAudio) == 0) {
    sound_flow_.end(reason(kMediaStreamAudio));
  } else if (sound_flow_.begin()) {
    sound_awaited_ = true;
  }
}

void RemoteStream::suspend(RemoteFlow::Reason reason) {
  streams_.clear();
  session_ = nullptr;
  video_.end(reason);
  sound_flow_.end(reason);
  closeFeed();
}

void RemoteStream::closeFeed() {
  retry_.reset();
  if (feed_ == nullptr) return;
  feed_.reset();
  layer_comes_ = -1;
  layer_reached_ = false;
  shown_ = 0;
  opening_.reset();  // read by the feed's thread until it has ended
  reported_size_ = {};
  connected_ = false;
  rendered_told_ = sound_told_ = false;
  checked_pictures_ = 0;
  connection_ = {};
  taken_ = {};
}

void RemoteStream::reportSubscribed(SubscribeState state) {
  const int32_t media = wanted_ & available();
  SubscribeConfig info = {};
  info.is_screen = isScreen();
  info.sub_video = (media & kMediaStreamVideo) != 0;
  info.sub_audio = (media & kMediaStreamAudio) != 0;
  info.video_index = layer_asked_;
  info.framerate = config_.framerate;
  info.sub_width = config_.resolution_width;
  info.sub_height = config_.resolution_height;
  info.sub_video_index = info.sub_video ? layer_asked_ : -1;
  room_.events->onStreamSubscribed(state, uid_.c_str(), info);
}

void RemoteStream::answerSubscription(bool for_more) {
  const bool is_over = !for_more && (wanted_ & available()) == 0;
  if (connected_ || is_over) reportSubscribed(kSubscribeStateSuccess);
}

void RemoteStream::onPeerConnected() {
  connected_ = true;
  reportSubscribed(kSubscribeStateSuccess);
}

void RemoteStream::onPeerFailed(const std::string& reason) {
  room_.engine.log.warning("room %s: the %s of %s failed: %s", room_.room_id.c_str(), isScreen() ? "screen" : "feed",
                           uid_.c_str(), reason.c_str());
  video_.end(kRemoteVideoStateReasonInternal);
  sound_flow_.end(kRemoteVideoStateReasonInternal);
  closeFeed();
  retry_ = room_.engine.thread.after(retry_pause_.next(), [this] {
    retry_.reset();
    update(session_, loopback_only_);
  });
  reportSubscribed(kSubscribeStateFailed);
}

void RemoteStream::onRemotePicture(const Picture& picture) {
  const Size size = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info)};
  if (picture_awaited_.load(std::memory_order_relaxed) && picture_awaited_.exchange(false)) {
    room_.engine.thread.post(opening_, [this] { onFirstPicture(); });
  }
  if (size != seen_size_) {
    seen_size_ = size;
    room_.engine.thread.post(opening_, [this, size] { onSize(size); });
  }
  if (showing_awaited_.load(std::memory_order_relaxed) && sink_->attached() && showing_awaited_.exchange(false)) {
    room_.engine.thread.post(opening_, [this, size] { onShown(size); });
  }
  room_.snapshots.offer(*snapshots_, picture);
  const int32_t wanted_rate = shown_rate_.load(std::memory_order_relaxed);
  if (std::exchange(seen_rate_, wanted_rate) != wanted_rate) rate_ = PictureRate(wanted_rate);
  if (!rate_.take(clockNow())) return;
  shown_.fetch_add(1, std::memory_order_relaxed);
  sink_->deliver(picture);
}

void RemoteStream::onFirstPicture() {
  last_picture_ = std::chrono::steady_clock::now();
  video_.onFrame();
}

void RemoteStream::onSize(Size size) {
  const VideoFrameInfo info = {size.width, size.height, 0};
  const Size previous = std::exchange(reported_size_, size);
  if (previous == Size()) return room_.engine.events->onFirstRemoteVideoFrameDecoded(key(), info);
  if (size != previous) room_.engine.events->onRemoteVideoSizeChanged(key(), info);
}

void RemoteStream::onShown(Size size) {
  if (!std::exchange(rendered_told_, true)) {
    room_.engine.events->onFirstRemoteVideoFrameRendered(key(), {size.width, size.height, 0});
  }
  video_.onPlayed();
}

void RemoteStream::check(bool capturing) {
  if (feed_ == nullptr || !video_.comes()) return;
  const auto now = std::chrono::steady_clock::now();
  const int64_t pictures = feed_->counts().pictures;
  if (pictures != checked_pictures_ || !capturing) {
    checked_pictures_ = pictures;
    last_picture_ = now;
  }
  video_.setFrozen(now - last_picture_ > kFrozen);
}

void RemoteStream::onRemoteSound(const SoundBlock& block) {
  if (sound_awaited_.load(std::memory_order_relaxed) && sound_awaited_.exchange(false)) {
    room_.engine.thread.post(opening_, [this] { onFirstSound(); });
  }
  sound_->push(block);
}

void RemoteStream::onFirstSound() {
  sound_flow_.onFrame();
  if (!std::exchange(sound_told_, true)) room_.engine.events->onFirstRemoteAudioFrame(key());
  sound_flow_.onPlayed();
}

void RemoteStream::setVolume(int32_t user, int32_t room) {
  constexpr float kUnchanged = 100 * 100;
  sound_->setVolume(static_cast<float>(user) * static_cast<float>(room) / kUnchanged);
}

void RemoteStream::requestStatistics() {
  if (feed_ == nullptr) return;
  feed_->peer().requestStatistics([this](const GstStructure* report) { connection_ = readConnectionStats(report); });
}

bool RemoteStream::takeStatistics(int32_t interval_ms, RemoteStreamStats& stats, int64_t& received_bytes) {
  if (feed_ == nullptr) return false;
  const FeedCounts& counts = feed_->counts();
  const Counters now = {connection_, counts.pictures, shown_, counts.stalls, counts.stall_ns};
  const MediumStats& video_before = taken_.connection.received_video;
  const MediumStats& video_now = now.connection.received_video;
  const MediumStats& sound_before = taken_.connection.received_sound;
  const MediumStats& sound_now = now.connection.received_sound;
  const auto stall_ms = static_cast<int32_t>((now.stall_ns - taken_.stall_ns) / 1'000'000);

  stats.uid = uid_.c_str();
  stats.is_screen = isScreen();
  RemoteVideoStats& video = stats.video_stats;
  video.is_screen = isScreen();
  video.width = counts.width;
  video.height = counts.height;
  video.video_loss_rate = lossRate(video_now.lost - video_before.lost, video_now.packets - video_before.packets);
  video.received_kbitrate = bitrate(video_now.bytes - video_before.bytes, interval_ms);
  if (interval_ms > 0) {
    const auto rate = [interval_ms](int64_t pictures) {
      return static_cast<int32_t>((pictures * 1000 + interval_ms / 2) / interval_ms);
    };
    video.decoder_output_frame_rate = rate(now.pictures - taken_.pictures);
    video.renderer_output_frame_rate = sink_->attached() ? rate(now.shown - taken_.shown) : 0;
    video.frozen_rate = std::min(stall_ms * 100 / interval_ms, 100);
  }
  video.video_index = std::max(layer_comes_, 0);
  video.stall_count = static_cast<int32_t>(now.stalls - taken_.stalls);
  video.stall_duration = stall_ms;
  video.stats_interval = interval_ms;
  video.jitter = video_now.jitter_ms;
  for (const FeedStream& stream : streams_) {
    if (stream.is_video) video.codec_type = videoCodecType(stream.codec);
  }
  RemoteAudioStats& sound = stats.audio_stats;
  sound.audio_loss_rate = lossRate(sound_now.lost - sound_before.lost, sound_now.packets - sound_before.packets);
  sound.received_kbitrate = bitrate(sound_now.bytes - sound_before.bytes, interval_ms);
  sound.stats_interval = interval_ms;
  sound.jitter = sound_now.jitter_ms;
  if (sound_flow_.comes()) {
    sound.playout_sample_rate = kSoundRate;
    sound.received_sample_rate = kSoundRate;
    sound.dec_sample_rate = kSoundRate;
    sound.quality = networkQuality(sound.audio_loss_rate, sound.rtt);
  }
  stats.remote_rx_quality =
      networkQuality(std::max(sound.audio_loss_rate, video.video_loss_rate), std::max(sound.rtt, video.rtt));
  received_bytes += std::max<int64_t>(sound_now.bytes - sound_before.bytes, 0) +
                    std::max<int64_t>(video_now.bytes - video_before.bytes, 0);
  taken_ = now;
  return true;
}

}  // namespace corvane::rtc
