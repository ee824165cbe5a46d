'use strict';

// The methods of both players; rows are described in support/method_table.js.

const { Row } = require('../support/method_table');

const exit = (result) => `@, ret: ${result}`;
const effect = { kinds: 'n', args: [21], gets: { effect_id: 21 } };
const EFFECT_CONFIG = { type: 1, play_count: 2, pitch: -3, start_pos: 400 };

const EFFECT_ROWS = [
  {
    name: 'start',
    kinds: 'nso',
    args: [21, '/a.mp3', EFFECT_CONFIG],
    gets: { effect_id: 21, file_path: '/a.mp3', config: EFFECT_CONFIG },
    says: ['@ type: 1', '@ play_count: 2', '@ pitch: -3', '@ start_pos: 400'],
  },
  { name: 'stop', ...effect },
  { name: 'stopAll' },
  { name: 'preload', kinds: 'ns', args: [21, '/a.mp3'], gets: { effect_id: 21, file_path: '/a.mp3' } },
  { name: 'unload', ...effect },
  { name: 'unloadAll' },
  { name: 'pause', ...effect },
  { name: 'pauseAll' },
  { name: 'resume', ...effect },
  { name: 'resumeAll' },
  { name: 'setPosition', kinds: 'nn', args: [21, 900], gets: { effect_id: 21, position: 900 } },
  { name: 'getPosition', ...effect },
  { name: 'setVolume', kinds: 'nn', args: [21, 80], gets: { effect_id: 21, volume: 80 } },
  { name: 'setVolumeAll', kinds: 'n', args: [80], gets: { volume: 80 } },
  { name: 'getVolume', ...effect },
  { name: 'getDuration', ...effect },
  { name: 'setEventHandler', gets: { handler: true } },
].map((row) => new Row(row, { call: `IAudioEffectPlayer.${row.name}`, exit }));

const MEDIA_CONFIG = {
  play_count: 2,
  start_pos: 400,
  callback_on_progress_interval: '9007199254740993',
  sync_progress_to_record_frame: true,
  auto_play: false,
  type: 1,
};
const mediaConfig = { ...MEDIA_CONFIG, callback_on_progress_interval: 9007199254740993n };
const PCM = Buffer.from([1, 2, 3, 4]);
const FRAME = { sample_rate: 48000, channel: 2, timestamp_ms: 1.9, data: PCM };

const MEDIA_ROWS = [
  {
    name: 'open',
    kinds: 'so',
    args: ['/a.mp4', MEDIA_CONFIG],
    gets: { file_path: '/a.mp4', config: mediaConfig },
    says: ['@ type: 1'],
  },
  {
    name: 'openWithCustomSource',
    kinds: 'oo',
    args: [{ mode: 5, type: 6 }, MEDIA_CONFIG],
    gets: { source: { mode: 5, type: 6 }, config: mediaConfig },
  },
  { name: 'start' },
  { name: 'stop' },
  { name: 'pause' },
  { name: 'resume' },
  { name: 'setVolume', kinds: 'nn', args: [80, 1], gets: { volume: 80, type: 1 } },
  { name: 'getVolume', kinds: 'n', args: [1], gets: { type: 1 } },
  { name: 'getTotalDuration' },
  { name: 'getPlaybackDuration' },
  { name: 'getPosition' },
  { name: 'setAudioPitch', kinds: 'n', args: [-4], gets: { pitch: -4 } },
  { name: 'setPosition', kinds: 'n', args: [900], gets: { position: 900 } },
  { name: 'setAudioDualMonoMode', kinds: 'n', args: [2], gets: { mode: 2 } },
  { name: 'getAudioTrackCount' },
  { name: 'selectAudioTrack', kinds: 'n', args: [1], gets: { index: 1 } },
  { name: 'setPlaybackSpeed', kinds: 'n', args: [150], gets: { speed: 150 } },
  { name: 'setProgressInterval', kinds: 's', args: ['250'], gets: { interval: 250 } },
  { name: 'setLoudness', kinds: 'n', args: [-20.9], gets: { loudness: -20 } },
  { name: 'setEventHandler', gets: { handler: true } },
].map((row) => new Row(row, { call: `IMediaPlayer.${row.name}`, exit }));

module.exports = { EFFECT_ROWS, EFFECT_CONFIG, MEDIA_ROWS, MEDIA_CONFIG, FRAME };
