// Mixes and pushes that the service makes of a room's streams. `taskId` is chosen by the caller, up to 126 bytes;
// starting a running task answers -3.

/// <reference types="node" />

import type { AudioFrame } from './audio';
import type { Open, Result, StreamIndex, TypedArray } from './common';

/**
 * Who mixes.
 * - `0` the service
 * - `1` this client
 */
export type StreamMixType = 0 | 1;

/**
 * How a picture fits its region.
 * - `1` fills the region, cropped
 * - `2` whole picture, with bars
 * - `3` stretched
 */
export type MixRenderMode = 1 | 2 | 3;

/**
 * Which media take part.
 * - `0` sound and video
 * - `1` sound
 * - `2` video
 */
export type MixMediaType = 0 | 1 | 2;

/**
 * What a region shows.
 * - `0` a stream
 * - `1` an image
 */
export type MixRegionType = 0 | 1;

/**
 * - `0` AAC-LC
 * - `1` HE-AAC v1
 * - `2` HE-AAC v2
 */
export type MixAudioProfile = 0 | 1 | 2;

/** - `0` AAC */
export type MixAudioCodec = 0;

/** - `0` H.264 - `1` H.265 */
export type MixVideoCodec = 0 | 1;

/** Size of an image given as bytes, in pixels. */
export interface MixImageParam {
  image_width: number;
  image_height: number;
}

/** Where a user is heard from in a spatial mix. */
export interface MixSpatialPosition {
  x: number;
  y: number;
  z: number;
}

export interface TranscoderAudioParam {
  /** Samples a second. */
  i32_sample_rate: number;
  /** 1 or 2. */
  i32_channel_num: number;
  /** kbit/s. */
  i32_bitrate_kbps: number;
  audio_codec_profile: MixAudioProfile;
  audio_codec_type: MixAudioCodec;
}

export interface TranscoderVideoParam {
  /** Pixels. */
  i32_width: number;
  /** Pixels. */
  i32_height: number;
  /** Frames a second. */
  i32_fps: number;
  /** Seconds between key frames. */
  i32_gop: number;
  /** kbit/s. */
  i32_bitrate_kbps: number;
  video_codec_type: MixVideoCodec;
  /** Allows frames that refer to later ones. Spelled so. */
  bFrame: boolean;
}

/** One picture on the canvas; places and sizes are shares of the canvas, 0 to 1. All keys are required. */
export interface TranscoderRegionBase {
  /** The user shown. */
  region_id: string;
  room_id: string;
  x: number;
  y: number;
  width: number;
  height: number;
  /** 0 to 1. */
  alpha: number;
  /** Share of the canvas width. */
  corner_radius: number;
  /** 0 to 100, the largest in front. */
  i32_z_order: number;
  local_user: boolean;
  screen_stream: boolean;
  content_control: MixMediaType;
  render_mode: MixRenderMode;
  spatial_position: MixSpatialPosition;
  apply_spatial_audio: boolean;
}

export interface TranscoderStreamRegion extends TranscoderRegionBase {
  type: 0;
}

export interface TranscoderImageRegion extends TranscoderRegionBase {
  type: 1;
  /** RGBA pixels. */
  data: TypedArray;
  data_param: MixImageParam;
}

/** A stream or an image, told apart by `type`. */
export type TranscoderLayoutRegion = TranscoderStreamRegion | TranscoderImageRegion;

/** All keys are required: one that is missing counts as 0, false or "", and the call throws after it was made. */
export interface LiveTranscodingParam {
  room_id: string;
  /** The user who pushes the mix. */
  user_id: string;
  /** RTMP address. */
  uri: string;
  app_data: string;
  expected_mix_type: StreamMixType;
  /** "#RRGGBB" */
  background_color: string;
  audio_param: TranscoderAudioParam;
  video_param: TranscoderVideoParam;
  layout_regions: TranscoderLayoutRegion[];
}

export interface MixedStreamAudioConfig {
  /** Samples a second. */
  sample_rate: number;
  /** 1 or 2. */
  channels: number;
  /** kbit/s. */
  bitrate: number;
  audio_profile: MixAudioProfile;
  audio_codec: MixAudioCodec;
}

export interface MixedStreamVideoConfig {
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Frames a second. */
  fps: number;
  /** Seconds between key frames. */
  gop: number;
  /** kbit/s. */
  bitrate: number;
  video_codec: MixVideoCodec;
  /** Allows frames that refer to later ones. */
  enable_bframe: boolean;
}

/** For mixes made by this client. */
export interface MixedStreamClientMixConfig {
  use_audio_mixer: boolean;
  /** Pixel format of the mixed frames handed out: 1 I420, 5 RGBA, 6 ARGB; 0 for any. */
  video_format: 0 | 1 | 5 | 6;
}

/** What the service adds to the mix. */
export interface MixedStreamServerControlConfig {
  enable_volume_indication: boolean;
  /** Seconds, 0.3 and above. */
  volume_indication_interval: number;
  /** 0 to 255; louder users count as talking. */
  talk_volume: number;
  is_add_volume_value: boolean;
  /** - `0` everything - `1` volumes only */
  sei_content_mode: 0 | 1;
  /** Payload type number of the messages. */
  sei_payload_type: 5 | 100;
  /** With payload type 5. */
  sei_payload_uuid?: string;
  media_type: MixMediaType;
  /** - `0` pushes when a user publishes - `1` at once */
  push_stream_mode: 0 | 1;
}

/** One picture on the canvas, in pixels. What is left out keeps the value named. */
export interface MixedStreamLayoutRegionConfig {
  /** The user shown; "". */
  region_id?: string;
  /** "" */
  room_id?: string;
  /** Shown while there is no video; "". */
  alternate_image_url?: string;
  /** 0 */
  location_x?: number;
  /** 0 */
  location_y?: number;
  /** 360 */
  width?: number;
  /** 640 */
  height?: number;
  /** 0 to 1; 1. */
  alpha?: number;
  /** Share of the canvas width; 0. */
  corner_radius?: number;
  /** 0 to 100, the largest in front; 0. */
  z_order?: number;
  /** False. */
  is_local_user?: boolean;
  /** 0 */
  stream_type?: StreamIndex;
  /** 0 */
  media_type?: MixMediaType;
  /** 1 */
  render_mode?: MixRenderMode;
  /** 0 */
  region_content_type?: MixRegionType;
  /** - `0` as the picture before it - `1` as `render_mode` says; 0 */
  alternate_image_fill_mode?: 0 | 1;
  /** RGBA pixels; none. */
  image_water_mark?: TypedArray;
  image_water_mark_param?: MixImageParam;
  /** 0, 0, 0 */
  spatial_position?: Partial<MixSpatialPosition>;
  /** True. */
  apply_spatial_audio?: boolean;
}

/** Keys that are not optional count as 0, false or "" when missing, and the call throws after it was made. */
export interface MixedStreamConfig {
  is_support_client_push_stream?: boolean;
  room_id: string;
  user_id: string;
  /** RTMP address. */
  push_url: string;
  user_config_extra_info: string;
  expected_mix_type: StreamMixType;
  /** "#RRGGBB" */
  background_color: string;
  audio_config: MixedStreamAudioConfig;
  video_config: MixedStreamVideoConfig;
  client_mix_config: MixedStreamClientMixConfig;
  server_control_config?: MixedStreamServerControlConfig;
  background_image_url?: string;
  layout_regions: MixedStreamLayoutRegionConfig[];
}

/** One stream pushed as it is. All keys are required. */
export interface PushSingleStreamParam {
  room_id: string;
  /** RTMP address. */
  uri: string;
  user_id: string;
  is_screen_stream: boolean;
}

export interface StreamMixingMethods {
  /** Reports `onStreamMixingEvent`. */
  startLiveTranscoding(taskId: string, param: LiveTranscodingParam): Result;
  stopLiveTranscoding(taskId: string): Result;
  updateLiveTranscoding(taskId: string, param: LiveTranscodingParam): Result;
  /** Reports `onMixingEvent`. */
  startPushMixedStreamToCDN(taskId: string, config: MixedStreamConfig): Result;
  updatePushMixedStreamToCDN(taskId: string, config: MixedStreamConfig): Result;
  /** Reports `onStreamPushEvent`. */
  startPushSingleStreamToCDN(taskId: string, param: PushSingleStreamParam): Result;
  /** Mixed and single alike. */
  stopPushStreamToCDN(taskId: string): Result;
}

/**
 * What happened to a mixing task.
 * - `1`, `2`, `3` start: asked for, done, failed
 * - `4`, `5`, `6` update: asked for, done, failed
 * - `7`, `8`, `9` stop: asked for, done, failed
 * - `10` first frame of sound
 * - `11` first frame of video
 * - `12` the service took over from this client, or the other way round
 */
export type StreamMixingEvent = Open<1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 | 9 | 10 | 11 | 12>;

/**
 * - `0` none
 * - `1` invalid parameter
 * - `2` wrong state
 * - `3` not found
 * - `4` not supported
 * - `5` the service failed
 * - `6` this client failed
 * - `7` the address does not take the stream
 * - `8` timed out
 */
export type StreamMixingError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8>;

/**
 * What happened to the pushing of one single stream.
 * - `1`, `2`, `3` start: asked for, done, failed
 * - `4`, `5`, `6` stop: asked for, done, failed
 * - `7` interrupted
 */
export type SingleStreamPushEvent = Open<1 | 2 | 3 | 4 | 5 | 6 | 7>;

/** Data that belongs to one moment of a mixed stream. */
export interface MixingDataFrame {
  /** - `0` messages of the video */
  frame_type: Open<0>;
  /** A copy, the application's own. */
  u8_data: Buffer;
  /** Microseconds on the engine's clock. */
  u64_ts_us: number;
}

/** What a mixing task reports. */
export interface MixingTaskEvent {
  event: StreamMixingEvent;
  task_id: string;
  error: StreamMixingError;
  mix_type: Open<StreamMixType>;
}

/** Video frames of a mix arrive in batches, as "onMixingVideoFrame". */
export interface StreamMixingEvents {
  /** Of tasks started with `startLiveTranscoding`. */
  onStreamMixingEvent: MixingTaskEvent;
  /** Of tasks started with `startPushMixedStreamToCDN`. */
  onMixingEvent: MixingTaskEvent;
  onMixingAudioFrame: { task_id: string; audio_frame: AudioFrame };
  onMixingDataFrame: { task_id: string; data_frame: MixingDataFrame };
  onStreamPushEvent: { event: SingleStreamPushEvent; task_id: string; error: StreamMixingError };
}
