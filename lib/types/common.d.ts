// What several domains share.
//
// Conventions of all files in this folder:
// - Records and event payloads carry the module's own keys, odd spellings included.
// - Enumerations are numbers. What an application passes in is a closed union of the values there are; what the engine
//   delivers is an open one (`Open`), because an engine may know values that this version does not.
// - Numbers that say int32 are cut to whole numbers by the module.

/**
 * Result of an operation.
 * - `0` success; where a method says so, a value above 0
 * - `-1` refused: no engine (or room, or player), a missing sub-manager or an argument of the wrong type; also the
 *   engine's own general failure
 * - `-2` invalid parameter
 * - `-3` wrong state
 * - `-4` not found
 * - `-5` device failure
 * - `-6` media failure
 * - `-1001` the engine does not offer the operation
 *
 * `getErrorDescription` puts a code into words. The log file tells which argument was refused.
 */
export type Result = number;

/** An enumeration that the engine delivers: the known values, and any other number. */
export type Open<Known extends number> = Known | (number & {});

/** An object of which nothing is there: what a getter answers when there is nothing to get. */
export type Absent<Value> = { [Key in keyof Value]?: undefined };

/** Binary data: any typed array, Node's `Buffer` included. It is read during the call only. */
export type TypedArray =
  | Int8Array
  | Uint8Array
  | Uint8ClampedArray
  | Int16Array
  | Uint16Array
  | Int32Array
  | Uint32Array
  | Float32Array
  | Float64Array
  | BigInt64Array
  | BigUint64Array;

/**
 * Which of a user's two streams is meant.
 * - `0` camera and microphone
 * - `1` screen picture and screen sound
 */
export type StreamIndex = 0 | 1;

/**
 * Bit mask of the media in a stream.
 * - `1` audio
 * - `2` video
 * - `3` both
 */
export type MediaStreamType = 1 | 2 | 3;

/** Names one stream of one user in one room. */
export interface StreamKey {
  room_id: string;
  user_id: string;
  stream_index: StreamIndex;
}

/** Picture geometry. */
export interface VideoFrameInfo {
  /** Pixels. */
  width: number;
  /** Pixels. */
  height: number;
  /** Degrees clockwise to turn the picture upright: 0, 90, 180, 270. */
  rotation: number;
}

/** A rectangle in pixels. */
export interface Rectangle {
  x: number;
  y: number;
  width: number;
  height: number;
}

/** The shape in which raw audio is wanted. 0 leaves a value to the engine. */
export interface AudioFormat {
  /** Samples a second. */
  sample_rate: number;
  /** 1 or 2. */
  channel: number;
  /** Samples of one channel in one frame. */
  samples_per_call: number;
}

/**
 * Which sound raw audio callbacks and processors are about.
 * - `0` the microphone
 * - `1` all remote users together
 * - `2` microphone and remote users together; not for processors
 * - `3` each remote user alone
 * - `4` the shared screen's sound
 */
export type AudioFrameMethod = 0 | 1 | 2 | 3 | 4;
