// Recording to files, and single pictures.

import type { Open, Result, StreamIndex, StreamKey } from './common';

/** - `0` AAC - `1` MP4 */
export type RecordingFileType = 0 | 1;

/**
 * Which media `startFileRecording` writes.
 * - `0` sound
 * - `1` video
 * - `2` both
 */
export type RecordingType = 0 | 1 | 2;

/** Where and how a stream is recorded. The engine chooses the file's name and reports it. All keys are required. */
export interface RecordingConfig {
  /** An existing folder. */
  dir_path: string;
  file_type: RecordingFileType;
}

/**
 * Which sound `startAudioRecording` writes.
 * - `0` the microphone
 * - `1` playback
 * - `2` both
 */
export type AudioRecordingSource = 0 | 1 | 2;

/**
 * Bitrate of compressed recordings.
 * - `0` low
 * - `1` medium
 * - `2` high
 * - `3` very high
 */
export type AudioRecordingQuality = 0 | 1 | 2 | 3;

/** Recording of sound alone. All keys are required. */
export interface AudioRecordingConfig {
  /** Ends in .wav or .aac, which chooses the format. */
  absolute_file_name: string;
  frame_source: AudioRecordingSource;
  /** Samples a second; 0 for the engine's choice. */
  sample_rate: number;
  /** 1 or 2; 0 for the engine's choice. */
  channel: number;
  quality: AudioRecordingQuality;
}

export interface RecordingMethods {
  /** Reports `onRecordingStateUpdate` and `onRecordingProgressUpdate`. */
  startFileRecording(streamIndex: StreamIndex, config: RecordingConfig, recordingType: RecordingType): Result;
  stopFileRecording(streamIndex: StreamIndex): Result;
  /** Reports `onAudioRecordingStateUpdate`. */
  startAudioRecording(config: AudioRecordingConfig): Result;
  stopAudioRecording(): Result;
  /** @returns the task id that `onTakeLocalSnapshotResult` repeats (above 0), or a negative result without an event */
  takeLocalSnapshot(streamIndex: StreamIndex): number;
  /** @returns the task id that `onTakeRemoteSnapshotResult` repeats (above 0), or a negative result without an event */
  takeRemoteSnapshot(streamKey: StreamKey): number;
}

/**
 * - `0` error: the code tells why; what was written stays
 * - `1` recording
 * - `2` the file is complete and closed
 */
export type RecordingState = Open<0 | 1 | 2>;

/**
 * - `0` none
 * - `-1` no permission
 * - `-2` not supported
 * - `-3` other
 */
export type RecordingErrorCode = Open<0 | -1 | -2 | -3>;

/**
 * - `0` unknown
 * - `1` H.264
 * - `2` VP8
 * - `3` VP9
 * - `4` H.265
 * - `5` AV1
 */
export type VideoCodecType = Open<0 | 1 | 2 | 3 | 4 | 5>;

/** The file being written. */
export interface RecordingInfo {
  /** Absolute. */
  file_path: string;
  /** Unknown without video. */
  video_codec_type: VideoCodecType;
  /** Pixels; 0 without video. */
  width: number;
  /** Pixels; 0 without video. */
  height: number;
}

/** How far a recording is. */
export interface RecordingProgress {
  /** Milliseconds. */
  duration: number;
  /** Bytes. */
  file_size: number;
}

export interface RecordingEvents {
  onRecordingStateUpdate: {
    type: Open<0 | 1 | 2>;
    state: RecordingState;
    error_code: RecordingErrorCode;
    info: RecordingInfo;
  };
  /** Every second while a recording runs. */
  onRecordingProgressUpdate: { type: Open<0 | 1 | 2>; process: RecordingProgress; info: RecordingInfo };
  onAudioRecordingStateUpdate: { state: RecordingState; error_code: RecordingErrorCode };
}

export interface SnapshotEvents {
  onTakeLocalSnapshotResult: {
    task_id: number;
    stream_index: StreamIndex;
    /** PNG file in base64, or "null" when the engine's pixel format is not known. Absent when the snapshot failed. */
    image?: string;
    error_code: number;
  };
  onTakeRemoteSnapshotResult: {
    task_id: number;
    stream_key: StreamKey;
    /** PNG file in base64, or "null" when the engine's pixel format is not known. Absent when the snapshot failed. */
    image?: string;
    error_code: number;
  };
}
