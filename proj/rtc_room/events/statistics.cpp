// How the room, its streams and its users' networks are doing.
#include <string>

#include "events/owned_list.h"
#include "rtc_room/events/room_stats.h"
#include "rtc_room/room_callback.h"
#include "video/transporter.h"

namespace corvane {
namespace {

void putLocalAudio(Payload& object, const rtc::LocalAudioStats& stats) {
  object.put("audio_loss_rate", stats.audio_loss_rate);
  object.put("send_kbitrate", stats.send_kbitrate);
  object.put("record_sample_rate", stats.record_sample_rate);
  object.put("stats_interval", stats.stats_interval);
  object.put("rtt", stats.rtt);
  object.put("num_channels", stats.num_channels);
  object.put("sent_sample_rate", stats.sent_sample_rate);
  object.put("jitter", stats.jitter);
}

void putLocalVideo(Payload& object, const rtc::LocalVideoStats& stats) {
  object.put("sent_kbitrate", stats.sent_kbitrate);
  object.put("input_frame_rate", stats.input_frame_rate);
  object.put("sent_frame_rate", stats.sent_frame_rate);
  object.put("encoder_output_frame_rate", stats.encoder_output_frame_rate);
  object.put("renderer_output_frame_rate", stats.renderer_output_frame_rate);
  object.put("stats_interval", stats.stats_interval);
  object.put("video_loss_rate", stats.video_loss_rate);
  object.put("rtt", stats.rtt);
  object.put("encoded_bitrate", stats.encoded_bitrate);
  object.put("encoded_frame_width", stats.encoded_frame_width);
  object.put("encoded_frame_height", stats.encoded_frame_height);
  object.put("encoded_frame_count", stats.encoded_frame_count);
  object.put("codec_type", stats.codec_type);
  object.put("is_screen", stats.is_screen);
  // Booleans here, numbers in the remote statistics: applications know them that way.
  object.put("jitter", stats.jitter != 0);
  object.put("codec_elapse_per_frame", stats.codec_elapse_per_frame != 0);
}

void putRemoteAudio(Payload& object, const rtc::RemoteAudioStats& stats) {
  object.put("audio_loss_rate", stats.audio_loss_rate);
  object.put("received_kbitrate", stats.received_kbitrate);
  object.put("stall_count", stats.stall_count);
  object.put("stall_duration", stats.stall_duration);
  object.put("e2e_delay", stats.e2e_delay);
  object.put("playout_sample_rate", stats.playout_sample_rate);
  object.put("stats_interval", stats.stats_interval);
  object.put("rtt", stats.rtt);
  object.put("total_rtt", stats.total_rtt);
  object.put("quality", stats.quality);
  object.put("jitter_buffer_delay", stats.jitter_buffer_delay);
  object.put("num_channels", stats.num_channels);
  object.put("received_sample_rate", stats.received_sample_rate);
  object.put("frozen_rate", stats.frozen_rate);
  object.put("concealed_samples", stats.concealed_samples);
  object.put("concealment_event", stats.concealment_event);
  object.put("dec_sample_rate", stats.dec_sample_rate);
  object.put("dec_duration", stats.dec_duration);
  object.put("jitter", stats.jitter);
}

void putRemoteVideo(Payload& object, const rtc::RemoteVideoStats& stats) {
  object.put("width", stats.width);
  object.put("height", stats.height);
  object.put("video_loss_rate", stats.video_loss_rate);
  object.put("received_kbitrate", stats.received_kbitrate);
  object.put("decoder_output_frame_rate", stats.decoder_output_frame_rate);
  object.put("renderer_output_frame_rate", stats.renderer_output_frame_rate);
  object.put("stall_count", stats.stall_count);
  object.put("stall_duration", stats.stall_duration);
  object.put("e2e_delay", stats.e2e_delay);
  object.put("is_screen", stats.is_screen);
  object.put("stats_interval", stats.stats_interval);
  object.put("rtt", stats.rtt);
  object.put("frozen_rate", stats.frozen_rate);
  object.put("codec_type", stats.codec_type);
  object.put("video_index", stats.video_index);
  object.put("jitter", stats.jitter);
  object.put("codec_elapse_per_frame", stats.codec_elapse_per_frame);
}

struct OwnedNetworkQuality {
  explicit OwnedNetworkQuality(const rtc::NetworkQualityStats& lent) : uid(owned(lent.uid)), stats(lent) {}

  std::string uid;
  rtc::NetworkQualityStats stats;  // its uid is the engine's, gone after the callback
};

void putNetworkQuality(Payload& object, const OwnedNetworkQuality& quality) {
  object.put("uid", quality.uid);
  object.put("fraction_lost", quality.stats.fraction_lost);
  object.put("rtt", quality.stats.rtt);
  object.put("rx_quality", quality.stats.rx_quality);
  object.put("total_bandwidth", quality.stats.total_bandwidth);
  object.put("tx_quality", quality.stats.tx_quality);
}

}  // namespace

void KavRTCRoomCallback::onRoomStats(const rtc::RoomStats& stats) {
  const int32_t status = post(__func__, [stats](Payload& payload) { putRoomStats(payload, stats); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onLocalStreamStats(const rtc::LocalStreamStats& stats) {
  KavRTCTransporter::instance().setVideoRenderFps(__func__, stats.video_stats.renderer_output_frame_rate);
  const int32_t status = post(__func__, [stats](Payload& payload) {
    payload.object("audio_stats", [&](Payload& object) { putLocalAudio(object, stats.audio_stats); });
    payload.object("video_stats", [&](Payload& object) { putLocalVideo(object, stats.video_stats); });
    payload.put("local_tx_quality", stats.local_tx_quality);
    payload.put("local_rx_quality", stats.local_rx_quality);
    payload.put("is_screen", stats.is_screen);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onRemoteStreamStats(const rtc::RemoteStreamStats& stats) {
  KavRTCTransporter::instance().setVideoRenderFps(__func__, stats.video_stats.renderer_output_frame_rate);
  const int32_t status = post(__func__, [uid = owned(stats.uid), stats](Payload& payload) {
    payload.put("uid", uid);
    payload.object("audio_stats", [&](Payload& object) { putRemoteAudio(object, stats.audio_stats); });
    payload.object("video_stats", [&](Payload& object) { putRemoteVideo(object, stats.video_stats); });
    payload.put("remote_tx_quality", stats.remote_tx_quality);
    payload.put("remote_rx_quality", stats.remote_rx_quality);
    payload.put("is_screen", stats.is_screen);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onNetworkQuality(const rtc::NetworkQualityStats& local_quality,
                                          const rtc::NetworkQualityStats* remote_qualities,
                                          int32_t remote_quality_count) {
  const auto own = [](const rtc::NetworkQualityStats& stats) { return OwnedNetworkQuality(stats); };
  const int32_t status =
      post(__func__, [local_quality = OwnedNetworkQuality(local_quality),
                      remote_qualities = ownedList(remote_qualities, remote_quality_count, own)](Payload& payload) {
        payload.object("localQuality", [&](Payload& object) { putNetworkQuality(object, local_quality); });
        payload.list("remoteQualities", remote_qualities, putNetworkQuality);
      });
  LogWrite(kLogInfo, "%s(%d) status:%d", __func__, __LINE__, status);
}

}  // namespace corvane
