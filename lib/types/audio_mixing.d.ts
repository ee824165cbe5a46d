// Sound files mixed into playback and into what is sent.

import type { Open, Result } from './common';

/**
 * Who hears a mixed file.
 * - `0` the local user
 * - `1` the others
 * - `2` both
 */
export type AudioMixingType = 0 | 1 | 2;

/**
 * Which channels of a stereo file are heard.
 * - `0` both, as in the file
 * - `1` left
 * - `2` right
 * - `3` both, added up
 */
export type AudioMixingDualMonoMode = 0 | 1 | 2 | 3;

/** How a file is mixed. */
export interface AudioMixingConfig {
  type: AudioMixingType;
  /** 0 or less repeats for ever. */
  play_count: number;
  /** Milliseconds from the start. */
  position: number;
  /** Milliseconds between progress events, at least 10; 0 or less for none. */
  callback_on_progress_interval: number;
  /** Sends the progress along for `setAudioAlignmentProperty`. */
  sync_progress_to_record_frame: boolean;
}

/**
 * Several files at once, told apart by `mixId`, any number of the caller's. File paths or http(s) addresses; times in
 * milliseconds. -4: no file with the id plays or is preloaded.
 */
export interface AudioMixingMethods {
  /**
   * An id that already plays starts anew. Failures come as `onAudioMixingStateChanged`.
   * @returns 0, or -1 when refused
   */
  startAudioMixing(mixId: number, filePath: string, config: AudioMixingConfig): Result;
  stopAudioMixing(mixId: number): Result;
  pauseAudioMixing(mixId: number): Result;
  resumeAudioMixing(mixId: number): Result;
  /** @param volume percent, 0 to 400 */
  setAudioMixingVolume(mixId: number, volume: number, type: AudioMixingType): Result;
  /** @returns milliseconds, or a negative result */
  getAudioMixingDuration(mixId: number): number;
  /** @returns milliseconds from the start, or a negative result */
  getAudioMixingCurrentPosition(mixId: number): number;
  setAudioMixingPosition(mixId: number, position: number): Result;
  /** Files of up to 20 seconds. */
  preloadAudioMixing(mixId: number, filePath: string): Result;
  /** Stops it, too. */
  unloadAudioMixing(mixId: number): Result;
  /** @returns milliseconds played, pauses not counted, or a negative result */
  getAudioMixingPlaybackDuration(mixId: number): number;
  setAudioMixingDualMonoMode(mixId: number, mode: AudioMixingDualMonoMode): Result;
  /** @param pitch semitones, -12 to 12 */
  setAudioMixingPitch(mixId: number, pitch: number): Result;
  /** @param speed percent, 50 to 200 */
  setAudioMixingPlaybackSpeed(mixId: number, speed: number): Result;
  /** @param loudness the file's own, in LUFS; 0 for unknown */
  setAudioMixingLoudness(mixId: number, loudness: number): Result;
  /** @param interval milliseconds, at least 10; 0 or less for none */
  setAudioMixingProgressInterval(mixId: number, interval: number): Result;
  /** @returns the count, or a negative result */
  getAudioTrackCount(mixId: number): number;
  /** @param audioTrackIndex 0 to the count of tracks - 1 */
  selectAudioTrack(mixId: number, audioTrackIndex: number): Result;
  stopAllAudioMixing(): Result;
  pauseAllAudioMixing(): Result;
  resumeAllAudioMixing(): Result;
}

/**
 * - `0` preloaded
 * - `1` playing
 * - `2` paused
 * - `3` stopped
 * - `4` failed
 * - `5` finished: played to its end as often as asked for
 */
export type AudioMixingState = Open<0 | 1 | 2 | 3 | 4 | 5>;

/**
 * - `0` none
 * - `1` preloading failed
 * - `2` starting failed
 * - `3` the id is not known
 * - `4` setting the position failed
 * - `5` invalid volume
 * - `6` another file is loaded under the id
 */
export type AudioMixingError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6>;

export interface AudioMixingEvents {
  onAudioMixingStateChanged: { mix_id: number; state: AudioMixingState; error: AudioMixingError };
  /** `progress`: milliseconds from the file's start. */
  onAudioMixingPlayingProgress: { progress: number; mix_id: number };
}
