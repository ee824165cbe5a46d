#include "rooms/local_stream.h"

#include <utility>

#include "core/json.h"
#include "rooms/room_report.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kFeedbackInterval(500);
constexpr int32_t kLowestBitrate = 80;  // kbit/s, unless the application allows less

}  // namespace

LocalStream::LocalStream(RoomContext& room, int32_t stream_index)
    : room_(room),
      stream_index_(stream_index),
      media_(stream_index == kStreamIndexScreen ? room.screen_media : room.camera_media),
      sent_video_(room, stream_index, /*is_video=*/true),
      sent_sound_(room, stream_index, /*is_video=*/false) {}

LocalStream::~LocalStream() {
  close();
}

void LocalStream::setPublished(int32_t media) {
  if (std::exchange(published_, media) != media) forgetFailures();
  update();
}

void LocalStream::setSession(RoomSession* session, bool loopback_only) {
  close();
  session_ = session;
  loopback_only_ = loopback_only;
  forgetFailures();
  update();
}

// What has changed may be what was missing.
void LocalStream::forgetFailures() {
  retry_.reset();
  retry_pause_.reset();
  failure_.clear();
}

void LocalStream::updateAfter(std::chrono::milliseconds pause) {
  retry_ = room_.engine.thread.after(pause, [this] {
    retry_.reset();
    update();
  });
}

void LocalStream::update() {
  if (retry_ != nullptr || session_ == nullptr || (published_ == 0 && publisher_ == nullptr)) return;
  // Once there, the connection stays: publishing again takes no negotiation.
  const bool is_new = publisher_ == nullptr;
  const size_t layers = media_.layers().size();
  if (is_new) {
    publisher_ = std::make_unique<Publisher>(room_.engine, *session_, stream_index_, layers, loopback_only_, *this);
  }
  if ((published_ & kMediaStreamVideo) != 0 && publisher_->layers() != layers) return reopen();
  if ((published_ & kMediaStreamVideo) != 0) {
    video_ = media_.borrowVideo(*this);
    publisher_->setVideo(video_);
  } else {
    publisher_->setVideo({});
    video_.clear();
    media_.giveBackVideo(*this);
  }
  if ((published_ & kMediaStreamAudio) != 0) {
    publisher_->setSound(media_.borrowSound(*this));
  } else {
    publisher_->setSound(nullptr);
    media_.giveBackSound(*this);
  }
  sent_video_.set((published_ & kMediaStreamVideo) != 0, publisher_->videoBytes());
  sent_sound_.set((published_ & kMediaStreamAudio) != 0, publisher_->soundBytes());
  if (!is_new) return;
  publisher_->start();
  bitrate_ = {};
  feedback_ = room_.engine.thread.after(kFeedbackInterval, [this] { followLink(); });
}

void LocalStream::followLink() {
  feedback_ = room_.engine.thread.after(kFeedbackInterval, [this] { followLink(); });
  if (video_.empty()) return;
  publisher_->peer().requestStatistics([this](const GstStructure* report) {
    connection_ = readConnectionStats(report);
    int32_t full = 0;
    for (const VideoEncoder* layer : video_) full += layer->fullBitrate();
    if (full == 0) return;
    LinkFeedback reported;
    reported.loss = connection_.sent_video.fraction_lost;
    reported.rtt_ms = connection_.sent_video.rtt_ms;
    const LinkFeedback told = publisher_->packetFeedback().take().value_or(reported);
    // Of the smallest layer, which is sent last.
    const int32_t lowest = video_.back()->minBitrate() > 0 ? video_.back()->minBitrate() : kLowestBitrate;
    media_.limitVideo(*this, bitrate_.update(told, lowest, full));
  });
}

void LocalStream::check() {
  media_.check();
  if (!connected_) return;
  sent_video_.check(publisher_->videoBytes());
  sent_sound_.check(publisher_->soundBytes());
}

void LocalStream::close() {
  retry_.reset();
  feedback_.reset();
  connected_ = false;
  sent_video_.set(false, 0);
  sent_sound_.set(false, 0);
  publisher_.reset();
  video_.clear();
  connection_ = {};
  taken_ = {};
  media_.giveBackVideo(*this);
  media_.giveBackSound(*this);
}

void LocalStream::onPeerConnected() {
  connected_ = true;
  failure_.clear();
  sent_video_.onConnected(publisher_->videoBytes());
  sent_sound_.onConnected(publisher_->soundBytes());
  const Json extra = {{"published", published_}, {"is_screen", stream_index_ == kStreamIndexScreen}};
  room_.events->onStreamStateChanged(room_.room_id.c_str(), room_.user_id.c_str(), kStreamStateOk,
                                     jsonText(extra).c_str());
}

void LocalStream::onPeerFailed(const std::string& reason) {
  close();
  updateAfter(retry_pause_.next());
  if (std::exchange(failure_, reason) == reason) return;
  room_.engine.log.error("room %s: publishing failed: %s", room_.room_id.c_str(), reason.c_str());
  const Json extra = {{"reason", reason}, {"is_screen", stream_index_ == kStreamIndexScreen}};
  room_.events->onStreamStateChanged(room_.room_id.c_str(), room_.user_id.c_str(), kStreamStatePublishFailed,
                                     jsonText(extra).c_str());
}

void LocalStream::onVideoEncoders(const VideoLayers& encoders) {
  if (publisher_ == nullptr) return;
  if (encoders.size() != publisher_->layers()) return reopen();
  publisher_->setVideo(encoders);
  video_ = encoders;
  taken_.pictures_in = taken_.pictures_out = taken_.encoded_bytes = taken_.encode_ns = 0;
}

// How many layers there are is settled when a connection is offered.
void LocalStream::reopen() {
  close();
  updateAfter(std::chrono::milliseconds(0));  // not from inside the call of whoever lends the encoders
}

void LocalStream::requestStatistics() {
  if (publisher_ == nullptr) return;
  publisher_->peer().requestStatistics(
      [this](const GstStructure* report) { connection_ = readConnectionStats(report); });
}

bool LocalStream::takeStatistics(int32_t interval_ms, LocalStreamStats& stats, int64_t& sent_bytes) {
  if (publisher_ == nullptr || published_ == 0) return false;
  Counters now = {.sound_bytes = publisher_->soundBytes(), .video_bytes = publisher_->videoBytes()};
  LocalVideoStats& video = stats.video_stats;
  stats.is_screen = video.is_screen = stream_index_ == kStreamIndexScreen;
  for (const VideoEncoder* layer : video_) now.encoded_bytes += layer->counts().bytes_out;
  if (!video_.empty()) {
    const EncodedCounts& counts = video_.front()->counts();
    now.pictures_in = counts.pictures_in;
    now.pictures_out = counts.pictures_out;
    now.encode_ns = counts.encode_ns;
    video.encoded_frame_width = counts.width;
    video.encoded_frame_height = counts.height;
    video.codec_type = videoCodecType(VideoEncoder::codec());
  }
  const auto rate = [interval_ms](int64_t count) {
    return interval_ms > 0 ? static_cast<int32_t>((count * 1000 + interval_ms / 2) / interval_ms) : 0;
  };
  const int64_t encoded = now.pictures_out - taken_.pictures_out;
  video.sent_kbitrate = bitrate(now.video_bytes - taken_.video_bytes, interval_ms);
  video.input_frame_rate = rate(now.pictures_in - taken_.pictures_in);
  video.encoder_output_frame_rate = rate(encoded);
  video.sent_frame_rate = video.encoder_output_frame_rate;
  video.renderer_output_frame_rate = video.input_frame_rate;
  video.stats_interval = interval_ms;
  video.video_loss_rate = connection_.sent_video.fraction_lost;
  video.rtt = connection_.sent_video.rtt_ms;
  video.encoded_bitrate = bitrate(now.encoded_bytes - taken_.encoded_bytes, interval_ms);
  video.encoded_frame_count = static_cast<int32_t>(encoded);
  video.jitter = connection_.sent_video.jitter_ms;
  if (encoded > 0) {
    video.codec_elapse_per_frame = static_cast<int32_t>((now.encode_ns - taken_.encode_ns) / encoded / 1'000'000);
  }
  LocalAudioStats& sound = stats.audio_stats;
  sound.send_kbitrate = bitrate(now.sound_bytes - taken_.sound_bytes, interval_ms);
  sound.stats_interval = interval_ms;
  sound.audio_loss_rate = connection_.sent_sound.fraction_lost;
  sound.rtt = connection_.sent_sound.rtt_ms;
  sound.jitter = connection_.sent_sound.jitter_ms;
  if ((published_ & kMediaStreamAudio) != 0) {
    sound.record_sample_rate = kSoundRate;
    sound.sent_sample_rate = kSoundRate;
    sound.num_channels = 1;
  }
  sent_bytes += now.sound_bytes - taken_.sound_bytes + now.video_bytes - taken_.video_bytes;
  taken_ = now;
  return true;
}

void LocalStream::onEncodingFailed(const std::string& reason) {
  onPeerFailed(reason);
}

}  // namespace corvane::rtc
