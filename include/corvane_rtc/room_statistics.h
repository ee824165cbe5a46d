// Statistics and other records in the reports of a room.
//
// All statistics cover the time since the report before, unless a field says otherwise. Loss rates run from
// 0 to 1, qualities are NetworkQuality (connection_events.h), codecs VideoCodecType (recording_events.h), bitrates are
// in kbit/s, delays, round trips and jitter in milliseconds.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// The whole room, both directions.
struct RoomStats {
  double tx_lostrate;
  double rx_lostrate;
  int32_t rtt;
  int32_t duration;  ///< seconds since joining
  int64_t tx_bytes;  ///< since joining
  int64_t rx_bytes;  ///< since joining
  int32_t tx_kbitrate;
  int32_t rx_kbitrate;
  int32_t rx_audio_kbitrate;
  int32_t tx_audio_kbitrate;
  int32_t rx_video_kbitrate;
  int32_t tx_video_kbitrate;
  int32_t rx_screen_kbitrate;
  int32_t tx_screen_kbitrate;
  int32_t user_count;      ///< visible users, the local one included
  double cpu_app_usage;    ///< share of all processors used by the application, 0 to 1
  double cpu_total_usage;  ///< share of all processors used by everything, 0 to 1
  int32_t tx_jitter;
  int32_t rx_jitter;
  int32_t tx_cellular_kbitrate;  ///< share of tx_kbitrate over a mobile network
  int32_t rx_cellular_kbitrate;  ///< share of rx_kbitrate over a mobile network
};

/// Sound of one local stream.
struct LocalAudioStats {
  double audio_loss_rate;
  int32_t send_kbitrate;
  int32_t record_sample_rate;  ///< samples a second
  int32_t stats_interval;      ///< milliseconds this report covers
  int32_t rtt;
  int32_t num_channels;
  int32_t sent_sample_rate;  ///< samples a second
  int32_t jitter;
};

/// Video of one local stream. Rates in frames a second, sizes in pixels.
struct LocalVideoStats {
  int32_t sent_kbitrate;
  int32_t input_frame_rate;
  int32_t sent_frame_rate;
  int32_t encoder_output_frame_rate;
  int32_t renderer_output_frame_rate;
  int32_t stats_interval;  ///< milliseconds this report covers
  double video_loss_rate;
  int32_t rtt;
  int32_t encoded_bitrate;  ///< kbit/s out of the encoder
  int32_t encoded_frame_width;
  int32_t encoded_frame_height;
  int32_t encoded_frame_count;
  int32_t codec_type;  ///< VideoCodecType
  bool is_screen;
  int32_t jitter;
  int32_t codec_elapse_per_frame;  ///< milliseconds to encode one frame
};

/// One of the local user's two streams.
struct LocalStreamStats {
  LocalAudioStats audio_stats;
  LocalVideoStats video_stats;
  int32_t local_tx_quality;
  int32_t local_rx_quality;
  bool is_screen;
};

/// Sound of one remote stream.
struct RemoteAudioStats {
  double audio_loss_rate;
  int32_t received_kbitrate;
  int32_t stall_count;
  int32_t stall_duration;       ///< milliseconds
  int32_t e2e_delay;            ///< from microphone to speaker
  int32_t playout_sample_rate;  ///< samples a second
  int32_t stats_interval;       ///< milliseconds this report covers
  int32_t rtt;                  ///< to the service
  int32_t total_rtt;            ///< to the other user
  int32_t quality;
  int32_t jitter_buffer_delay;
  int32_t num_channels;
  int32_t received_sample_rate;  ///< samples a second
  int32_t frozen_rate;           ///< percent of the interval that was stalled
  int32_t concealed_samples;     ///< samples made up for lost ones
  int32_t concealment_event;     ///< times that samples were made up
  int32_t dec_sample_rate;       ///< samples a second
  int32_t dec_duration;          ///< milliseconds of sound decoded
  int32_t jitter;
};

/// Video of one remote stream. Rates in frames a second, sizes in pixels.
struct RemoteVideoStats {
  int32_t width;
  int32_t height;
  double video_loss_rate;
  int32_t received_kbitrate;
  int32_t decoder_output_frame_rate;
  int32_t renderer_output_frame_rate;
  int32_t stall_count;
  int32_t stall_duration;  ///< milliseconds
  int32_t e2e_delay;       ///< from camera to display
  bool is_screen;
  int32_t stats_interval;  ///< milliseconds this report covers
  int32_t rtt;             ///< to the service
  int32_t frozen_rate;     ///< percent of the interval that was stalled
  int32_t codec_type;      ///< VideoCodecType
  int32_t video_index;     ///< layer received, 0 the largest
  int32_t jitter;
  int32_t codec_elapse_per_frame;  ///< milliseconds to decode one frame
};

/// One of a remote user's two streams.
struct RemoteStreamStats {
  const char* uid;
  RemoteAudioStats audio_stats;
  RemoteVideoStats video_stats;
  int32_t remote_tx_quality;
  int32_t remote_rx_quality;
  bool is_screen;
};

/// One user's network.
struct NetworkQualityStats {
  const char* uid;
  double fraction_lost;  ///< 0 to 1
  int32_t rtt;
  int32_t rx_quality;
  int32_t total_bandwidth;  ///< kbit/s sent and received
  int32_t tx_quality;
};

/// What is received of a stream.
struct SubscribeConfig {
  bool is_screen;
  bool sub_video;
  bool sub_audio;
  int32_t video_index;      ///< layer asked for, 0 the largest
  int32_t priority;         ///< RemoteUserPriority
  int32_t svc_layer;        ///< layer in time, 0 for all frames
  int32_t framerate;        ///< frames a second asked for; 0 for any
  int32_t sub_width;        ///< pixels asked for; 0 for any
  int32_t sub_height;       ///< pixels asked for; 0 for any
  int32_t sub_video_index;  ///< layer received, 0 the largest; -1 for none
};

enum ForwardStreamState : int32_t {
  kForwardStreamStateIdle = 0,
  kForwardStreamStateSuccess = 1,
  kForwardStreamStateFailure = 2,
};

enum ForwardStreamError : int32_t {
  kForwardStreamErrorOk = 0,
  kForwardStreamErrorInvalidArgument = 1,
  kForwardStreamErrorInvalidToken = 2,
  kForwardStreamErrorRefused = 3,
  kForwardStreamErrorRemoteKicked = 4,  ///< the other room put the user out
  kForwardStreamErrorServiceLost = 5,
};

/// How forwarding to one room stands.
struct ForwardStreamStateInfo {
  int32_t state;  ///< ForwardStreamState
  int32_t error;  ///< ForwardStreamError
  const char* room_id;
};

enum ForwardStreamEvent : int32_t {
  kForwardStreamEventDisconnected = 0,
  kForwardStreamEventConnected = 1,
  kForwardStreamEventInterrupted = 2,
  kForwardStreamEventRoomUpdated = 3,
};

/// What happened to the forwarding to one room.
struct ForwardStreamEventInfo {
  const char* room_id;
  int32_t event;  ///< ForwardStreamEvent
};

/// Something that was said.
struct SubtitleMessage {
  const char* user_id;
  const char* text;
  const char* language;  ///< language tag of the text, such as "en"
  int32_t mode;          ///< SubtitleMode
  int32_t sequence;      ///< counts the messages of one user, from 1
  bool definite;         ///< false while the sentence may still change
};

}  // namespace corvane::rtc
