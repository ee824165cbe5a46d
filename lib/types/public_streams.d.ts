// Public streams: one picture made of several streams, played by anyone who knows its id.

import type { Open, Result, StreamIndex, TypedArray, VideoFrameInfo } from './common';
import type { SEICountPerFrame } from './messaging';
import type { MixMediaType, MixRenderMode } from './stream_mixing';

export interface PublicStreamAudioParam {
  /** Samples a second. */
  sample_rate: number;
  /** 1 or 2. */
  channel_num: number;
  /** kbit/s. */
  bitrate_kbps: number;
}

export interface PublicStreamVideoParam {
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Frames a second. */
  fps: number;
  /** kbit/s. Spelled so, unlike the audio one. */
  bitrate_kpbs: number;
}

/** The part of a stream's picture that is shown, as shares of its width and height. */
export interface PublicStreamSourceCrop {
  location_x: number;
  location_y: number;
  width_proportion: number;
  height_proportion: number;
}

/** One picture on the canvas; places and sizes are shares of the canvas. What is left out keeps the value named. */
export interface PublicStreamRegion {
  /** "" */
  room_id?: string;
  /** "" */
  user_id?: string;
  /** Shown while there is no video; "". */
  alternate_image_uri?: string;
  /** 0 */
  x?: number;
  /** 0 */
  y?: number;
  /** At most 1; 1. */
  width?: number;
  /** At most 1; 1. */
  height?: number;
  /** 0 to 1; 1. */
  alpha?: number;
  /** 0 to 100, the largest in front; 0. */
  z_order?: number;
  /** 0 */
  stream_type?: StreamIndex;
  /** 0 */
  media_type?: MixMediaType;
  /** 1 */
  render_mode?: MixRenderMode;
  /** The whole picture. */
  source_crop?: Partial<PublicStreamSourceCrop>;
}

/** All keys are required: one that is missing counts as 0 or "", and the call throws after it was made. */
export interface PublicStreamParam {
  /** What is shown while video is missing: - `0` the last frame - `1` the background */
  interpolation_mode: 0 | 1;
  room_id: string;
  background_image_uri: string;
  /** "#RRGGBB" */
  bg_color: string;
  /** 2: as given by the regions. */
  layout_mode: number;
  audio_param: PublicStreamAudioParam;
  video_param: PublicStreamVideoParam;
  layout_regions: PublicStreamRegion[];
}

export interface PublicStreamMethods {
  /** Reports `onPushPublicStreamResult`. */
  startPushPublicStream(publicStreamId: string, param: PublicStreamParam): Result;
  stopPushPublicStream(publicStreamId: string): Result;
  updatePublicStreamParam(publicStreamId: string, param: PublicStreamParam): Result;
  /** Reports `onPlayPublicStreamResult`. */
  startPlayPublicStream(publicStreamId: string): Result;
  stopPlayPublicStream(publicStreamId: string): Result;
  /** @param volume percent, 0 to 400 */
  setPublicStreamAudioPlaybackVolume(publicStreamId: string, volume: number): Result;
  /**
   * Sends data inside the video of the public stream.
   * @param message 1 to 4096 bytes
   * @param repeatCount further frames that carry it, 0 to 30
   */
  sendPublicStreamSEIMessage(
    streamIndex: StreamIndex,
    channelId: number,
    message: TypedArray,
    repeatCount: number,
    mode: SEICountPerFrame,
  ): Result;
}

/**
 * - `0` success
 * - `1` invalid parameter
 * - `2` nobody publishes a stream of this id
 * - `3` timed out
 * - `4` refused
 * - `5` internal error
 */
export type PublicStreamErrorCode = Open<0 | 1 | 2 | 3 | 4 | 5>;

/** - `0` a user - `1` the system */
export type DataMessageSourceType = Open<0 | 1>;

/** Messages reach JavaScript as text, up to their first zero byte. */
export interface PublicStreamEvents {
  onPushPublicStreamResult: { room_id: string; public_stream_id: string; error_code: PublicStreamErrorCode };
  onPlayPublicStreamResult: { public_stream_id: string; error_code: PublicStreamErrorCode };
  onFirstPublicStreamAudioFrame: { public_stream_id: string };
  onFirstPublicStreamVideoFrameDecoded: { public_stream_id: string; info: VideoFrameInfo };
  onPublicStreamSEIMessageReceived: { public_stream_id: string; message: string; source_type: DataMessageSourceType };
  /** `channel_id`: as given to `sendPublicStreamSEIMessage`; `message_length`: bytes that arrived. */
  onPublicStreamSEIMessageReceivedWithChannel: {
    public_stream_id: string;
    channel_id: number;
    message: string;
    message_length: number;
  };
  onPublicStreamDataMessageReceived: { public_stream_id: string; message: string; source_type: DataMessageSourceType };
}
