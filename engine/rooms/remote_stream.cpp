#include "rooms/remote_stream.h"

#include <algorithm>
#include <utility>

#include "core/json.h"
#include "corvane_rtc/rtc_video_events.h"
#include "rooms/room_report.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kRetryPause(500);

}  // namespace

RemoteStream::RemoteStream(RoomContext& room, std::string uid, int32_t stream_index, int32_t wanted)
    : room_(room),
      uid_(std::move(uid)),
      stream_index_(stream_index),
      sink_(room.sinks.find(room.room_id, uid_, stream_index)),
      snapshots_(room.snapshots.remoteStream(room.room_id, uid_, stream_index)),
      wanted_(wanted),
      sound_(room.sounds.add(room.room_id, uid_, stream_index)) {}

RemoteStream::~RemoteStream() {
  feed_.reset();
}

int32_t RemoteStream::available() const {
  int32_t sent = 0;
  for (const FeedStream& stream : streams_) sent |= stream.is_video ? kMediaStreamVideo : kMediaStreamAudio;
  return published_ & sent;
}

StreamKey RemoteStream::key() const {
  return {room_.room_id.c_str(), uid_.c_str(), stream_index_};
}

void RemoteStream::update(RoomSession* session, bool loopback_only) {
  session_ = session;
  loopback_only_ = loopback_only;
  const int32_t media = wanted_ & available();
  if (session_ == nullptr || media == 0) return closeFeed(kRemoteVideoStateReasonRemoteMuted);
  if (feed_ != nullptr && feed_->streams() != streams_) closeFeed(kRemoteVideoStateReasonInternal);
  if (feed_ == nullptr) {
    retry_.reset();
    opening_ = std::make_shared<char>();
    seen_size_ = {};
    shown_seen_ = false;
    sound_seen_ = false;
    feed_ = std::make_unique<RemoteFeed>(room_.engine, *session_, uid_, stream_index_, streams_, loopback_only_, *this,
                                         *this);
    feed_->start();
  }
  feed_->setWanted(media & ~paused_);
}

void RemoteStream::suspend() {
  streams_.clear();
  session_ = nullptr;
  closeFeed(kRemoteVideoStateReasonInternal);
}

void RemoteStream::closeFeed(RemoteVideoStateChangeReason reason) {
  retry_.reset();
  if (feed_ == nullptr) return;
  feed_.reset();
  opening_.reset();  // read by the feed's thread until it has ended
  reported_size_ = {};
  connection_ = {};
  taken_ = {};
  if (std::exchange(sounding_, false)) {
    const auto sound_reason = static_cast<RemoteAudioStateChangeReason>(reason);
    room_.engine.events->onRemoteAudioStateChanged(key(), kRemoteAudioStateStopped, sound_reason);
  }
  if (std::exchange(decoding_, false)) {
    room_.engine.events->onRemoteVideoStateChanged(key(), kRemoteVideoStateStopped, reason);
  }
}

void RemoteStream::reportSubscribed(SubscribeState state) {
  const int32_t media = wanted_ & available();
  SubscribeConfig info = {};
  info.is_screen = isScreen();
  info.sub_video = (media & kMediaStreamVideo) != 0;
  info.sub_audio = (media & kMediaStreamAudio) != 0;
  info.sub_video_index = info.sub_video ? 0 : -1;
  room_.events->onStreamSubscribed(state, uid_.c_str(), info);
}

void RemoteStream::onPeerConnected() {
  reportSubscribed(kSubscribeStateSuccess);
}

void RemoteStream::onPeerFailed(const std::string& reason) {
  room_.engine.log.warning("room %s: the %s of %s failed: %s", room_.room_id.c_str(), isScreen() ? "screen" : "feed",
                           uid_.c_str(), reason.c_str());
  closeFeed(kRemoteVideoStateReasonInternal);
  retry_ = room_.engine.thread.after(kRetryPause, [this] { update(session_, loopback_only_); });
  reportSubscribed(kSubscribeStateFailed);
}

void RemoteStream::onRemotePicture(const Picture& picture) {
  const Size size = {GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info)};
  if (size != seen_size_) {
    seen_size_ = size;
    room_.engine.thread.post(opening_, [this, size] { onSize(size); });
  }
  if (!shown_seen_ && sink_->attached()) {
    shown_seen_ = true;
    room_.engine.thread.post(opening_, [this, size] { onShown(size); });
  }
  room_.snapshots.offer(*snapshots_, picture);
  sink_->deliver(picture);
}

void RemoteStream::onSize(Size size) {
  const VideoFrameInfo info = {size.width, size.height, 0};
  const Size previous = std::exchange(reported_size_, size);
  IRTCVideoEventHandler& events = *room_.engine.events;
  if (!std::exchange(decoding_, true)) {
    events.onRemoteVideoStateChanged(key(), kRemoteVideoStateDecoding, kRemoteVideoStateReasonInternal);
    events.onFirstRemoteVideoFrameDecoded(key(), info);
  } else if (size != previous) {
    events.onRemoteVideoSizeChanged(key(), info);
  }
}

void RemoteStream::onShown(Size size) {
  room_.engine.events->onFirstRemoteVideoFrameRendered(key(), {size.width, size.height, 0});
}

void RemoteStream::onRemoteSound(const SoundBlock& block) {
  if (!sound_seen_) {
    sound_seen_ = true;
    room_.engine.thread.post(opening_, [this] { onFirstSound(); });
  }
  sound_->push(block);
}

void RemoteStream::onFirstSound() {
  sounding_ = true;
  room_.engine.events->onRemoteAudioStateChanged(key(), kRemoteAudioStateDecoding, kRemoteAudioStateReasonInternal);
  room_.engine.events->onFirstRemoteAudioFrame(key());
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
  const Counters now = {connection_, counts.pictures, counts.stalls, counts.stall_ns};
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
    video.decoder_output_frame_rate =
        static_cast<int32_t>(((now.pictures - taken_.pictures) * 1000 + interval_ms / 2) / interval_ms);
    video.frozen_rate = std::min(stall_ms * 100 / interval_ms, 100);
  }
  video.renderer_output_frame_rate = sink_->attached() ? video.decoder_output_frame_rate : 0;
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
  if (sounding_) {
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
