'use strict';

// Every event of the engine's observers that carries no frame: the observer's interface, the event's name, the
// callback's arguments, the payload with its keys in their order, and what is logged on entry, if anything is. Values
// differ from each other so that none can stand in for another.

const music = (n) => ({
  music_id: `id-${n}`,
  music_name: `歌-${n}`,
  singer: `Sängerin-${n}`,
  vendor_id: `vendor-${n}`,
  vendor_name: `maker-${n}`,
  update_timestamp: 1700000000000 + n,
  poster_url: `https://host/${n}.png`,
  lyric_status: 100 + n,
  duration: 200 + n,
  enable_score: n % 2 === 1,
  climax_start_time: 300 + n,
  climax_stop_time: 400 + n,
});

/** What the engine gives when it has no texts, and what the application sees of it. */
const namelessMusic = {
  ...music(9),
  ...{ music_id: null, music_name: null, singer: null, vendor_id: null, vendor_name: null, poster_url: null },
};
const namelessMusicSeen = {
  ...music(9),
  ...{ music_id: '', music_name: '', singer: '', vendor_id: '', vendor_name: '', poster_url: '' },
};

const hotList = (n, musics) => ({ hot_type: n, hot_name: `liste-${n}`, musics });

const mixing = 'ITranscodingObserver';
const push = 'IPushSingleStreamToCDNObserver';
const faces = 'IFaceDetectionObserver';
const library = 'IKTVManagerEventHandler';
const player = 'IKTVPlayerEventHandler';
const scoring = 'ISingScoringEventHandler';

const mixingArguments = { event: 2, task_id: 'tâche-1', error: -3, mix_type: 4 };
const score = {
  current_position: 1000,
  user_pitch: 61,
  standard_pitch: 62,
  sentence_index: 3,
  sentence_score: -1,
  total_score: 500,
  average_score: 71,
};

/** Two faces, of which the second lies partly outside the picture. */
const faceResult = {
  detect_result: -7,
  image_width: 1281,
  image_height: 722,
  frame_timestamp_us: 3000000000000001,
};
const faceList = [
  { x: 1, y: 2, width: 3, height: 4 },
  { x: -5, y: -6, width: 7, height: 8 },
];
const faceListSeen = [
  { x: 1, y: 2, width: 3, heigth: 4 },
  { x: -5, y: -6, width: 7, heigth: 8 },
];
const faceSeen = (count, rect) => ({
  detect_result: -7,
  face_count: count,
  rect,
  image_width: 1281,
  image_height: 722,
  frame_timestamp_us: 3000000000000001,
});

module.exports = [
  [mixing, 'onStreamMixingEvent', mixingArguments, mixingArguments],
  [mixing, 'onMixingEvent', mixingArguments, mixingArguments],
  [
    mixing,
    'onMixingEvent',
    { event: 1, task_id: null, error: 0, mix_type: 0 },
    { event: 1, task_id: '', error: 0, mix_type: 0 },
  ],
  [push, 'onStreamPushEvent', { event: 2, task_id: 'tâche-1', error: -3 }, { event: 2, task_id: 'tâche-1', error: -3 }],
  [faces, 'onFaceDetectResult', { result: { ...faceResult, rect: faceList } }, faceSeen(2, faceListSeen), '+'],
  [faces, 'onFaceDetectResult', { result: { ...faceResult, rect: [] } }, faceSeen(0, []), '+'],
  [faces, 'onFaceDetectResult', { result: { ...faceResult, rect: null } }, faceSeen(0, []), '+'],
  [faces, 'onFaceDetectResult', { result: { ...faceResult, rect: null, face_count: 3 } }, faceSeen(3, []), '+'],
  [faces, 'onFaceDetectResult', { result: { ...faceResult, rect: faceList, face_count: -1 } }, faceSeen(-1, []), '+'],
  [
    library,
    'onMusicListResult',
    { music_infos: [music(1), music(2), namelessMusic], total_musics_size: 77, error_code: -3 },
    { music_infos: [music(1), music(2), namelessMusicSeen], total_musics_size: 77, error_code: -3 },
  ],
  [
    library,
    'onMusicListResult',
    { music_infos: [], total_musics_size: 0, error_code: 4 },
    { music_infos: [], total_musics_size: 0, error_code: 4 },
  ],
  [
    library,
    'onSearchMusicResult',
    { music_infos: [music(3)], total_musics_size: 78, error_code: -4 },
    { music_infos: [music(3)], total_musics_size: 78, error_code: -4 },
  ],
  [
    library,
    'onHotMusicResult',
    { hot_infos: [hotList(5, [music(1), music(2)]), hotList(6, []), hotList(7, [music(3)])], error_code: -8 },
    { hot_infos: [hotList(5, [music(1), music(2)]), hotList(6, []), hotList(7, [music(3)])], error_code: -8 },
  ],
  [library, 'onHotMusicResult', { hot_infos: [], error_code: 9 }, { hot_infos: [], error_code: 9 }],
  [
    library,
    'onMusicDetailResult',
    { music_info: music(4), error_code: -5 },
    { music_info: music(4), error_code: -5 },
    '+,',
  ],
  [
    library,
    'onDownloadSuccess',
    { download_id: 1, download_info: { local_file_path: '/tmp/ü.mp3', music_id: 'id-2', type: 3 } },
    { download_id: 1, download_info: { local_file_path: '/tmp/ü.mp3', music_id: 'id-2', type: 3 } },
  ],
  [library, 'onDownloadFailed', { download_id: 1, error_code: -2 }, { download_id: 1, error_code: -2 }],
  [
    library,
    'onDownloadMusicProgress',
    { download_id: 1, download_percentage: 99 },
    { download_id: 1, download_percentage: 99 },
  ],
  [library, 'onClearCacheResult', { error_code: -6 }, { error_code: -6 }],
  [player, 'onPlayProgress', { music_id: 'id-1', progress: 2000 }, { music_id: 'id-1', progress: 2000 }],
  [
    player,
    'onPlayStateChanged',
    { music_id: 'id-1', play_state: 2, error_code: -3 },
    { music_id: 'id-1', play_state: 2, error_code: -3 },
  ],
  [scoring, 'onCurrentScoringInfo', { info: score }, { info: score }],
];
