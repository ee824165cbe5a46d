// What `require('corvane-meeting-sdk')` returns, and the types that go with it.

export { KavRTCVideo as xoRTCVideo } from './types/engine';
export { KavRTCRoom as xoRTCRoom } from './types/room';
export {
  KavRTCAudioEffectPlayer as xoRTCAudioEffectPlayer,
  KavRTCMediaPlayer as xoRTCMediaPlayer,
} from './types/players';
export {
  getCurrentProcessId,
  getErrorDescription,
  getSDKVersion,
  getTimestampMs,
  getTimestampUs,
  setLogConfig,
} from './types/module';

export type { CorvaneLoadError, LogConfig, LogLevel } from './types/module';
export type * from './types/common';
export type * from './types/events';
export type * from './types/audio';
export type * from './types/audio_mixing';
export type * from './types/devices';
export type * from './types/effects';
export type * from './types/frames';
export type * from './types/karaoke';
export type * from './types/lifecycle';
export type * from './types/messaging';
export type * from './types/network';
export type * from './types/plugins';
export type * from './types/public_streams';
export type * from './types/recording';
export type * from './types/screen';
export type * from './types/stream_mixing';
export type * from './types/video';
export type * from './types/room_events';
export type * from './types/room_statistics';
export type * from './types/sound_in_space';
export type {
  AudioSelectionPriority,
  ForwardStreamConfiguration,
  ForwardStreamInfo,
  RemoteVideoConfig,
  RoomProfileType,
  RTCRoomConfig,
  SubtitleConfig,
  SubtitleMode,
  UserInfo,
} from './types/room';
export type {
  AudioEffectPlayerConfig,
  AudioEffectPlayerEventMap,
  MediaPlayerConfig,
  MediaPlayerCustomSource,
  MediaPlayerEventMap,
  PlayerDualMonoMode,
  PlayerError,
  PlayerOutputType,
  PlayerState,
} from './types/players';
