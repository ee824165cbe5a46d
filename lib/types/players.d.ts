// The two players: short effects, told apart by an id, and one long sound. Times in milliseconds, volumes in percent, 0
// to 400, file paths or http(s) addresses.

import type { ExternalAudioFrame } from './audio';
import type { Open, Result } from './common';
import type { AudioEffectPlayerCallback, MediaPlayerCallback } from './events';

/**
 * Who hears a player.
 * - `0` the local user
 * - `1` the others
 * - `2` both
 */
export type PlayerOutputType = 0 | 1 | 2;

/** How an effect is played. All keys are required; the call is refused when one is missing. */
export interface AudioEffectPlayerConfig {
  type: PlayerOutputType;
  /** 0 or less repeats for ever. */
  play_count: number;
  /** Semitones, -12 to 12. */
  pitch: number;
  /** Milliseconds from the start. */
  start_pos: number;
}

/** Short sounds played over everything else, several at once. -4: no effect with the id plays or is preloaded. */
export class KavRTCAudioEffectPlayer {
  /**
   * The engine must exist. Events come once `setEventHandler` has been called.
   * @param callback gets the player's events
   */
  constructor(callback: AudioEffectPlayerCallback);

  /** An id that already plays starts anew. @param filePath "" for a preloaded effect */
  start(effectId: number, filePath: string, config: AudioEffectPlayerConfig): Result;
  stop(effectId: number): Result;
  stopAll(): Result;
  /** Files of up to 20 seconds. */
  preload(effectId: number, filePath: string): Result;
  unload(effectId: number): Result;
  unloadAll(): Result;
  pause(effectId: number): Result;
  pauseAll(): Result;
  resume(effectId: number): Result;
  resumeAll(): Result;
  setPosition(effectId: number, position: number): Result;
  /** @returns milliseconds, or a negative result */
  getPosition(effectId: number): number;
  setVolume(effectId: number, volume: number): Result;
  setVolumeAll(volume: number): Result;
  /** @returns percent, or a negative result */
  getVolume(effectId: number): number;
  /** @returns milliseconds, or a negative result */
  getDuration(effectId: number): number;
  /** Has events delivered to the constructor's callback. */
  setEventHandler(): Result;
}

/** How a media player is opened. All keys are required; the call is refused when one is missing. */
export interface MediaPlayerConfig {
  type: PlayerOutputType;
  /** 0 or less repeats for ever. */
  play_count: number;
  /** Milliseconds from the start. */
  start_pos: number;
  /** Milliseconds between progress events as decimal text, at least "100"; "0" for none. */
  callback_on_progress_interval: string;
  /** Sends the progress along for `setAudioAlignmentProperty`. */
  sync_progress_to_record_frame: boolean;
  /** Starts as soon as it is open. */
  auto_play: boolean;
}

/** A source that is not a file. */
export interface MediaPlayerCustomSource {
  /** - `0` push: the application calls `pushExternalAudioFrame` */
  mode: 0;
  /** - `0` signed 16-bit samples */
  type: 0;
}

/**
 * Which channels of stereo sound are heard.
 * - `0` both, as in the file
 * - `1` left
 * - `2` right
 * - `3` both, added up
 */
export type PlayerDualMonoMode = 0 | 1 | 2 | 3;

/** One long sound. -3: nothing is open, or it does not play where it must. */
export class KavRTCMediaPlayer {
  /**
   * The engine must exist. Events come once `setEventHandler` has been called.
   * @param playerId from 0; the engine has one player for each id
   * @param callback gets the player's events
   */
  constructor(playerId: number, callback: MediaPlayerCallback);

  /** What was open before is closed. */
  open(filePath: string, config: MediaPlayerConfig): Result;
  start(): Result;
  stop(): Result;
  pause(): Result;
  resume(): Result;
  setVolume(volume: number, type: PlayerOutputType): Result;
  /** @returns percent, or a negative result */
  getVolume(type: Exclude<PlayerOutputType, 2>): number;
  /** @returns milliseconds, or a negative result */
  getTotalDuration(): number;
  /** @returns milliseconds played so far, repeats included, or a negative result */
  getPlaybackDuration(): number;
  /** @returns milliseconds, or a negative result */
  getPosition(): number;
  /** @param pitch semitones, -12 to 12 */
  setAudioPitch(pitch: number): Result;
  setPosition(position: number): Result;
  setAudioDualMonoMode(mode: PlayerDualMonoMode): Result;
  /** @returns the count, or a negative result */
  getAudioTrackCount(): number;
  /** @param index 0 to the count of tracks - 1 */
  selectAudioTrack(index: number): Result;
  /** @param speed percent, 50 to 200 */
  setPlaybackSpeed(speed: number): Result;
  /** @param interval milliseconds between progress events as decimal text, at least "100"; "0" for none */
  setProgressInterval(interval: string): Result;
  /** @param loudness LUFS aimed at, -70 to 0, a whole number; 0 leaves sound unchanged */
  setLoudness(loudness: number): Result;
  /** Has events delivered to the constructor's callback. */
  setEventHandler(): Result;
  openWithCustomSource(source: MediaPlayerCustomSource, config: MediaPlayerConfig): Result;
  /** Sound for a custom source. The samples are copied. */
  pushExternalAudioFrame(frame: ExternalAudioFrame): Result;
}

/**
 * - `0` idle
 * - `1` preloaded
 * - `2` opened
 * - `3` playing
 * - `4` paused
 * - `5` stopped
 * - `6` finished: played to its end as often as asked for
 * - `7` failed: the error tells why
 */
export type PlayerState = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7>;

/**
 * - `0` none
 * - `1` format not supported
 * - `2` invalid path
 * - `3` invalid state
 * - `4` invalid position
 * - `5` invalid volume
 * - `6` invalid pitch
 * - `7` invalid track
 * - `8` invalid speed
 * - `9` invalid effect id
 * - `10` not preloaded
 * - `11` media failure
 */
export type PlayerError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 | 9 | 10 | 11>;

/** Payloads of an audio effect player's events, by name. */
export interface AudioEffectPlayerEventMap {
  onAudioEffectPlayerStateChanged: { effect_id: number; state: PlayerState; error: PlayerError };
}

/** Payloads of a media player's events, by name. */
export interface MediaPlayerEventMap {
  onMediaPlayerStateChanged: { player_id: number; state: PlayerState; error: PlayerError };
  /** `progress`: milliseconds from the start as decimal text. */
  onMediaPlayerPlayingProgress: { player_id: number; progress: string };
}
