// Karaoke: the music library, the player of its songs, and scores for singing along.

import type { Absent, Open, Result } from './common';

/**
 * Bit mask; a song passes when it has everything that is set.
 * - `0` every song
 * - `1` no lyrics
 * - `2` cannot be scored
 * - `4` no accompaniment
 * - `8` no climax
 */
export type MusicFilterType = number;

/**
 * Bit mask of the hot lists wanted.
 * - `1` the catalogue's own
 * - `2` the application's own
 */
export type MusicHotType = 1 | 2 | 3;

/**
 * - `0` KRC: timed by word
 * - `1` LRC: timed by line
 */
export type DownloadLyricType = 0 | 1;

/** - `1` original - `2` accompaniment */
export type AudioTrackType = 1 | 2;

/**
 * Who hears a song.
 * - `0` the local user
 * - `1` the others
 * - `2` both
 */
export type AudioPlayType = 0 | 1 | 2;

/** Answers come as events. Pages count from 1 and hold 1 to 100 songs. */
export interface MusicLibraryMethods {
  /** The oldest files go first. @param maxCacheSizeMb MB */
  setMaxCacheSize(maxCacheSizeMb: number): Result;
  /** Answered by `onMusicListResult`. */
  getMusicList(pageNum: number, pageSize: number, filters: MusicFilterType): Result;
  /** Answered by `onSearchMusicResult`. */
  searchMusic(keyWord: string, pageNum: number, pageSize: number, filters: MusicFilterType): Result;
  /** Answered by `onHotMusicResult`. */
  getHotMusic(hotTypes: MusicHotType, filters: MusicFilterType): Result;
  /** Answered by `onMusicDetailResult`. */
  getMusicDetail(musicId: string): Result;
  /** @returns the download id that the events repeat (above 0), or a negative result without any event */
  downloadMusic(musicId: string): number;
  /** @returns the download id that the events repeat (above 0), or a negative result without any event */
  downloadLyric(musicId: string, lyricType: DownloadLyricType): number;
  /** @returns the download id that the events repeat (above 0), or a negative result without any event */
  downloadMidi(musicId: string): number;
  cancelDownload(downloadId: number): Result;
  /** Answered by `onClearCacheResult`. */
  clearCache(): Result;
}

/** Songs that have been downloaded, told apart by `musicId`. -4: not downloaded, or it does not play. */
export interface MusicPlayerMethods {
  playMusic(musicId: string, trackType: AudioTrackType, playType: AudioPlayType): Result;
  pauseMusic(musicId: string): Result;
  resumeMusic(musicId: string): Result;
  stopMusic(musicId: string): Result;
  /** @param position milliseconds */
  seekMusic(musicId: string, position: number): Result;
  /** @param volume percent, 0 to 400 */
  setMusicVolume(musicId: string, volume: number): Result;
  /** From original to accompaniment and back. */
  switchAudioTrackType(musicId: string): Result;
  /** @param pitch semitones, -12 to 12 */
  setMusicPitch(musicId: string, pitch: number): Result;
}

/** What is sung and where it is compared with. All keys are required. */
export interface SingScoringConfig {
  /** Samples a second. */
  sample_rate: 44100 | 48000;
  /** - `0` the microphone */
  mode: 0;
  lyrics_filepath: string;
  /** The melody. */
  midi_filepath: string;
}

/** One note of the melody. */
export interface StandardPitchInfo {
  /** Milliseconds from the song's start. */
  start_time: number;
  /** Milliseconds. */
  duration: number;
  /** MIDI note number, 0 to 127. */
  pitch: number;
}

/** Scores run from 0 to 100; getters answer a negative result before there is one. */
export interface SingScoringMethods {
  initSingScoring(singScoringAppkey: string, singScoringToken: string): Result;
  setSingScoringConfig(config: SingScoringConfig): Result;
  /**
   * Reports `onCurrentScoringInfo`.
   * @param position milliseconds into the song when scoring starts
   * @param scoringInfoInterval milliseconds between reports, at least 20
   */
  startSingScoring(position: number, scoringInfoInterval: number): Result;
  stopSingScoring(): Result;
  getLastSentenceScore(): number;
  /** Sum over all sentences so far, so it may exceed 100. */
  getTotalScore(): number;
  getAverageScore(): number;
  /** @returns notes in the melody of the last `setSingScoringConfig`, or -1 */
  getStandardPitchCount(): number;
  /** @returns one note, from 0; an empty object when there is none: test `start_time` */
  getStandardPitchInfo(index: number): StandardPitchInfo | Absent<StandardPitchInfo>;
}

/**
 * Which kinds of lyrics a song has.
 * - `0` none
 * - `1` KRC
 * - `2` LRC
 * - `3` both
 */
export type LyricStatus = Open<0 | 1 | 2 | 3>;

/** One song of the library. */
export interface MusicInfo {
  music_id: string;
  music_name: string;
  singer: string;
  vendor_id: string;
  vendor_name: string;
  /** Milliseconds since 1970-01-01 UTC. */
  update_timestamp: number;
  poster_url: string;
  lyric_status: LyricStatus;
  /** Milliseconds. */
  duration: number;
  /** There is a melody to score by. */
  enable_score: boolean;
  /** Milliseconds from the start; 0 without a climax. */
  climax_start_time: number;
  /** Milliseconds from the start; 0 without a climax. */
  climax_stop_time: number;
}

/** One list of popular songs. */
export interface HotMusicInfo {
  hot_type: Open<1 | 2>;
  hot_name: string;
  musics: MusicInfo[];
}

/** A file that has been downloaded. */
export interface DownloadResult {
  local_file_path: string;
  music_id: string;
  /**
   * - `1` music
   * - `2` KRC
   * - `3` LRC
   * - `4` MIDI
   */
  type: Open<1 | 2 | 3 | 4>;
}

/**
 * - `0` success
 * - `1` invalid parameter
 * - `2` song not found
 * - `3` not downloaded
 * - `4` network
 * - `5` disk full
 * - `6` file failure
 * - `7` decoding failed
 * - `8` cancelled
 * - `9` not permitted
 * - `10` internal error
 */
export type KTVErrorCode = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 | 9 | 10>;

/**
 * - `1` playing
 * - `2` paused
 * - `3` stopped
 * - `4` failed
 * - `5` finished
 */
export type MusicPlayState = Open<1 | 2 | 3 | 4 | 5>;

/** How the singing goes just now. Pitches are MIDI note numbers, scores 0 to 100. */
export interface SingScoringRealtimeInfo {
  /** Milliseconds from the song's start. */
  current_position: number;
  /** 0 without a voice. */
  user_pitch: number;
  /** 0 where the melody rests. */
  standard_pitch: number;
  /** From 0. */
  sentence_index: number;
  /** Of the last finished sentence; negative before there is one. */
  sentence_score: number;
  /** Sum over all finished sentences, so it may exceed 100. */
  total_score: number;
  /** Over all finished sentences. */
  average_score: number;
}

export interface KaraokeEvents {
  /** `total_musics_size`: songs on all pages. */
  onMusicListResult: { music_infos: MusicInfo[]; total_musics_size: number; error_code: KTVErrorCode };
  /** `total_musics_size`: songs on all pages. */
  onSearchMusicResult: { music_infos: MusicInfo[]; total_musics_size: number; error_code: KTVErrorCode };
  onHotMusicResult: { hot_infos: HotMusicInfo[]; error_code: KTVErrorCode };
  /** `music_info` has empty texts and zeros when `error_code` is not 0. */
  onMusicDetailResult: { music_info: MusicInfo; error_code: KTVErrorCode };
  onDownloadSuccess: { download_id: number; download_info: DownloadResult };
  onDownloadFailed: { download_id: number; error_code: KTVErrorCode };
  /** `download_percentage`: 0 to 100. */
  onDownloadMusicProgress: { download_id: number; download_percentage: number };
  onClearCacheResult: { error_code: KTVErrorCode };
  /** Every second. `progress`: milliseconds from the song's start. */
  onPlayProgress: { music_id: string; progress: number };
  onPlayStateChanged: { music_id: string; play_state: MusicPlayState; error_code: KTVErrorCode };
  onCurrentScoringInfo: { info: SingScoringRealtimeInfo };
}
