#include "rooms/room_report.h"

#include <algorithm>

#include "corvane_rtc/connection_events.h"
#include "corvane_rtc/recording_events.h"
#include "rooms/local_stream.h"
#include "rooms/remote_user.h"

namespace corvane::rtc {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kInterval(2000);
// The connections answer from threads of their own.
constexpr milliseconds kAnswerTime(100);

struct QualityLimit {
  double loss;
  int32_t rtt_ms;
  NetworkQuality quality;
};

// The first line whose limits are kept.
constexpr QualityLimit kQualityLimits[] = {
    {0.01, 100, kNetworkQualityExcellent}, {0.03, 200, kNetworkQualityGood},     {0.08, 400, kNetworkQualityPoor},
    {0.20, 800, kNetworkQualityBad},       {0.50, 3000, kNetworkQualityVeryBad},
};

}  // namespace

int32_t networkQuality(double loss, int32_t rtt_ms) {
  for (const QualityLimit& limit : kQualityLimits) {
    if (loss <= limit.loss && rtt_ms <= limit.rtt_ms) return limit.quality;
  }
  return kNetworkQualityDown;
}

int32_t videoCodecType(std::string_view codec) {
  if (codec == "h264") return kVideoCodecTypeH264;
  return codec == "vp8" ? kVideoCodecTypeVP8 : kVideoCodecTypeUnknown;
}

double lossRate(int64_t lost, int64_t arrived) {
  const int64_t all = lost + arrived;
  return all > 0 ? static_cast<double>(lost) / static_cast<double>(all) : 0;
}

int32_t bitrate(int64_t bytes, int32_t interval_ms) {
  return interval_ms > 0 ? static_cast<int32_t>(bytes * 8 / interval_ms) : 0;
}

RoomReport::RoomReport(RoomContext& room, Subject& subject) : room_(room), subject_(subject) {}

void RoomReport::start() {
  last_ = {};
  sent_bytes_ = 0;
  received_bytes_ = 0;
  started_ = std::chrono::steady_clock::now();
  resume();
}

void RoomReport::resume() {
  told_ = std::chrono::steady_clock::now();
  processors_.measure();
  timer_ = room_.engine.thread.after(kInterval - kAnswerTime, [this] { ask(); });
}

void RoomReport::stop() {
  timer_.reset();
}

RoomStats RoomReport::total() const {
  RoomStats stats = last_;
  stats.duration = millisecondsSince(started_) / 1000;
  return stats;
}

void RoomReport::ask() {
  for (LocalStream& stream : subject_.localStreams()) stream.requestStatistics();
  for (RemoteUser* user : subject_.remoteUsers()) {
    for (RemoteStream& stream : user->streams()) stream.requestStatistics();
  }
  timer_ = room_.engine.thread.after(kAnswerTime, [this] { tell(); });
}

std::vector<LocalStreamStats> RoomReport::takeLocal(int32_t interval, RoomStats& stats) {
  std::vector<LocalStreamStats> all;
  for (LocalStream& stream : subject_.localStreams()) {
    LocalStreamStats local = {};
    if (!stream.takeStatistics(interval, local, sent_bytes_)) continue;
    const LocalAudioStats& audio = local.audio_stats;
    const LocalVideoStats& video = local.video_stats;
    stats.tx_audio_kbitrate += audio.send_kbitrate;
    (local.is_screen ? stats.tx_screen_kbitrate : stats.tx_video_kbitrate) += video.sent_kbitrate;
    stats.tx_lostrate = std::max({stats.tx_lostrate, audio.audio_loss_rate, video.video_loss_rate});
    stats.rtt = std::max({stats.rtt, audio.rtt, video.rtt});
    stats.tx_jitter = std::max({stats.tx_jitter, audio.jitter, video.jitter});
    all.push_back(local);
  }
  return all;
}

std::vector<RemoteStreamStats> RoomReport::takeRemote(int32_t interval, RoomStats& stats,
                                                      std::vector<NetworkQualityStats>& qualities) {
  std::vector<RemoteStreamStats> all;
  for (RemoteUser* user : subject_.remoteUsers()) {
    if (user->state().visible) ++stats.user_count;
    NetworkQualityStats quality = {user->uid().c_str(),    0, stats.rtt,
                                   kNetworkQualityUnknown, 0, kNetworkQualityUnknown};
    const size_t before = all.size();
    for (RemoteStream& stream : user->streams()) {
      RemoteStreamStats remote = {};
      remote.audio_stats.rtt = stats.rtt;
      remote.video_stats.rtt = stats.rtt;
      if (!stream.takeStatistics(interval, remote, received_bytes_)) continue;
      const RemoteAudioStats& audio = remote.audio_stats;
      const RemoteVideoStats& video = remote.video_stats;
      stats.rx_audio_kbitrate += audio.received_kbitrate;
      (remote.is_screen ? stats.rx_screen_kbitrate : stats.rx_video_kbitrate) += video.received_kbitrate;
      stats.rx_jitter = std::max({stats.rx_jitter, audio.jitter, video.jitter});
      quality.fraction_lost = std::max({quality.fraction_lost, audio.audio_loss_rate, video.video_loss_rate});
      quality.total_bandwidth += audio.received_kbitrate + video.received_kbitrate;
      // The worse of the two streams: higher numbers are worse.
      quality.rx_quality = std::max(quality.rx_quality, remote.remote_rx_quality);
      all.push_back(remote);
    }
    stats.rx_lostrate = std::max(stats.rx_lostrate, quality.fraction_lost);
    if (all.size() > before) qualities.push_back(quality);
  }
  return all;
}

void RoomReport::tell() {
  const int32_t interval = millisecondsSince(told_);
  told_ = std::chrono::steady_clock::now();

  RoomStats stats = {};
  stats.user_count = 1;
  std::vector<LocalStreamStats> locals = takeLocal(interval, stats);
  std::vector<NetworkQualityStats> qualities;
  const std::vector<RemoteStreamStats> remotes = takeRemote(interval, stats, qualities);

  const ProcessorLoad load = processors_.measure();
  stats.duration = millisecondsSince(started_) / 1000;
  stats.tx_bytes = sent_bytes_;
  stats.rx_bytes = received_bytes_;
  stats.tx_kbitrate = stats.tx_audio_kbitrate + stats.tx_video_kbitrate + stats.tx_screen_kbitrate;
  stats.rx_kbitrate = stats.rx_audio_kbitrate + stats.rx_video_kbitrate + stats.rx_screen_kbitrate;
  stats.cpu_app_usage = load.process;
  stats.cpu_total_usage = load.machine;
  last_ = stats;

  const int32_t tx_quality = !locals.empty() ? networkQuality(stats.tx_lostrate, stats.rtt) : kNetworkQualityUnknown;
  const int32_t rx_quality = remotes.empty() ? kNetworkQualityUnknown : networkQuality(stats.rx_lostrate, stats.rtt);
  const NetworkQualityStats own = {room_.user_id.c_str(),
                                   stats.tx_lostrate,
                                   stats.rtt,
                                   rx_quality,
                                   stats.tx_kbitrate + stats.rx_kbitrate,
                                   tx_quality};
  timer_ = room_.engine.thread.after(kInterval - kAnswerTime, [this] { ask(); });

  IRTCRoomEventHandler& events = *room_.events;
  events.onRoomStats(stats);
  for (LocalStreamStats& local : locals) {
    local.local_tx_quality = tx_quality;
    local.local_rx_quality = rx_quality;
    events.onLocalStreamStats(local);
  }
  for (const RemoteStreamStats& remote : remotes) events.onRemoteStreamStats(remote);
  events.onNetworkQuality(own, qualities.data(), static_cast<int32_t>(qualities.size()));
}

}  // namespace corvane::rtc
