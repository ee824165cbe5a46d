'use strict';

// Every event of a room: its name, the callback's arguments, the log line around "name(line)", and the payload with its
// keys in their order. Counts of lists and bytes are left out of the arguments: the engine counts them. Values differ
// from each other so that none can stand in for another; no text is part of another.

/** Bytes with a zero byte inside: what follows it stays out of payloads. */
const bytes = (text) => Buffer.from(`${text}\0rest`);

/** {first: 1, second: 2, ...}, with an offset so that two records do not hold the same numbers. */
const numbered = (offset, ...names) => Object.fromEntries(names.map((name, i) => [name, offset + i]));

const roomStats = {
  tx_lostrate: 0.125,
  rx_lostrate: 0.25,
  rtt: 33,
  duration: 44,
  tx_bytes: 9007199254740993n,
  rx_bytes: 4294967301n,
  ...numbered(
    100,
    'tx_kbitrate',
    'rx_kbitrate',
    'rx_audio_kbitrate',
    'tx_audio_kbitrate',
    'rx_video_kbitrate',
    'tx_video_kbitrate',
    'rx_screen_kbitrate',
    'tx_screen_kbitrate',
    'user_count',
  ),
  cpu_app_usage: 0.5,
  cpu_total_usage: 0.75,
  ...numbered(200, 'tx_jitter', 'rx_jitter', 'tx_cellular_kbitrate', 'rx_cellular_kbitrate'),
};
// Spreading keeps the keys' order.
const roomStatsPayload = { ...roomStats, tx_bytes: 9007199254740992, rx_bytes: 4294967301 };

const localAudio = {
  audio_loss_rate: 0.125,
  ...numbered(
    10,
    'send_kbitrate',
    'record_sample_rate',
    'stats_interval',
    'rtt',
    'num_channels',
    'sent_sample_rate',
    'jitter',
  ),
};
const localVideo = {
  ...numbered(
    20,
    'sent_kbitrate',
    'input_frame_rate',
    'sent_frame_rate',
    'encoder_output_frame_rate',
    'renderer_output_frame_rate',
    'stats_interval',
  ),
  video_loss_rate: 0.25,
  ...numbered(
    30,
    'rtt',
    'encoded_bitrate',
    'encoded_frame_width',
    'encoded_frame_height',
    'encoded_frame_count',
    'codec_type',
  ),
  is_screen: true,
  jitter: 25,
  codec_elapse_per_frame: 0,
};

const remoteAudio = {
  audio_loss_rate: 0.125,
  ...numbered(
    40,
    'received_kbitrate',
    'stall_count',
    'stall_duration',
    'e2e_delay',
    'playout_sample_rate',
    'stats_interval',
    'rtt',
    'total_rtt',
    'quality',
    'jitter_buffer_delay',
    'num_channels',
    'received_sample_rate',
    'frozen_rate',
    'concealed_samples',
    'concealment_event',
    'dec_sample_rate',
    'dec_duration',
    'jitter',
  ),
};
const remoteVideo = {
  ...numbered(60, 'width', 'height'),
  video_loss_rate: 0.25,
  ...numbered(
    70,
    'received_kbitrate',
    'decoder_output_frame_rate',
    'renderer_output_frame_rate',
    'stall_count',
    'stall_duration',
    'e2e_delay',
  ),
  is_screen: true,
  ...numbered(
    80,
    'stats_interval',
    'rtt',
    'frozen_rate',
    'codec_type',
    'video_index',
    'jitter',
    'codec_elapse_per_frame',
  ),
};

const networkQuality = (uid, offset) => ({
  uid,
  fraction_lost: 0.125 * offset,
  ...numbered(offset * 10, 'rtt', 'rx_quality', 'total_bandwidth', 'tx_quality'),
});

const stateChange = [
  { room_id: 'room-1', uid: 'user-2', state: -3, extra_info: '{"extra-4":1}' },
  ', status: 0, state: -3',
  { room_id: 'room-1', uid: 'user-2', state: -3, extra_info: '{"extra-4":1}' },
];

const subtitle = (uid, text, sequence, definite) => ({
  user_id: uid,
  text,
  language: `lang-${sequence}`,
  mode: 1,
  sequence,
  definite,
});

/** Formats in which the name is not all that stands before the line. */
const prefixes = { onForwardStreamStateChanged: '-' };

const events = [
  ['onRoomStateChanged', ...stateChange],
  ['onStreamStateChanged', ...stateChange],
  ['onLeaveRoom', { stats: roomStats }, ', status: 0', roomStatsPayload],
  [
    'onUserJoined',
    { user_info: { uid: 'user-1', extra_info: 'extra-2' }, elapsed: 33 },
    ', status: 0, userId: user-1',
    { user_info: { uid: 'user-1', extra_info: 'extra-2' }, elapsed: 33 },
  ],
  ['onUserLeave', { uid: 'user-1', reason: 2 }, ', status: 0', { uid: 'user-1', reason: 2 }],
  ['onTokenWillExpire', {}, ', status: 0', {}],
  ['onAVSyncStateChange', { state: 2 }, ', status: 0', { state: 2 }],
  ['onRoomStats', { stats: roomStats }, ', status: 0', roomStatsPayload],
  [
    'onLocalStreamStats',
    {
      stats: {
        audio_stats: localAudio,
        video_stats: localVideo,
        local_tx_quality: 4,
        local_rx_quality: 5,
        is_screen: false,
      },
    },
    ', status: 0',
    {
      audio_stats: localAudio,
      video_stats: { ...localVideo, jitter: true, codec_elapse_per_frame: false },
      local_tx_quality: 4,
      local_rx_quality: 5,
      is_screen: false,
    },
  ],
  [
    'onLocalStreamStats',
    {
      stats: {
        audio_stats: localAudio,
        video_stats: { ...localVideo, is_screen: false, jitter: 0, codec_elapse_per_frame: 16 },
        local_tx_quality: 4,
        local_rx_quality: 5,
        is_screen: true,
      },
    },
    ', status: 0',
    {
      audio_stats: localAudio,
      video_stats: { ...localVideo, is_screen: false, jitter: false, codec_elapse_per_frame: true },
      local_tx_quality: 4,
      local_rx_quality: 5,
      is_screen: true,
    },
  ],
  [
    'onRemoteStreamStats',
    {
      stats: {
        uid: 'user-1',
        audio_stats: remoteAudio,
        video_stats: remoteVideo,
        remote_tx_quality: 4,
        remote_rx_quality: 5,
        is_screen: false,
      },
    },
    ', status: 0',
    {
      uid: 'user-1',
      audio_stats: remoteAudio,
      video_stats: remoteVideo,
      remote_tx_quality: 4,
      remote_rx_quality: 5,
      is_screen: false,
    },
  ],
  ['onUserPublishStream', { uid: 'user-1', type: 2 }, ', status: 0', { uid: 'user-1', type: 2 }],
  [
    'onUserUnpublishStream',
    { uid: 'user-1', type: 2, reason: 3 },
    ', status: 0',
    { uid: 'user-1', type: 2, reason: 3 },
  ],
  ['onUserPublishScreen', { uid: 'user-1', type: 2 }, ', status: 0', { uid: 'user-1', type: 2 }],
  [
    'onUserUnpublishScreen',
    { uid: 'user-1', type: 2, reason: 3 },
    ', status: 0',
    { uid: 'user-1', type: 2, reason: 3 },
  ],
  [
    'onStreamSubscribed',
    {
      state_code: 1,
      user_id: 'user-2',
      info: {
        is_screen: true,
        sub_video: false,
        sub_audio: true,
        ...numbered(
          3,
          'video_index',
          'priority',
          'svc_layer',
          'framerate',
          'sub_width',
          'sub_height',
          'sub_video_index',
        ),
      },
    },
    ', status: 0',
    {
      state_code: 1,
      user_id: 'user-2',
      info: {
        is_screen: true,
        sub_video: false,
        sub_audio: true,
        // One key ends in a no-break space.
        ...numbered(
          3,
          'video_index\u00a0',
          'priority',
          'svc_layer',
          'framerate',
          'sub_width',
          'sub_height',
          'sub_video_index',
        ),
      },
    },
  ],
  ['onVideoStreamBanned', { uid: 'user-1', banned: true }, ', status: 0', { uid: 'user-1', banned: true }],
  ['onAudioStreamBanned', { uid: 'user-1', banned: false }, ', status: 0', { uid: 'user-1', banned: false }],
  [
    'onRoomMessageReceived',
    { uid: 'user-1', message: 'grüße-2' },
    ', status: 0',
    { message: 'grüße-2', uid: 'user-1' },
  ],
  [
    'onRoomBinaryMessageReceived',
    { uid: 'user-1', message: bytes('binär-2') },
    ', status: 0',
    { message: 'binär-2', uid: 'user-1' },
  ],
  [
    'onUserMessageReceived',
    { uid: 'user-1', message: '消息-2' },
    ', status: 0',
    { uid: 'user-1', message: '消息-2' },
  ],
  [
    'onUserBinaryMessageReceived',
    { uid: 'user-1', message: bytes('binär-2') },
    ', status: 0',
    { message: 'binär-2', uid: 'user-1' },
  ],
  [
    'onUserMessageSendResult',
    { msgid: 9007199254740993n, error: -2 },
    ', status: 0',
    { msgid: 9007199254740992, error: -2 },
  ],
  ['onRoomMessageSendResult', { msgid: 4294967299n, error: 2 }, ', status: 0', { msgid: 4294967299, error: 2 }],
  [
    'onForwardStreamStateChanged',
    {
      infos: [
        { state: 1, error: -2, room_id: 'room-3' },
        { state: 4, error: -5, room_id: 'room-6' },
      ],
    },
    ', status: 0',
    {
      infos: [
        { state: 1, error: -2, room_id: 'room-3' },
        { state: 4, error: -5, room_id: 'room-6' },
      ],
      info_count: 2,
    },
  ],
  ['onForwardStreamStateChanged', { infos: [] }, ', status: 0', { infos: [], info_count: 0 }],
  [
    'onForwardStreamEvent',
    {
      infos: [
        { room_id: 'room-1', event: 2 },
        { room_id: 'room-3', event: 4 },
      ],
    },
    ', status: 0',
    {
      infos: [
        { room_id: 'room-1', event: 2 },
        { room_id: 'room-3', event: 4 },
      ],
      info_count: 2,
    },
  ],
  ['onForwardStreamEvent', { infos: [] }, ', status: 0', { infos: [], info_count: 0 }],
  [
    'onNetworkQuality',
    {
      local_quality: networkQuality('user-1', 1),
      remote_qualities: [networkQuality('user-2', 2), networkQuality('user-3', 3)],
    },
    ' status:0',
    {
      localQuality: networkQuality('user-1', 1),
      remoteQualities: [networkQuality('user-2', 2), networkQuality('user-3', 3)],
    },
  ],
  [
    'onNetworkQuality',
    { local_quality: networkQuality('user-1', 1), remote_qualities: [] },
    ' status:0',
    { localQuality: networkQuality('user-1', 1), remoteQualities: [] },
  ],
  ['onPublishPrivilegeTokenWillExpire', {}, ' status:0', {}],
  ['onSubscribePrivilegeTokenWillExpire', {}, ' status:0', {}],
  ['onSetRoomExtraInfoResult', { task_id: 1, error_code: -2 }, ', status: 0', { task_id: 1, error_code: -2 }],
  [
    'onRoomExtraInfoUpdate',
    { key: 'key-1', value: 'value-2', last_update_user_id: 'user-3', last_update_time_ms: 1700000000123n },
    ', status: 0',
    { key: 'key-1', value: 'value-2', last_update_user_id: 'user-3', last_update_time_ms: 1700000000123 },
  ],
  [
    'onSubtitleStateChanged',
    { state: 1, error_code: -2, error_message: 'grund-3' },
    ', status: 0',
    { state: 1, error_code: -2, error_message: 'grund-3' },
  ],
  [
    'onSubtitleMessageReceived',
    { subtitles: [subtitle('user-1', '你好-1', 7, true), subtitle('user-2', 'ça va-2', 8, false)] },
    ', status: 0',
    { subtitles: [subtitle('user-1', '你好-1', 7, true), subtitle('user-2', 'ça va-2', 8, false)] },
  ],
  ['onSubtitleMessageReceived', { subtitles: [] }, ', status: 0', { subtitles: [] }],
  [
    'onUserVisibilityChanged',
    { current_user_visibility: true, error_code: -2 },
    ', status: 0',
    { current_user_visibility: true, error_code: -2 },
  ],
  [
    'onUserVisibilityChanged',
    { current_user_visibility: false, error_code: 3 },
    ', status: 0',
    { current_user_visibility: false, error_code: 3 },
  ],
];

module.exports = { events, prefixes };
