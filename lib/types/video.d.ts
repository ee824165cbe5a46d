// Video capture, encoding and zoom, and what is reported of local and remote streams.

import type { Open, Result, StreamIndex, StreamKey, TypedArray, VideoFrameInfo } from './common';

/**
 * What the encoder gives up last.
 * - `0` size and frame rate are kept
 * - `1` frame rate: fluency first
 * - `2` quality: sharpness first
 * - `3` balance
 */
export type EncoderPreference = 0 | 1 | 2 | 3;

/** One encoded layer of the camera or the screen. All keys are required. */
export interface VideoEncoderConfig {
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Frames a second. */
  frame_rate: number;
  /** kbit/s; -1 chooses by size and frame rate, 0 sends nothing. */
  max_bitrate: number;
  /** kbit/s; 0 for no lower bound. */
  min_bitrate: number;
  encoder_preference: EncoderPreference;
}

/**
 * - `0` automatic: follows the largest encoded layer
 * - `1` manual: the record's size and frame rate
 * - `2` automatic, performance: the smallest size that serves the largest layer
 */
export type CapturePreference = 0 | 1 | 2;

/** How the camera is opened. All keys are required. */
export interface VideoCaptureConfig {
  capture_preference: CapturePreference;
  /** Frames a second. */
  frame_rate: number;
  /** Pixels. */
  height: number;
  /** Pixels. */
  width: number;
}

/**
 * Bit mask of what is mirrored.
 * - `0` nothing
 * - `1` what local sinks receive
 * - `3` also what is sent
 */
export type MirrorType = 0 | 1 | 3;

/**
 * - `0` off
 * - `1` on
 * - `2` automatic
 */
export type LowLightMode = 0 | 1 | 2;

/**
 * - `0` external: `pushExternalVideoFrame`
 * - `1` internal: camera or screen
 */
export type VideoSourceType = 0 | 1;

/**
 * Where the transparency of a picture travels.
 * - `0` above the picture, in a frame of twice the height
 */
export type AlphaLayout = 0;

/** - `0` off - `1` on */
export type SuperResolutionMode = 0 | 1;

/**
 * Which value `setVideoDigitalZoomConfig` sets.
 * - `0` how much one step zooms by, 0 to 7 (0.5: from 1x to 1.5x)
 * - `1` share of the picture that one step moves by, 0 to 0.5
 */
export type ZoomConfigType = 0 | 1;

/**
 * - `0` back to the whole picture
 * - `1` left
 * - `2` right
 * - `3` up
 * - `4` down
 * - `5` out
 * - `6` in
 */
export type ZoomDirectionType = 0 | 1 | 2 | 3 | 4 | 5 | 6;

/** How many degrees clockwise. */
export type VideoRotation = 0 | 90 | 180 | 270;

/**
 * - `1` I420: three planes Y, U, V; U and V have half the width and height, rounded up
 * - `5` RGBA: one plane, bytes R, G, B, A
 * - `6` ARGB: one plane, 0xAARRGGBB as little-endian 32-bit values
 */
export type VideoPixelFormat = 1 | 5 | 6;

/**
 * - `0` unknown
 * - `1` BT.601 limited range
 * - `2` BT.601 full range
 * - `3` BT.709 limited range
 * - `4` BT.709 full range
 */
export type ColorSpace = 0 | 1 | 2 | 3 | 4;

/** A picture that the application pushes. Planes are copied. All keys are required. */
export interface ExternalVideoFrame {
  pixel_fmt: VideoPixelFormat;
  color_space: ColorSpace;
  /** Milliseconds. */
  timestamp_ms: number;
  /** The planes, at most four. */
  data: TypedArray[];
  /** Bytes from row to row in each plane, at most four. */
  linesize: number[];
  /** Bytes that travel with the frame; empty for none. */
  extra_data: TypedArray;
  /** Bytes that travel with the frame; empty for none. */
  supplementary_info: TypedArray;
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  rotation: VideoRotation;
}

export interface VideoMethods {
  startVideoCapture(): Result;
  stopVideoCapture(): Result;
  setVideoCaptureConfig(config: VideoCaptureConfig): Result;
  setVideoCaptureRotation(rotation: VideoRotation): Result;
  setLocalVideoMirrorType(mirrorType: MirrorType): Result;
  /** @param filePath image in place of a camera that is off; "" for none */
  setDummyCaptureImagePath(filePath: string): Result;
  setLowLightAdjusted(mode: LowLightMode): Result;

  /** @param channelSolutions one layer for each record, best first; 1 to 4 */
  setVideoEncoderConfig(channelSolutions: VideoEncoderConfig[]): Result;
  /** Bound of layers that the engine chooses by itself. */
  setMaxVideoEncoderConfig(maxSolution: VideoEncoderConfig): Result;
  setScreenVideoEncoderConfig(screenSolution: VideoEncoderConfig): Result;
  /** Several layers at once. */
  enableSimulcastMode(enable: boolean): Result;
  enableAlphaChannelVideoEncode(streamIndex: StreamIndex, alphaLayout: AlphaLayout): Result;
  disableAlphaChannelVideoEncode(streamIndex: StreamIndex): Result;
  /** Reports `onRemoteVideoSuperResolutionModeChanged`. */
  setRemoteVideoSuperResolution(streamKey: StreamKey, mode: SuperResolutionMode): Result;

  /** An external source stops the camera, which has to be started again after it. */
  setVideoSourceType(streamIndex: StreamIndex, type: VideoSourceType): Result;
  /** Picture of an external source; refused without one. */
  pushExternalVideoFrame(frame: ExternalVideoFrame): Result;

  /** @param size see {@link ZoomConfigType} */
  setVideoDigitalZoomConfig(type: ZoomConfigType, size: number): Result;
  /** One step. */
  setVideoDigitalZoomControl(direction: ZoomDirectionType): Result;
  /** Steps until stopped. */
  startVideoDigitalZoomControl(direction: ZoomDirectionType): Result;
  stopVideoDigitalZoomControl(): Result;
}

/**
 * - `0` stopped
 * - `1` recording
 * - `2` encoding
 * - `3` failed
 * - `4` muted
 * - `5` unmuted
 */
export type LocalAudioStreamState = Open<0 | 1 | 2 | 3 | 4 | 5>;

/**
 * - `0` none
 * - `1` failure
 * - `2` no permission
 * - `3` device busy
 * - `4` recording failed
 * - `5` encoding failed
 * - `6` no device
 */
export type LocalAudioStreamError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6>;

/**
 * - `0` stopped
 * - `1` recording
 * - `2` encoding
 * - `3` failed
 */
export type LocalVideoStreamState = Open<0 | 1 | 2 | 3>;

/**
 * - `0` none
 * - `1` failure
 * - `2` no permission
 * - `3` device busy
 * - `4` device not found
 * - `5` capture failed
 * - `6` encoding failed
 * - `7` device disconnected
 */
export type LocalVideoStreamError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7>;

/**
 * States of a remote stream's sound or video.
 * - `0` stopped
 * - `1` starting: the first packet has arrived
 * - `2` decoding
 * - `3` frozen
 * - `4` failed
 */
export type RemoteMediaState = Open<0 | 1 | 2 | 3 | 4>;

/**
 * - `0` internal
 * - `1` network congestion
 * - `2` network recovery
 * - `3` muted here
 * - `4` unmuted here
 * - `5` muted by the other user
 * - `6` unmuted by the other user
 * - `7` the other user is gone
 */
export type RemoteMediaStateChangeReason = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7>;

/**
 * - `0` sending
 * - `1` sent
 * - `2` the stream ended before its first frame
 */
export type FirstFrameSendState = Open<0 | 1 | 2>;

/**
 * - `0` playing
 * - `1` played
 * - `2` the stream ended before its first frame
 */
export type FirstFramePlayState = Open<0 | 1 | 2>;

/** A user as named in reports of first frames. */
export interface RtcUser {
  user_id: string;
  /** The extra information that the user joined with. */
  meta_data: string;
}

/**
 * Why the video that a subscriber receives was changed.
 * - `0` lowered: the subscriber's network
 * - `1` lowered: the subscriber's machine
 * - `2` raised again: the subscriber's network
 * - `3` raised again: the subscriber's machine
 * - `4` the publisher gave the layer up
 * - `5` the publisher sends the layer again
 */
export type SimulcastFallbackReason = Open<0 | 1 | 2 | 3 | 4 | 5>;

/** One change of the layer in which a remote user's video arrives. */
export interface RemoteStreamSwitch {
  uid: string;
  /** The user's screen rather than the camera. */
  is_screen: boolean;
  /** Layer, 0 the largest; -1 for none. */
  before_video_index: number;
  /** Layer, 0 the largest; -1 for none. */
  after_video_index: number;
  /** Whether video arrived before. */
  before_enable: boolean;
  /** Whether video arrives now. */
  after_enable: boolean;
  reason: SimulcastFallbackReason;
}

/**
 * - `0` asked for
 * - `1` the picture is too large
 * - `2` the machine is overloaded
 * - `3` the machine cannot do it
 * - `4` another setting excludes it, or no longer does
 * - `5` the stream is gone
 */
export type SuperResolutionChangeReason = Open<0 | 1 | 2 | 3 | 4 | 5>;

export interface LocalStreamEvents {
  onLocalAudioStateChanged: { state: LocalAudioStreamState; error: LocalAudioStreamError };
  /** The key `streamIndex` is spelled so here only. */
  onLocalVideoStateChanged: { streamIndex: StreamIndex; state: LocalVideoStreamState; error: LocalVideoStreamError };
  onFirstLocalAudioFrame: { index: StreamIndex };
  onFirstLocalVideoFrameCaptured: { index: StreamIndex; info: VideoFrameInfo };
  /**
   * Also tells which buffer the frames of a local sink want: answer with `setLocalVideoBuffer` of this width and
   * height. It comes for every frame until then.
   */
  onLocalVideoSizeChanged: { index: StreamIndex; info: VideoFrameInfo };
}

export interface RemoteStreamEvents {
  onUserStartVideoCapture: { user_id: string; room_id: string };
  onUserStopVideoCapture: { user_id: string; room_id: string };
  onUserStartAudioCapture: { user_id: string; room_id: string };
  onUserStopAudioCapture: { user_id: string; room_id: string };
  onRemoteAudioStateChanged: { key: StreamKey; state: RemoteMediaState; reason: RemoteMediaStateChangeReason };
  onRemoteVideoStateChanged: { key: StreamKey; state: RemoteMediaState; reason: RemoteMediaStateChangeReason };
  onFirstRemoteAudioFrame: { room_id: string; stream_index: StreamIndex; user_id: string };
  onFirstRemoteVideoFrameDecoded: { key: StreamKey; info: VideoFrameInfo };
  onFirstRemoteVideoFrameRendered: { key: StreamKey; info: VideoFrameInfo };
  /**
   * Also tells which buffer the frames of a remote sink want: answer with `setRemoteVideoBuffer` of this width and
   * height. It comes for every frame until then.
   */
  onRemoteVideoSizeChanged: { key: StreamKey; info: VideoFrameInfo };
  onRemoteVideoSuperResolutionModeChanged: {
    stream_key: StreamKey;
    mode: Open<SuperResolutionMode>;
    reason: SuperResolutionChangeReason;
  };
  onSimulcastSubscribeFallback: RemoteStreamSwitch;
}

/** First frames: the local user's as sent, the others' as played. */
export interface FirstFrameEvents {
  onAudioFrameSendStateChanged: { user: RtcUser; state: FirstFrameSendState; room_id: string };
  onVideoFrameSendStateChanged: { user: RtcUser; state: FirstFrameSendState; room_id: string };
  onScreenVideoFrameSendStateChanged: { user: RtcUser; state: FirstFrameSendState; room_id: string };
  onScreenAudioFrameSendStateChanged: { room_id: string; user: RtcUser; state: FirstFrameSendState };
  onAudioFramePlayStateChanged: { user: RtcUser; state: FirstFramePlayState; room_id: string };
  onVideoFramePlayStateChanged: { user: RtcUser; state: FirstFramePlayState; room_id: string };
  onScreenVideoFramePlayStateChanged: { user: RtcUser; state: FirstFramePlayState; room_id: string };
  onScreenAudioFramePlayStateChanged: { room_id: string; user: RtcUser; state: FirstFramePlayState };
}
