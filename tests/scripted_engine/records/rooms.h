// Fields of records about rooms.
#pragma once

#include "core/fields.h"
#include "corvane_rtc/room_statistics.h"
#include "corvane_rtc/rtc_room.h"

namespace corvane::scripted {

template <>
struct Fields<rtc::UserInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"uid", &rtc::UserInfo::uid}, Field{"extra_info", &rtc::UserInfo::extra_info}};
};

template <>
struct Fields<rtc::RemoteVideoConfig> {
  static constexpr auto kFields = std::tuple{Field{"framerate", &rtc::RemoteVideoConfig::framerate},
                                             Field{"resolution_width", &rtc::RemoteVideoConfig::resolution_width},
                                             Field{"resolution_height", &rtc::RemoteVideoConfig::resolution_height}};
};

template <>
struct Fields<rtc::RTCRoomConfig> {
  static constexpr auto kFields =
      std::tuple{Field{"room_profile_type", &rtc::RTCRoomConfig::room_profile_type},
                 Field{"is_auto_publish", &rtc::RTCRoomConfig::is_auto_publish},
                 Field{"is_auto_subscribe_audio", &rtc::RTCRoomConfig::is_auto_subscribe_audio},
                 Field{"is_auto_subscribe_video", &rtc::RTCRoomConfig::is_auto_subscribe_video},
                 Field{"remote_video_config", &rtc::RTCRoomConfig::remote_video_config}};
};

template <>
struct Fields<rtc::ForwardStreamInfo> {
  static constexpr auto kFields =
      std::tuple{Field{"room_id", &rtc::ForwardStreamInfo::room_id}, Field{"token", &rtc::ForwardStreamInfo::token}};
};

template <>
struct Fields<rtc::ForwardStreamConfiguration> {
  static constexpr auto kFields =
      std::tuple{ListField{"forward_stream_dests", &rtc::ForwardStreamConfiguration::forward_stream_dests, "count",
                           &rtc::ForwardStreamConfiguration::count}};
};

template <>
struct Fields<rtc::SubtitleConfig> {
  static constexpr auto kFields = std::tuple{Field{"mode", &rtc::SubtitleConfig::mode},
                                             Field{"target_language", &rtc::SubtitleConfig::target_language}};
};

template <>
struct Fields<rtc::RoomStats> {
  static constexpr auto kFields = std::tuple{Field{"tx_lostrate", &rtc::RoomStats::tx_lostrate},
                                             Field{"rx_lostrate", &rtc::RoomStats::rx_lostrate},
                                             Field{"rtt", &rtc::RoomStats::rtt},
                                             Field{"duration", &rtc::RoomStats::duration},
                                             Field{"tx_bytes", &rtc::RoomStats::tx_bytes},
                                             Field{"rx_bytes", &rtc::RoomStats::rx_bytes},
                                             Field{"tx_kbitrate", &rtc::RoomStats::tx_kbitrate},
                                             Field{"rx_kbitrate", &rtc::RoomStats::rx_kbitrate},
                                             Field{"rx_audio_kbitrate", &rtc::RoomStats::rx_audio_kbitrate},
                                             Field{"tx_audio_kbitrate", &rtc::RoomStats::tx_audio_kbitrate},
                                             Field{"rx_video_kbitrate", &rtc::RoomStats::rx_video_kbitrate},
                                             Field{"tx_video_kbitrate", &rtc::RoomStats::tx_video_kbitrate},
                                             Field{"rx_screen_kbitrate", &rtc::RoomStats::rx_screen_kbitrate},
                                             Field{"tx_screen_kbitrate", &rtc::RoomStats::tx_screen_kbitrate},
                                             Field{"user_count", &rtc::RoomStats::user_count},
                                             Field{"cpu_app_usage", &rtc::RoomStats::cpu_app_usage},
                                             Field{"cpu_total_usage", &rtc::RoomStats::cpu_total_usage},
                                             Field{"tx_jitter", &rtc::RoomStats::tx_jitter},
                                             Field{"rx_jitter", &rtc::RoomStats::rx_jitter},
                                             Field{"tx_cellular_kbitrate", &rtc::RoomStats::tx_cellular_kbitrate},
                                             Field{"rx_cellular_kbitrate", &rtc::RoomStats::rx_cellular_kbitrate}};
};

template <>
struct Fields<rtc::LocalAudioStats> {
  static constexpr auto kFields = std::tuple{Field{"audio_loss_rate", &rtc::LocalAudioStats::audio_loss_rate},
                                             Field{"send_kbitrate", &rtc::LocalAudioStats::send_kbitrate},
                                             Field{"record_sample_rate", &rtc::LocalAudioStats::record_sample_rate},
                                             Field{"stats_interval", &rtc::LocalAudioStats::stats_interval},
                                             Field{"rtt", &rtc::LocalAudioStats::rtt},
                                             Field{"num_channels", &rtc::LocalAudioStats::num_channels},
                                             Field{"sent_sample_rate", &rtc::LocalAudioStats::sent_sample_rate},
                                             Field{"jitter", &rtc::LocalAudioStats::jitter}};
};

template <>
struct Fields<rtc::LocalVideoStats> {
  static constexpr auto kFields =
      std::tuple{Field{"sent_kbitrate", &rtc::LocalVideoStats::sent_kbitrate},
                 Field{"input_frame_rate", &rtc::LocalVideoStats::input_frame_rate},
                 Field{"sent_frame_rate", &rtc::LocalVideoStats::sent_frame_rate},
                 Field{"encoder_output_frame_rate", &rtc::LocalVideoStats::encoder_output_frame_rate},
                 Field{"renderer_output_frame_rate", &rtc::LocalVideoStats::renderer_output_frame_rate},
                 Field{"stats_interval", &rtc::LocalVideoStats::stats_interval},
                 Field{"video_loss_rate", &rtc::LocalVideoStats::video_loss_rate},
                 Field{"rtt", &rtc::LocalVideoStats::rtt},
                 Field{"encoded_bitrate", &rtc::LocalVideoStats::encoded_bitrate},
                 Field{"encoded_frame_width", &rtc::LocalVideoStats::encoded_frame_width},
                 Field{"encoded_frame_height", &rtc::LocalVideoStats::encoded_frame_height},
                 Field{"encoded_frame_count", &rtc::LocalVideoStats::encoded_frame_count},
                 Field{"codec_type", &rtc::LocalVideoStats::codec_type},
                 Field{"is_screen", &rtc::LocalVideoStats::is_screen},
                 Field{"jitter", &rtc::LocalVideoStats::jitter},
                 Field{"codec_elapse_per_frame", &rtc::LocalVideoStats::codec_elapse_per_frame}};
};

template <>
struct Fields<rtc::LocalStreamStats> {
  static constexpr auto kFields = std::tuple{Field{"audio_stats", &rtc::LocalStreamStats::audio_stats},
                                             Field{"video_stats", &rtc::LocalStreamStats::video_stats},
                                             Field{"local_tx_quality", &rtc::LocalStreamStats::local_tx_quality},
                                             Field{"local_rx_quality", &rtc::LocalStreamStats::local_rx_quality},
                                             Field{"is_screen", &rtc::LocalStreamStats::is_screen}};
};

template <>
struct Fields<rtc::RemoteAudioStats> {
  static constexpr auto kFields =
      std::tuple{Field{"audio_loss_rate", &rtc::RemoteAudioStats::audio_loss_rate},
                 Field{"received_kbitrate", &rtc::RemoteAudioStats::received_kbitrate},
                 Field{"stall_count", &rtc::RemoteAudioStats::stall_count},
                 Field{"stall_duration", &rtc::RemoteAudioStats::stall_duration},
                 Field{"e2e_delay", &rtc::RemoteAudioStats::e2e_delay},
                 Field{"playout_sample_rate", &rtc::RemoteAudioStats::playout_sample_rate},
                 Field{"stats_interval", &rtc::RemoteAudioStats::stats_interval},
                 Field{"rtt", &rtc::RemoteAudioStats::rtt},
                 Field{"total_rtt", &rtc::RemoteAudioStats::total_rtt},
                 Field{"quality", &rtc::RemoteAudioStats::quality},
                 Field{"jitter_buffer_delay", &rtc::RemoteAudioStats::jitter_buffer_delay},
                 Field{"num_channels", &rtc::RemoteAudioStats::num_channels},
                 Field{"received_sample_rate", &rtc::RemoteAudioStats::received_sample_rate},
                 Field{"frozen_rate", &rtc::RemoteAudioStats::frozen_rate},
                 Field{"concealed_samples", &rtc::RemoteAudioStats::concealed_samples},
                 Field{"concealment_event", &rtc::RemoteAudioStats::concealment_event},
                 Field{"dec_sample_rate", &rtc::RemoteAudioStats::dec_sample_rate},
                 Field{"dec_duration", &rtc::RemoteAudioStats::dec_duration},
                 Field{"jitter", &rtc::RemoteAudioStats::jitter}};
};

template <>
struct Fields<rtc::RemoteVideoStats> {
  static constexpr auto kFields =
      std::tuple{Field{"width", &rtc::RemoteVideoStats::width},
                 Field{"height", &rtc::RemoteVideoStats::height},
                 Field{"video_loss_rate", &rtc::RemoteVideoStats::video_loss_rate},
                 Field{"received_kbitrate", &rtc::RemoteVideoStats::received_kbitrate},
                 Field{"decoder_output_frame_rate", &rtc::RemoteVideoStats::decoder_output_frame_rate},
                 Field{"renderer_output_frame_rate", &rtc::RemoteVideoStats::renderer_output_frame_rate},
                 Field{"stall_count", &rtc::RemoteVideoStats::stall_count},
                 Field{"stall_duration", &rtc::RemoteVideoStats::stall_duration},
                 Field{"e2e_delay", &rtc::RemoteVideoStats::e2e_delay},
                 Field{"is_screen", &rtc::RemoteVideoStats::is_screen},
                 Field{"stats_interval", &rtc::RemoteVideoStats::stats_interval},
                 Field{"rtt", &rtc::RemoteVideoStats::rtt},
                 Field{"frozen_rate", &rtc::RemoteVideoStats::frozen_rate},
                 Field{"codec_type", &rtc::RemoteVideoStats::codec_type},
                 Field{"video_index", &rtc::RemoteVideoStats::video_index},
                 Field{"jitter", &rtc::RemoteVideoStats::jitter},
                 Field{"codec_elapse_per_frame", &rtc::RemoteVideoStats::codec_elapse_per_frame}};
};

template <>
struct Fields<rtc::RemoteStreamStats> {
  static constexpr auto kFields = std::tuple{Field{"uid", &rtc::RemoteStreamStats::uid},
                                             Field{"audio_stats", &rtc::RemoteStreamStats::audio_stats},
                                             Field{"video_stats", &rtc::RemoteStreamStats::video_stats},
                                             Field{"remote_tx_quality", &rtc::RemoteStreamStats::remote_tx_quality},
                                             Field{"remote_rx_quality", &rtc::RemoteStreamStats::remote_rx_quality},
                                             Field{"is_screen", &rtc::RemoteStreamStats::is_screen}};
};

template <>
struct Fields<rtc::NetworkQualityStats> {
  static constexpr auto kFields = std::tuple{Field{"uid", &rtc::NetworkQualityStats::uid},
                                             Field{"fraction_lost", &rtc::NetworkQualityStats::fraction_lost},
                                             Field{"rtt", &rtc::NetworkQualityStats::rtt},
                                             Field{"rx_quality", &rtc::NetworkQualityStats::rx_quality},
                                             Field{"total_bandwidth", &rtc::NetworkQualityStats::total_bandwidth},
                                             Field{"tx_quality", &rtc::NetworkQualityStats::tx_quality}};
};

template <>
struct Fields<rtc::SubscribeConfig> {
  static constexpr auto kFields = std::tuple{Field{"is_screen", &rtc::SubscribeConfig::is_screen},
                                             Field{"sub_video", &rtc::SubscribeConfig::sub_video},
                                             Field{"sub_audio", &rtc::SubscribeConfig::sub_audio},
                                             Field{"video_index", &rtc::SubscribeConfig::video_index},
                                             Field{"priority", &rtc::SubscribeConfig::priority},
                                             Field{"svc_layer", &rtc::SubscribeConfig::svc_layer},
                                             Field{"framerate", &rtc::SubscribeConfig::framerate},
                                             Field{"sub_width", &rtc::SubscribeConfig::sub_width},
                                             Field{"sub_height", &rtc::SubscribeConfig::sub_height},
                                             Field{"sub_video_index", &rtc::SubscribeConfig::sub_video_index}};
};

template <>
struct Fields<rtc::ForwardStreamStateInfo> {
  static constexpr auto kFields = std::tuple{Field{"state", &rtc::ForwardStreamStateInfo::state},
                                             Field{"error", &rtc::ForwardStreamStateInfo::error},
                                             Field{"room_id", &rtc::ForwardStreamStateInfo::room_id}};
};

template <>
struct Fields<rtc::ForwardStreamEventInfo> {
  static constexpr auto kFields = std::tuple{Field{"room_id", &rtc::ForwardStreamEventInfo::room_id},
                                             Field{"event", &rtc::ForwardStreamEventInfo::event}};
};

template <>
struct Fields<rtc::SubtitleMessage> {
  static constexpr auto kFields = std::tuple{
      Field{"user_id", &rtc::SubtitleMessage::user_id},   Field{"text", &rtc::SubtitleMessage::text},
      Field{"language", &rtc::SubtitleMessage::language}, Field{"mode", &rtc::SubtitleMessage::mode},
      Field{"sequence", &rtc::SubtitleMessage::sequence}, Field{"definite", &rtc::SubtitleMessage::definite}};
};

}  // namespace corvane::scripted
