'use strict';

// Audio capture, playback and reports, the local voice, and sound files mixed in.

const { args, family, managers, streamKey } = require('../support/method_row.js');
const { number, boolean, string, object } = args;

const report = {
  interval: 301,
  enable_spectrum: true,
  enable_vad: false,
  local_main_report_mode: 1,
  smooth: 0.25,
  audio_report_mode: 2,
  enable_voice_pitch: true,
};
const reverb = { room_size: 11, decay_time: 12, damping: 13, wet_gain: -14, dry_gain: 5, pre_delay: 16 };
const format = { sample_rate: 16000, channel: 2, samples_per_call: 160 };

const capture = family({}, [
  ['setPlaybackVolume', [number(77)], { volume: 77 }],
  ['setEarMonitorMode', [number(1)], { mode: 1 }],
  ['setEarMonitorVolume', [number(42)], { volume: 42 }],
  [
    'muteAudioCapture',
    [number(1), boolean(true)],
    { stream_index: 1, mute: true },
    { entry: null, says: ['+@ streamIndex:1, mute:1'] },
  ],
  ['startAudioCapture', [], {}],
  ['stopAudioCapture', [], {}],
  ['setAudioProfile', [number(3)], { audio_profile: 3 }],
  [
    'setRemoteAudioPlaybackVolume',
    [object(streamKey), number(55)],
    { stream_key: streamKey, volume: 55 },
    { refusal: 'Param Invalid: @\n' },
  ],
  ['setAudioAlignmentProperty', [object(streamKey), number(1)], { stream_key: streamKey, mode: 1 }],
  ['enablePlaybackDucking', [boolean(true)], { enable: true }],
  ['setCaptureVolume', [number(1), number(66)], { stream_index: 1, volume: 66 }],
  ['setLocalVoicePitch', [number(-3)], { pitch: -3 }],
  [
    'setAnsMode',
    [number(2)],
    { ans_mode: 2 },
    { refusal: '@, Param is invalid, ans_mode', says: ['@ ans_mode: 2'] },
  ],
  ['enableAGC', [boolean(true)], { enable: true }, { refusal: '@, Param is invalid, enableAGC' }],
  ['enableExternalSoundCard', [boolean(true)], { enable: true }],
  [
    'enableAudioPropertiesReport',
    [object(report)],
    { config: report },
    { refusal: 'Param Invalid: @', level: 'E', says: ['@, file_path:'] },
  ],
  [
    'setLocalVoiceEqualization',
    [object({ frequency: 4, gain: -6 })],
    { config: { frequency: 4, gain: -6 } },
    { says: ['@, frequency: 4, gain: -6'] },
  ],
  [
    'setLocalVoiceReverbParam',
    [object(reverb)],
    { config: reverb },
    {
      refusal: '@,  Param is invalid',
      says: ['@, room_size: 11, decay_time: 12, damping: 13, wet_gain: -14, dry_gain: 5, pre_delay: 16'],
    },
  ],
  ['enableLocalVoiceReverb', [boolean(true)], { enable: true }],
]);

const frames = family({ exit: '@, ret: #' }, [
  ['enableAudioFrameCallback', [number(3), object(format)], { method: 3, format }],
  ['disableAudioFrameCallback', [number(4)], { method: 4 }],
]);

const mixing = {
  type: 2,
  play_count: 3,
  position: 4000,
  callback_on_progress_interval: 500,
  sync_progress_to_record_frame: true,
};

const oneMix = family(
  {
    owner: 'IAudioMixingManager',
    managers: [managers.mixing],
    refusal: '@, Params Invalid',
    exit: '-@, ret: # id = {0}',
  },
  [
    [
      'startAudioMixing',
      [number(7), string('/tmp/lied.mp3'), object(mixing)],
      { mix_id: 7, file_path: '/tmp/lied.mp3', config: mixing },
      { level: 'W', result: 0 },
    ],
    ['stopAudioMixing', [number(8)], { mix_id: 8 }, { exit: '-@, ret: # id ={0}' }],
    ['pauseAudioMixing', [number(9)], { mix_id: 9 }],
    ['resumeAudioMixing', [number(10)], { mix_id: 10 }],
    [
      'setAudioMixingVolume',
      [number(11), number(120), number(2)],
      { mix_id: 11, volume: 120, type: 2 },
      { missing: ['@, pRtcVideo is nullptr', '@, m_pRtcVideo is nullptr'] },
    ],
    ['getAudioMixingDuration', [number(12)], { mix_id: 12 }, { exit: '-@, ret: # ,id = {0}' }],
    ['getAudioMixingCurrentPosition', [number(13)], { mix_id: 13 }, { exit: '-@, ret: # ,id = {0}' }],
    ['setAudioMixingPosition', [number(14), number(2500)], { mix_id: 14, position: 2500 }],
    [
      'preloadAudioMixing',
      [number(15), string('/tmp/kurz.wav')],
      { mix_id: 15, file_path: '/tmp/kurz.wav' },
      { refusal: ['@, Params Invalid, mix_id', '@, Params Invalid, file_path'] },
    ],
    ['unloadAudioMixing', [number(16)], { mix_id: 16 }],
    ['getAudioMixingPlaybackDuration', [number(17)], { mix_id: 17 }],
    ['setAudioMixingDualMonoMode', [number(18), number(1)], { mix_id: 18, mode: 1 }],
    ['setAudioMixingPitch', [number(19), number(-5)], { mix_id: 19, pitch: -5 }],
    ['setAudioMixingPlaybackSpeed', [number(20), number(150)], { mix_id: 20, speed: 150 }],
    ['setAudioMixingLoudness', [number(21), number(-18.5)], { mix_id: 21, loudness: -18.5 }],
    ['setAudioMixingProgressInterval', [number(22), number(300)], { mix_id: 22, interval: 300 }],
    ['getAudioTrackCount', [number(23)], { mix_id: 23 }],
    ['selectAudioTrack', [number(24), number(1)], { mix_id: 24, audio_track_index: 1 }],
  ],
);

const allMixes = family({ owner: 'IAudioMixingManager', managers: [managers.allMixing] }, [
  ['stopAllAudioMixing', [], {}],
  ['pauseAllAudioMixing', [], {}],
  ['resumeAllAudioMixing', [], {}],
]);

module.exports = [...capture, ...frames, ...oneMix, ...allMixes];
