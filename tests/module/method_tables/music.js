'use strict';

// The music library, its player, and scoring.

const { args, family, managers } = require('../support/method_row.js');
const { number, string, object } = args;

const bad = (field) => `@, Param is invalid, ${field}`;

const library = family({ owner: 'IKTVManager', managers: [managers.library] }, [
  [
    'setMaxCacheSize',
    [number(512)],
    { max_cache_size_mb: 512 },
    { entry: null, refusal: bad('max_cache_size_MB'), says: ['+@, max_cache_size_MB = 512'] },
  ],
  [
    'getMusicList',
    [number(2), number(30), number(4)],
    { page_num: 2, page_size: 30, filters: 4 },
    {
      entry: null,
      refusal: [bad('page_num'), bad('page_size'), bad('filters')],
      says: ['+@, page_num = 2, page_size= 30, filters=4'],
    },
  ],
  [
    'searchMusic',
    [string('lied'), number(2), number(30), number(4)],
    { key_word: 'lied', page_num: 2, page_size: 30, filters: 4 },
    {
      entry: null,
      refusal: [bad('key_world'), bad('page_num'), bad('page_size'), bad('filters')],
      says: ['+@,key_world= lied,  page_num = 2, page_size= 30, filters=4'],
    },
  ],
  [
    'getHotMusic',
    [number(3), number(8)],
    { hot_types: 3, filters: 8 },
    { refusal: [bad('hot_types'), bad('filters')] },
  ],
  ['getMusicDetail', [string('m-1')], { music_id: 'm-1' }, { refusal: bad('music_id') }],
  ['downloadMusic', [string('m-2')], { music_id: 'm-2' }, { refusal: bad('music_id') }],
  [
    'downloadLyric',
    [string('m-3'), number(1)],
    { music_id: 'm-3', lyric_type: 1 },
    { refusal: [bad('music_id'), bad('type')] },
  ],
  ['downloadMidi', [string('m-4')], { music_id: 'm-4' }, { refusal: bad('music_id') }],
  ['cancelDownload', [number(99)], { download_id: 99 }, { refusal: bad('download_id') }],
  ['clearCache', [], {}],
]);

const player = family({ owner: 'IKTVPlayer', managers: [managers.library, managers.player], refusal: bad('music_id') }, [
  [
    'playMusic',
    [string('m-5'), number(2), number(1)],
    { music_id: 'm-5', track_type: 2, play_type: 1 },
    { refusal: [bad('music_id'), bad('track_type'), bad('play_type')] },
  ],
  ['pauseMusic', [string('m-6')], { music_id: 'm-6' }],
  ['resumeMusic', [string('m-7')], { music_id: 'm-7' }],
  ['stopMusic', [string('m-8')], { music_id: 'm-8' }],
  [
    'seekMusic',
    [string('m-9'), number(12345)],
    { music_id: 'm-9', position: 12345 },
    { refusal: [bad('music_id'), bad('position')] },
  ],
  [
    'setMusicVolume',
    [string('m-10'), number(88)],
    { music_id: 'm-10', volume: 88 },
    { refusal: [bad('music_id'), bad('volume')] },
  ],
  ['switchAudioTrackType', [string('m-11')], { music_id: 'm-11' }],
  [
    'setMusicPitch',
    [string('m-12'), number(-4)],
    { music_id: 'm-12', pitch: -4 },
    { refusal: [bad('music_id'), bad('pitch')] },
  ],
]);

const config = { sample_rate: 48000, mode: 0, lyrics_filepath: '/tmp/text.krc', midi_filepath: '/tmp/lied.mid' };

const scoring = family({ owner: 'ISingScoringManager', managers: [managers.scoring] }, [
  [
    'initSingScoring',
    [string('schlüssel'), string('marke')],
    { sing_scoring_appkey: 'schlüssel', sing_scoring_token: 'marke', event_handler: true },
    { entry: null, says: ['+@,  sing_scoring_appkey: schlüssel,  sing_scoring_token: marke '] },
  ],
  [
    'setSingScoringConfig',
    [object(config)],
    { config },
    {
      entry: null,
      refusal: bad('config'),
      says: ['+@,sample_rate: 48000, mode: 0, lyrics_filepath: /tmp/text.krc, scoringConfig: /tmp/lied.mid '],
    },
  ],
  ['startSingScoring', [number(1500), number(60)], { position: 1500, scoring_info_interval: 60 }],
  ['stopSingScoring', [], {}],
  ['getLastSentenceScore', [], {}],
  ['getTotalScore', [], {}],
  ['getAverageScore', [], {}],
  ['getStandardPitchCount'],
  ['getStandardPitchInfo', [number(1)], undefined, { empty: {}, exit: '@, ret: #' }],
]);

module.exports = [...library, ...player, ...scoring];
