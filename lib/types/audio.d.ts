// Sound: capture, playback, the local voice, reports of volume, raw samples in and out.

/// <reference types="node" />

import type { AudioFormat, AudioFrameMethod, Open, Result, StreamIndex, StreamKey, TypedArray } from './common';

/** - `0` off - `1` on */
export type EarMonitorMode = 0 | 1;

/**
 * Sample rate, channels and bitrate of what is sent.
 * - `0` chosen by the room's kind
 * - `1` fluent: 16 kHz, mono, low bitrate
 * - `2` standard: 48 kHz, mono
 * - `3` high: 48 kHz, stereo, high bitrate
 * - `4` standard stereo: 48 kHz
 * - `5` high mono: 48 kHz, high bitrate
 */
export type AudioProfileType = 0 | 1 | 2 | 3 | 4 | 5;

/**
 * Suppression of background noise.
 * - `0` off
 * - `1` low
 * - `2` medium
 * - `3` high
 * - `4` automatic
 */
export type AnsMode = 0 | 1 | 2 | 3 | 4;

/**
 * - `0` off
 * - `1` in step with the progress of the named stream's audio mixing
 */
export type AudioAlignmentMode = 0 | 1;

/**
 * - `0` external: `pushExternalAudioFrame`
 * - `1` internal: the microphone
 */
export type AudioSourceType = 0 | 1;

/**
 * Which local sound `onLocalAudioPropertiesReport` covers.
 * - `0` only while the microphone is unmuted
 * - `1` also before joining a room
 * - `2` silent entries are reported as 0
 */
export type AudioReportMode = 0 | 1 | 2;

/**
 * What the report of the local main stream is measured on.
 * - `0` the microphone alone
 * - `1` with audio mixing and pushed sound
 */
export type LocalMainReportMode = 0 | 1;

/** Reports of volume, spectrum and voice. All keys are required. */
export interface AudioPropertiesConfig {
  /** Milliseconds between reports, at least 100; 0 or less turns them off. */
  interval: number;
  /** Fills the 257 spectrum values. */
  enable_spectrum: boolean;
  /** Tells voice from other sound. */
  enable_vad: boolean;
  local_main_report_mode: LocalMainReportMode;
  /** Weight of the newest value, above 0 to 1; 1 does not smooth. */
  smooth: number;
  audio_report_mode: AudioReportMode;
  /** Measures the local voice's pitch in Hz. */
  enable_voice_pitch: boolean;
}

/** One band of the local voice's equaliser. */
export interface VoiceEqualizationConfig {
  /** Band, 0 to 9: centres 31, 62, 125, 250, 500 Hz and 1, 2, 4, 8, 16 kHz. */
  frequency: number;
  /** dB, -15 to 15. */
  gain: number;
}

/** Reverberation of the local voice. */
export interface VoiceReverbConfig {
  /** Percent, 0 to 100. */
  room_size: number;
  /** Percent of the longest decay, 0 to 100. */
  decay_time: number;
  /** Percent, 0 to 100. */
  damping: number;
  /** dB, -20 to 10. */
  wet_gain: number;
  /** dB, -20 to 10. */
  dry_gain: number;
  /** Milliseconds, 0 to 200. */
  pre_delay: number;
}

/** Samples that the application pushes: signed 16-bit, little-endian, channels interleaved, normally 10 ms. */
export interface ExternalAudioFrame {
  /** Samples a second. */
  sample_rate: number;
  /** 1 or 2. */
  channel: number;
  /** Milliseconds. */
  timestamp_ms: number;
  data: TypedArray;
}

export interface AudioMethods {
  /** Volume of all remote sound. @param volume percent, 0 to 400 */
  setPlaybackVolume(volume: number): Result;
  setEarMonitorMode(mode: EarMonitorMode): Result;
  /** @param volume percent, 0 to 100 */
  setEarMonitorVolume(volume: number): Result;
  /** Sends silence; capture goes on. */
  muteAudioCapture(streamIndex: StreamIndex, mute: boolean): Result;
  startAudioCapture(): Result;
  stopAudioCapture(): Result;
  setAudioProfile(audioProfile: AudioProfileType): Result;
  /** @param volume percent, 0 to 400 */
  setRemoteAudioPlaybackVolume(streamKey: StreamKey, volume: number): Result;
  /** Delays every other remote stream to stay in step with this one. */
  setAudioAlignmentProperty(streamKey: StreamKey, mode: AudioAlignmentMode): Result;
  /** What is played is softer while the local user talks. */
  enablePlaybackDucking(enable: boolean): Result;
  /** @param volume percent, 0 to 400; 100 as captured */
  setCaptureVolume(streamIndex: StreamIndex, volume: number): Result;
  setAnsMode(ansMode: AnsMode): Result;
  /** Automatic gain of the microphone. */
  enableAGC(enable: boolean): Result;
  /** Leaves processing to the sound card. */
  enableExternalSoundCard(enable: boolean): Result;

  /** Turns `onLocalAudioPropertiesReport` and `onRemoteAudioPropertiesReport` on or off. */
  enableAudioPropertiesReport(config: AudioPropertiesConfig): Result;

  /** @param pitch semitones, -12 to 12 */
  setLocalVoicePitch(pitch: number): Result;
  setLocalVoiceEqualization(config: VoiceEqualizationConfig): Result;
  setLocalVoiceReverbParam(config: VoiceReverbConfig): Result;
  enableLocalVoiceReverb(enable: boolean): Result;

  /** Has raw audio delivered as events of {@link AudioFrameEvents}. */
  enableAudioFrameCallback(method: AudioFrameMethod, format: AudioFormat): Result;
  disableAudioFrameCallback(method: AudioFrameMethod): Result;
  setAudioSourceType(type: AudioSourceType): Result;
  /** Sound of an external source. The samples are copied. */
  pushExternalAudioFrame(frame: ExternalAudioFrame): Result;
}

/** Raw sound: signed 16-bit samples, little-endian, channels interleaved. */
export interface AudioFrame {
  /** The frame's time in milliseconds, cut to a signed 32-bit number. */
  render_time_ms: number;
  /** Samples a second in one channel. */
  sample_rate: number;
  /** 1 or 2. */
  channels: number;
  /** - `0` signed 16-bit samples */
  frame_type: Open<0>;
  /** A copy of the samples, the application's own. */
  buffer: Buffer;
  /** True when the source is muted and the samples are silence. */
  mute: boolean;
}

/**
 * Whether a piece of sound holds a voice.
 * - `0` no voice, or not measured
 * - `1` voice
 */
export type AudioVoiceActivity = Open<0 | 1>;

/** What a piece of remote sound measures. Values that were not asked for are 0. */
export interface RemoteAudioProperties {
  /** 0 silent to 255 loudest. */
  linear_volume: number;
  /** -127 silent to 0 loudest, in dB of full scale. */
  nonlinear_volume: number;
  vad: AudioVoiceActivity;
  /** 257 magnitudes, 0 to 255, from 0 Hz to half the sample rate, evenly spaced. */
  spectrum: number[];
}

/** What a piece of local sound measures. Values that were not asked for are 0. */
export interface LocalAudioProperties {
  /** 0 silent to 255 loudest. */
  linear_volume: number;
  /** -127 silent to 0 loudest, in dB of full scale. */
  nonlinear_volume: number;
  vad: AudioVoiceActivity;
  /** Hz; 0 without a voice. */
  voice_pitch: number;
  /** 257 magnitudes, 0 to 255, from 0 Hz to half the sample rate, evenly spaced. */
  spectrum: number[];
}

/** One local stream in a report. */
export interface LocalAudioPropertiesInfo {
  stream_index: StreamIndex;
  audio_properties_info: LocalAudioProperties;
}

/** One remote stream in a report. */
export interface RemoteAudioPropertiesInfo {
  stream_key: StreamKey;
  audio_properties_info: RemoteAudioProperties;
}

export interface AudioReportEvents {
  /** At the interval given to `enableAudioPropertiesReport`. */
  onLocalAudioPropertiesReport: {
    audio_properties_infos: LocalAudioPropertiesInfo[];
    audio_properties_info_number: number;
  };
  /** At the same interval. */
  onRemoteAudioPropertiesReport: {
    audio_properties_infos: RemoteAudioPropertiesInfo[];
    audio_properties_info_number: number;
    /** 0 to 255, of all remote sound together. */
    total_remote_volume: number;
  };
  /** The loudest user of a room has changed. */
  onActiveSpeaker: { room_id: string; uid: string };
}

/** Raw audio, as asked for with `enableAudioFrameCallback`. */
export interface AudioFrameEvents {
  onRecordAudioFrame: { audio_frame: AudioFrame };
  onPlaybackAudioFrame: { audio_frame: AudioFrame };
  onMixedAudioFrame: { audio_frame: AudioFrame };
  onRecordScreenAudioFrame: { audio_frame: AudioFrame };
  onRemoteUserAudioFrame: { stream_info: StreamKey; audio_frame: AudioFrame };
}
