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
  told_ = started_;
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
  subject_.localStream().requestStatistics();
  for (RemoteUser* user : subject_.remoteUsers()) user->requestStatistics();
  timer_ = room_.engine.thread.after(kAnswerTime, [this] { tell(); });
}

void RoomReport::tell() {
  const int32_t interval = millisecondsSince(told_);
  told_ = std::chrono::steady_clock::now();
  const std::vector<RemoteUser*> users = subject_.remoteUsers();

  RoomStats stats = {};
  LocalStreamStats local = {};
  const bool sends = subject_.localStream().takeStatistics(interval, local, sent_bytes_);
  if (sends) {
    stats.tx_audio_kbitrate = local.audio_stats.send_kbitrate;
    stats.tx_video_kbitrate = local.video_stats.sent_kbitrate;
    stats.tx_lostrate = std::max(local.audio_stats.audio_loss_rate, local.video_stats.video_loss_rate);
    stats.rtt = std::max(local.audio_stats.rtt, local.video_stats.rtt);
    stats.tx_jitter = std::max(local.audio_stats.jitter, local.video_stats.jitter);
  }

  std::vector<RemoteStreamStats> remotes;
  std::vector<NetworkQualityStats> qualities;
  int32_t visible = 1;
  for (RemoteUser* user : users) {
    if (user->state().visible) ++visible;
    RemoteStreamStats remote = {};
    remote.audio_stats.rtt = stats.rtt;
    remote.video_stats.rtt = stats.rtt;
    if (!user->takeStatistics(interval, remote, received_bytes_)) continue;
    remotes.push_back(remote);
    stats.rx_audio_kbitrate += remote.audio_stats.received_kbitrate;
    stats.rx_video_kbitrate += remote.video_stats.received_kbitrate;
    const double loss = std::max(remote.audio_stats.audio_loss_rate, remote.video_stats.video_loss_rate);
    stats.rx_lostrate = std::max(stats.rx_lostrate, loss);
    stats.rx_jitter = std::max({stats.rx_jitter, remote.audio_stats.jitter, remote.video_stats.jitter});
    qualities.push_back({remote.uid, loss, stats.rtt, remote.remote_rx_quality,
                         remote.audio_stats.received_kbitrate + remote.video_stats.received_kbitrate,
                         remote.remote_tx_quality});
  }

  const ProcessorLoad load = processors_.measure();
  stats.duration = millisecondsSince(started_) / 1000;
  stats.tx_bytes = sent_bytes_;
  stats.rx_bytes = received_bytes_;
  stats.tx_kbitrate = stats.tx_audio_kbitrate + stats.tx_video_kbitrate;
  stats.rx_kbitrate = stats.rx_audio_kbitrate + stats.rx_video_kbitrate;
  stats.user_count = visible;
  stats.cpu_app_usage = load.process;
  stats.cpu_total_usage = load.machine;
  last_ = stats;

  const int32_t tx_quality = sends ? networkQuality(stats.tx_lostrate, stats.rtt) : kNetworkQualityUnknown;
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
  if (sends) {
    local.local_tx_quality = tx_quality;
    local.local_rx_quality = rx_quality;
    events.onLocalStreamStats(local);
  }
  for (const RemoteStreamStats& remote : remotes) events.onRemoteStreamStats(remote);
  events.onNetworkQuality(own, qualities.data(), static_cast<int32_t>(qualities.size()));
}

}  // namespace corvane::rtc
