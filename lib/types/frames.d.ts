// Raw video in JavaScript: sinks, registered buffers and the batches in which frames arrive.

/// <reference types="node" />

import type { Result, StreamIndex, StreamKey } from './common';
import type { VideoRotation } from './video';

/**
 * The format in which a sink's frames are delivered.
 * - `1` I420 planes
 * - `5` RGBA pixels
 */
export type SinkFormat = 1 | 5;

/**
 * Where I420 frames of one local stream go.
 *
 * `plane_y` receives the rows of Y, U and V back to back, with the strides that the frame reports: `width` * `height` *
 * 1.5 bytes for even sizes. A buffer that is too short counts as none. The application keeps it alive while it is
 * registered; frames are written into it right before the batch that names them.
 */
export interface LocalVideoBuffer {
  stream_type: 'onLocalVideoFrame' | 'onLocalScreenFrame';
  /** Bytes in one row of Y, as the size event reports them. 0 with a height of 0 takes the buffer back. */
  width: number;
  /** Rows of Y. */
  height: number;
  plane_y: Uint8Array;
}

/** Where I420 frames of one user's stream go; as {@link LocalVideoBuffer}, sized by `onRemoteVideoSizeChanged`. */
export interface RemoteVideoBuffer {
  user_id: string;
  stream_type: 'onRemoteVideoFrame' | 'onRemoteScreenFrame';
  width: number;
  height: number;
  plane_y: Uint8Array;
}

export interface SinkMethods {
  /** Turns I420 frames upright before they are delivered. They then report a rotation of 0. */
  setVideoSinkApplyRotation(applyRotation: boolean): Result;
  /**
   * Has frames of a local stream delivered. The first frame brings `onLocalVideoSizeChanged`; frames come once
   * `setLocalVideoBuffer` has answered it.
   */
  setLocalVideoSink(streamIndex: StreamIndex, format: SinkFormat): Result;
  unsetLocalVideoSink(streamIndex: StreamIndex): Result;
  /**
   * Has frames of a remote stream delivered. The first frame brings `onRemoteVideoSizeChanged`; frames come once
   * `setRemoteVideoBuffer` has answered it.
   */
  setRemoteVideoSink(streamKey: StreamKey, format: SinkFormat): Result;
  unsetRemoteVideoSink(streamKey: StreamKey): Result;
  /** Has frames of a public stream delivered; they need no registered buffer. */
  setPublicStreamVideoSink(publicStreamId: string, format: SinkFormat): Result;
  unsetPublicStreamVideoSink(publicStreamId: string): Result;
  setLocalVideoBuffer(buffer: LocalVideoBuffer): Result;
  setRemoteVideoBuffer(buffer: RemoteVideoBuffer): Result;
}

/** What every frame tells about itself. */
export interface VideoFrameIdentity {
  /** The room's id, for remote streams; else "". */
  channel_id: string;
  /** The user's id, for remote streams; else "". */
  user_id: string;
  /** The public stream's id, for public streams; else "". */
  public_stream_id: string;
  /** The mixing task's or the public stream's id; else "". */
  task_id: string;
  /** Degrees clockwise to turn the picture upright. */
  rotation: VideoRotation;
}

/** A frame of planes. */
export interface I420VideoFrame extends VideoFrameIdentity {
  format: 1;
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Bytes from row to row of Y: a stride, whatever the name says. */
  plane_size_y: number;
  /** Bytes from row to row of U. */
  plane_size_u: number;
  /** Bytes from row to row of V. */
  plane_size_v: number;
  /** Microseconds, cut to a signed 32-bit number. */
  timestamp: number;
  /** Bytes between the end of Y and the start of U in `plane_y`. */
  offset_y: number;
  /** Bytes between the end of U and the start of V in `plane_y`. */
  offset_u: number;
  /** The pixels, from the start of Y to the end of V. Absent when they went into the registered buffer. */
  plane_y?: Buffer;
}

/** A frame of RGBA pixels, rows of `width` * 4 bytes. */
export interface RgbaVideoFrame extends VideoFrameIdentity {
  format: 5;
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Bytes R, G, B, A of each pixel. */
  rgba: Buffer;
  /** Bytes in `rgba`. */
  rgba_size: number;
}

/** A frame of a local or remote stream. */
export type VideoFrame = I420VideoFrame | RgbaVideoFrame;

/** A frame of a public stream or of a mix: it always carries its pixels. */
export type OwnVideoFrame = (I420VideoFrame & { plane_y: Buffer }) | RgbaVideoFrame;

/** What each kind of frame in a batch holds. */
export interface FrameMap {
  onLocalVideoFrame: VideoFrame;
  onLocalScreenFrame: VideoFrame;
  onRemoteVideoFrame: VideoFrame;
  onRemoteScreenFrame: VideoFrame;
  onPublicStreamVideoFrame: OwnVideoFrame;
  onMixingVideoFrame: OwnVideoFrame;
}

/** One frame in a batch. */
export type FrameEvent = { [Name in keyof FrameMap]: { Type: Name; Object: FrameMap[Name] } }[keyof FrameMap];

/**
 * All frames that have arrived since the batch before, at most 60 batches a second. The engine's callback gets it as
 * one of its arguments; unlike every event it has a lower-case `type` and no `Type`.
 */
export interface GroupVideoFrame {
  type: 'GroupVideoFrame';
  group: FrameEvent[];
  /** Never there: it tells a batch from an event. */
  Type?: undefined;
}
