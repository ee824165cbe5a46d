// Statistics of a room. They cover the time since the report before, unless a field says otherwise. Loss rates run from
// 0 to 1, bitrates are in kbit/s, delays, round trips and jitter in milliseconds.

import type { NetworkQuality } from './network';
import type { VideoCodecType } from './recording';

/** The whole room, both directions. */
export interface RoomStats {
  tx_lostrate: number;
  rx_lostrate: number;
  rtt: number;
  /** Seconds since joining. */
  duration: number;
  /** Since joining. */
  tx_bytes: number;
  /** Since joining. */
  rx_bytes: number;
  tx_kbitrate: number;
  rx_kbitrate: number;
  rx_audio_kbitrate: number;
  tx_audio_kbitrate: number;
  rx_video_kbitrate: number;
  tx_video_kbitrate: number;
  rx_screen_kbitrate: number;
  tx_screen_kbitrate: number;
  /** Visible users, the local one included. */
  user_count: number;
  /** Share of all processors used by the application, 0 to 1. */
  cpu_app_usage: number;
  /** Share of all processors used by everything, 0 to 1. */
  cpu_total_usage: number;
  tx_jitter: number;
  rx_jitter: number;
  /** Share of `tx_kbitrate` over a mobile network. */
  tx_cellular_kbitrate: number;
  /** Share of `rx_kbitrate` over a mobile network. */
  rx_cellular_kbitrate: number;
}

/** Sound of one local stream. */
export interface LocalAudioStats {
  audio_loss_rate: number;
  send_kbitrate: number;
  /** Samples a second. */
  record_sample_rate: number;
  /** Milliseconds that this report covers. */
  stats_interval: number;
  rtt: number;
  num_channels: number;
  /** Samples a second. */
  sent_sample_rate: number;
  jitter: number;
}

/** Video of one local stream. Rates in frames a second, sizes in pixels. */
export interface LocalVideoStats {
  sent_kbitrate: number;
  input_frame_rate: number;
  sent_frame_rate: number;
  encoder_output_frame_rate: number;
  renderer_output_frame_rate: number;
  /** Milliseconds that this report covers. */
  stats_interval: number;
  video_loss_rate: number;
  rtt: number;
  /** kbit/s out of the encoder. */
  encoded_bitrate: number;
  encoded_frame_width: number;
  encoded_frame_height: number;
  encoded_frame_count: number;
  codec_type: VideoCodecType;
  is_screen: boolean;
  /** Whether there was any: a boolean here, a number in the remote statistics. */
  jitter: boolean;
  /** Whether encoding took a millisecond or more: a boolean here, a number in the remote statistics. */
  codec_elapse_per_frame: boolean;
}

/** One of the local user's two streams. */
export interface LocalStreamStats {
  audio_stats: LocalAudioStats;
  video_stats: LocalVideoStats;
  local_tx_quality: NetworkQuality;
  local_rx_quality: NetworkQuality;
  is_screen: boolean;
}

/** Sound of one remote stream. */
export interface RemoteAudioStats {
  audio_loss_rate: number;
  received_kbitrate: number;
  stall_count: number;
  /** Milliseconds. */
  stall_duration: number;
  /** From microphone to speaker. */
  e2e_delay: number;
  /** Samples a second. */
  playout_sample_rate: number;
  /** Milliseconds that this report covers. */
  stats_interval: number;
  /** To the service. */
  rtt: number;
  /** To the other user. */
  total_rtt: number;
  quality: NetworkQuality;
  jitter_buffer_delay: number;
  num_channels: number;
  /** Samples a second. */
  received_sample_rate: number;
  /** Percent of the interval that was stalled. */
  frozen_rate: number;
  /** Samples made up for lost ones. */
  concealed_samples: number;
  /** Times that samples were made up. */
  concealment_event: number;
  /** Samples a second. */
  dec_sample_rate: number;
  /** Milliseconds of sound decoded. */
  dec_duration: number;
  jitter: number;
}

/** Video of one remote stream. Rates in frames a second, sizes in pixels. */
export interface RemoteVideoStats {
  width: number;
  height: number;
  video_loss_rate: number;
  received_kbitrate: number;
  decoder_output_frame_rate: number;
  renderer_output_frame_rate: number;
  stall_count: number;
  /** Milliseconds. */
  stall_duration: number;
  /** From camera to display. */
  e2e_delay: number;
  is_screen: boolean;
  /** Milliseconds that this report covers. */
  stats_interval: number;
  /** To the service. */
  rtt: number;
  /** Percent of the interval that was stalled. */
  frozen_rate: number;
  codec_type: VideoCodecType;
  /** Layer received, 0 the largest. */
  video_index: number;
  jitter: number;
  /** Milliseconds to decode one frame. */
  codec_elapse_per_frame: number;
}

/** One of a remote user's two streams. */
export interface RemoteStreamStats {
  uid: string;
  audio_stats: RemoteAudioStats;
  video_stats: RemoteVideoStats;
  remote_tx_quality: NetworkQuality;
  remote_rx_quality: NetworkQuality;
  is_screen: boolean;
}

/** One user's network. */
export interface NetworkQualityStats {
  uid: string;
  /** 0 to 1. */
  fraction_lost: number;
  rtt: number;
  rx_quality: NetworkQuality;
  /** kbit/s sent and received. */
  total_bandwidth: number;
  tx_quality: NetworkQuality;
}
