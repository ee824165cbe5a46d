'use strict';

// Every event of the engine: its name, the callback's arguments, the log line after "name(line)", and the payload
// with its keys in their order. Counts of lists and bytes are left out of the arguments: the engine counts them.
// Values differ from each other so that none can stand in for another; no text is part of another.

/** Bytes with a zero byte inside: what follows it stays out of payloads and log lines. */
const bytes = (text) => Buffer.from(`${text}\0rest`);

const spectrum = (scale) => Array.from({ length: 257 }, (_, i) => i * scale);

const key = { room_id: 'room-1', user_id: 'user-2', stream_index: 3 };
const roomUserIndex = { room_id: 'room-1', user_id: 'user-2', stream_index: 3 };
const roomIndexUser = { room_id: 'room-1', stream_index: 3, user_id: 'user-2' };
const userRoomIndex = { user_id: 'user-2', room_id: 'room-1', stream_index: 3 };

const info = { width: 1281, height: 722, rotation: 90 };

/** A user's first frame: most put the user first in the payload. */
const firstFrame = {
  args: { room_id: 'room-1', user: { user_id: 'user-2', meta_data: 'méta-3' }, state: 4 },
  userFirst: { user: { user_id: 'user-2', meta_data: 'méta-3' }, state: 4, room_id: 'room-1' },
  roomFirst: { room_id: 'room-1', user: { user_id: 'user-2', meta_data: 'méta-3' }, state: 4 },
  log: ', status: 0, userId:user-2, meta_data: méta-3, state: 4',
};

const deviceState = [
  { device_id: 'device-1', device_type: 2, device_state: 3, device_error: -4 },
  ', n_status: 0, device_id:device-1, device_type:2, device_state:3, device_error:-4',
  { device_id: 'device-1', device_type: 2, device_state: 3, device_error: -4 },
];
const deviceWarning = [
  { device_id: 'device-1', device_type: 2, device_warning: 3 },
  ', n_status: 0, device_id:device-1, device_type:2, device_warning:3',
  { device_id: 'device-1', device_type: 2, device_warning: 3 },
];

const recordingInfo = { file_path: '/tmp/rec-1.mp4', video_codec_type: 12, width: 1281, height: 722 };

module.exports = [
  ['onWarning', { warn: -5001 }, ', n_status: 0, warn: -5001', { warn: -5001 }],
  ['onError', { err: -1009 }, ', n_status: 0, err: -1009', { err: -1009 }],
  [
    'onDeadLockError',
    { task_name: 'tâche-1', lasting_times: 2001 },
    ', n_status: 0, task_name: tâche-1, lasting_times:2001',
    { task_name: 'tâche-1', lasting_times: 2001 },
  ],
  [
    'onExtensionAccessError',
    { extension_name: 'extension-1', msg: '消息-2' },
    ', n_status: 0, extensionName:extension-1, msg:消息-2',
    { extension_name: 'extension-1', msg: '消息-2' },
  ],
  [
    'onAudioMixingStateChanged',
    { mix_id: 1, state: 2, error: -3 },
    ', n_status: 0, mix_id:1, state:2, error:-3',
    { mix_id: 1, state: 2, error: -3 },
  ],
  [
    'onAudioMixingPlayingProgress',
    { mix_id: 1, progress: 2000 },
    ', n_status: 0, mix_id:1, progress:2000',
    { progress: 2000, mix_id: 1 },
  ],
  [
    'onLogReport',
    { log_type: 'type-1', log_content: '{"content-2":1}' },
    ', n_status: 0, log_type:type-1, log_content:{"content-2":1}',
    { log_type: 'type-1', log_content: '{"content-2":1}' },
  ],
  ['onConnectionStateChanged', { state: 3 }, ', n_status: 0, state:3', { state: 3 }],
  ['onNetworkTypeChanged', { type: -1 }, ', n_status: 0, type:-1', { type: -1 }],
  [
    'onSimulcastSubscribeFallback',
    {
      event: {
        uid: 'user-1',
        is_screen: true,
        before_video_index: -1,
        after_video_index: 2,
        before_enable: false,
        after_enable: true,
        reason: 3,
      },
    },
    ', n_status: 0, uid:user-1, reason:3',
    {
      uid: 'user-1',
      is_screen: true,
      before_video_index: -1,
      after_video_index: 2,
      before_enable: false,
      after_enable: true,
      reason: 3,
    },
  ],
  [
    'onSimulcastSubscribeFallback',
    { event: { uid: 'user-1', before_enable: true, reason: 4 } },
    ', n_status: 0, uid:user-1, reason:4',
    {
      uid: 'user-1',
      is_screen: false,
      before_video_index: 0,
      after_video_index: 0,
      before_enable: true,
      after_enable: false,
      reason: 4,
    },
  ],
  [
    'onPerformanceAlarms',
    { room_id: 'room-1', mode: 2, reason: 3, data: { width: 1281, height: 722, frame_rate: 16 } },
    ', n_status: 0, room_id:room-1, mode:2, reason:3',
    { mode: 2, room_id: 'room-1', reason: 3, data: { width: 1281, height: 722, frame_rate: 16 } },
  ],
  ['onAudioDeviceStateChanged', ...deviceState],
  ['onVideoDeviceStateChanged', ...deviceState],
  ['onAudioDeviceWarning', ...deviceWarning],
  ['onVideoDeviceWarning', ...deviceWarning],
  [
    'onSysStats',
    {
      stats: {
        cpu_cores: 8,
        cpu_app_usage: 0.25,
        cpu_total_usage: 0.5,
        memory_usage: 1234.125,
        full_memory: 9007199254740993n,
        total_memory_usage: 6442450945n,
        free_memory: 4294967297n,
        memory_ratio: 0.0625,
        total_memory_ratio: 0.75,
      },
    },
    ', n_status: 0, cpu_cores:8, cpu_app_usage:0.250000, cpu_total_usage:0.500000, memory_usage:1234.125000, ' +
      'full_memory:9007199254740993, total_memory_usage:6442450945',
    {
      cpu_cores: 8,
      cpu_app_usage: 0.25,
      cpu_total_usage: 0.5,
      memory_usage: 1234.125,
      full_memory: 9007199254740992,
      total_memory_usage: 6442450945,
      free_memory: 4294967297,
      memory_ratio: 0.0625,
      total_memory_ratio: 0.75,
    },
  ],
  [
    'onCreateRoomStateChanged',
    { room_id: 'room-1', error_code: -2 },
    ', n_status: 0, room_id:room-1, error_code:-2',
    { room_id: 'room-1', error_code: -2 },
  ],
  ['onHttpProxyState', { state: 1 }, ', n_status: 0, state:1', { state: 1 }],
  ['onHttpsProxyState', { state: 2 }, ', n_status: 0, state:2', { state: 2 }],
  [
    'onSocks5ProxyState',
    { state: 1, cmd: 'cmd-2', proxy_address: 'proxy-3:80', local_address: 'local-4:81', remote_address: 'far-5:82' },
    ', n_status: 0, state:1, cmd:cmd-2, proxy_address:proxy-3:80, local_address:local-4:81, remote_address:far-5:82',
    { state: 1, cmd: 'cmd-2', proxy_address: 'proxy-3:80', local_address: 'local-4:81', remote_address: 'far-5:82' },
  ],
  [
    'onRecordingStateUpdate',
    { type: 1, state: 2, error_code: -3, info: recordingInfo },
    ', n_status: 0, type:1, state:2, error_code:-3',
    { type: 1, state: 2, error_code: -3, info: recordingInfo },
  ],
  [
    'onRecordingProgressUpdate',
    { type: 1, process: { duration: 2000, file_size: 5000000123n }, info: recordingInfo },
    // The size is logged as an integer of 32 bits.
    ', n_status: 0, type:1, duration:2000, file_size:705032827, file_path:/tmp/rec-1.mp4',
    { type: 1, process: { duration: 2000, file_size: 5000000123 }, info: recordingInfo },
  ],
  [
    'onAudioRecordingStateUpdate',
    { state: 1, error_code: -2 },
    ', n_status: 0, state:1, error_code:-2',
    { state: 1, error_code: -2 },
  ],
  [
    'onLoginResult',
    { uid: 'user-1', error_code: -2, elapsed: 333 },
    ', n_status: 0, uid:user-1 error_code:-2 lapsed:333',
    { uid: 'user-1', error_code: -2, elapsed: 333 },
  ],
  ['onLogout', { reason: 2 }, ', n_status: 0, reason:2', { reason: 2 }],
  ['onServerParamsSetResult', { error: 404 }, ', n_status: 0, error:404', { error: 404 }],
  [
    'onGetPeerOnlineStatus',
    { peer_user_id: 'peer-1', status: 2 },
    ', n_status: 0, peer_uid:peer-1, status:2',
    { peer_user_id: 'peer-1', status: 2 },
  ],
  [
    'onUserMessageReceivedOutsideRoom',
    { uid: 'user-1', message: 'grüße-2' },
    ', n_status: 0, uid:user-1, message:grüße-2',
    { uid: 'user-1', message: 'grüße-2' },
  ],
  [
    'onUserBinaryMessageReceivedOutsideRoom',
    { uid: 'user-1', message: bytes('binär-2') },
    ', n_status: 0, uid:user-1, size:13, message:binär-2',
    { uid: 'user-1', message: 'binär-2' },
  ],
  [
    'onUserMessageSendResultOutsideRoom',
    { msgid: 9007199254740993n, error: -2 },
    // Message ids are logged as integers of 32 bits.
    ', n_status: 0, msgid:1, error:-2',
    { msgid: 9007199254740992, error: -2 },
  ],
  [
    'onServerMessageSendResult',
    { msgid: 4294967299n, error: 500, msg: 'antwort-3' },
    ', n_status: 0, msgid:3, error:500, msg:antwort-3',
    { msgid: 4294967299, error: 500, msg: 'antwort-3' },
  ],
  [
    'onSEIMessageReceived',
    { stream_key: key, message: bytes('sei-4') },
    ', n_status: 0, room_id:room-1, user_id:user-2, stream_index:3, length:10, msg:sei-4',
    { stream_key: roomIndexUser, message: 'sei-4' },
  ],
  [
    'onSEIStreamUpdate',
    { stream_key: key, type: 4 },
    ', n_status: 0, room_id:room-1, user_id:user-2, stream_index:3, type:4',
    { stream_key: roomIndexUser, type: 4 },
  ],
  [
    'onLocalAudioPropertiesReport',
    {
      audio_properties_infos: [
        {
          stream_index: 1,
          audio_properties_info: {
            linear_volume: 201,
            nonlinear_volume: -32,
            vad: 1,
            voice_pitch: 220.5,
            spectrum: spectrum(0.25),
          },
        },
        {
          stream_index: 2,
          audio_properties_info: { linear_volume: 7, nonlinear_volume: -126, spectrum: spectrum(0.5) },
        },
      ],
    },
    ', n_status: 0, audio_properties_info_number:2',
    {
      audio_properties_infos: [
        {
          stream_index: 1,
          audio_properties_info: {
            linear_volume: 201,
            nonlinear_volume: -32,
            vad: 1,
            voice_pitch: 220.5,
            spectrum: spectrum(0.25),
          },
        },
        {
          stream_index: 2,
          audio_properties_info: {
            linear_volume: 7,
            nonlinear_volume: -126,
            vad: 0,
            voice_pitch: 0,
            spectrum: spectrum(0.5),
          },
        },
      ],
      audio_properties_info_number: 2,
    },
  ],
  [
    'onLocalAudioPropertiesReport',
    { audio_properties_infos: [] },
    ', n_status: 0, audio_properties_info_number:0',
    { audio_properties_infos: [], audio_properties_info_number: 0 },
  ],
  [
    'onRemoteAudioPropertiesReport',
    {
      audio_properties_infos: [
        {
          stream_key: key,
          audio_properties_info: {
            linear_volume: 201,
            nonlinear_volume: -32,
            vad: 1,
            voice_pitch: 220.5,
            spectrum: spectrum(0.25),
          },
        },
        {
          stream_key: { room_id: 'room-4', user_id: 'user-5', stream_index: 6 },
          audio_properties_info: { linear_volume: 7, nonlinear_volume: -126, spectrum: spectrum(0.5) },
        },
      ],
      total_remote_volume: 123,
    },
    ', n_status: 0, audio_properties_info_number:2, total_remote_volume=123',
    {
      audio_properties_infos: [
        {
          stream_key: roomUserIndex,
          audio_properties_info: { linear_volume: 201, nonlinear_volume: -32, vad: 1, spectrum: spectrum(0.25) },
        },
        {
          stream_key: { room_id: 'room-4', user_id: 'user-5', stream_index: 6 },
          audio_properties_info: { linear_volume: 7, nonlinear_volume: -126, vad: 0, spectrum: spectrum(0.5) },
        },
      ],
      audio_properties_info_number: 2,
      total_remote_volume: 123,
    },
  ],
  [
    'onRemoteAudioPropertiesReport',
    { audio_properties_infos: [], total_remote_volume: 5 },
    ', n_status: 0, audio_properties_info_number:0, total_remote_volume=5',
    { audio_properties_infos: [], audio_properties_info_number: 0, total_remote_volume: 5 },
  ],
  ['onAudioPlaybackDeviceTestVolume', { volume: 128 }, ', n_status: 0, volume:128', { volume: 128 }],
  [
    'onActiveSpeaker',
    { room_id: 'room-1', uid: 'user-2' },
    ', n_status: 0, room_id:room-1, uid:user-2',
    { room_id: 'room-1', uid: 'user-2' },
  ],
  [
    'onAudioDeviceVolumeChanged',
    { device_type: 1, volume: 200, muted: true },
    ', n_status: 0, device_type:1, volume:200, muted:1',
    { device_type: 1, volume: 200, muted: true },
  ],
  [
    'onAudioDeviceVolumeChanged',
    { device_type: 2, volume: 201, muted: false },
    ', n_status: 0, device_type:2, volume:201, muted:0',
    { device_type: 2, volume: 201, muted: false },
  ],
  [
    'onUserStartVideoCapture',
    { room_id: 'room-1', user_id: 'user-2' },
    ', n_status: 0, room_id:room-1, user_id:user-2',
    { user_id: 'user-2', room_id: 'room-1' },
  ],
  [
    'onUserStopVideoCapture',
    { room_id: 'room-1', user_id: 'user-2' },
    ', n_status: 0, room_id:room-1, user_id:user-2',
    { user_id: 'user-2', room_id: 'room-1' },
  ],
  ['onLocalAudioStateChanged', { state: 1, error: -2 }, ', n_status: 0, state:1, error:-2', { state: 1, error: -2 }],
  [
    'onStreamSyncInfoReceived',
    { stream_key: key, stream_type: 4, data: bytes('sync-5') },
    ', n_status: 0, room_id:room-1, user_id:user-2',
    { stream_key: roomUserIndex, stream_type: 4, data: 'sync-5' },
  ],
  [
    'onNetworkDetectionResult',
    { type: 1, quality: 2, rtt: 33, lost_rate: 0.125, bitrate: 444, jitter: 5 },
    ', n_status: 0, type:1, quality:2, rtt:33, lost_rate:0.125000, bitrate:444, jitter:5',
    { type: 1, quality: 2, rtt: 33, lost_rate: 0.125, bit_rate: 444, jitter: 5 },
  ],
  ['onNetworkDetectionStopped', { reason: 2 }, ', n_status: 0, reason:2', { reason: 2 }],
  [
    'onPlayPublicStreamResult',
    { public_stream_id: 'public-1', error_code: -2 },
    ', n_status: 0, error_code:-2',
    { public_stream_id: 'public-1', error_code: -2 },
  ],
  [
    'onPublicStreamSEIMessageReceived',
    { public_stream_id: 'public-1', message: bytes('sei-2'), source_type: 3 },
    ', status: 0',
    { public_stream_id: 'public-1', message: 'sei-2', source_type: 3 },
  ],
  [
    'onPublicStreamSEIMessageReceivedWithChannel',
    { public_stream_id: 'public-1', channel_id: 2, message: bytes('sei-3') },
    ', status: 0',
    { public_stream_id: 'public-1', channel_id: 2, message: 'sei-3', message_length: 10 },
  ],
  [
    'onPublicStreamDataMessageReceived',
    { public_stream_id: 'public-1', message: bytes('data-2'), source_type: 3 },
    ', status: 0',
    { public_stream_id: 'public-1', message: 'data-2', source_type: 3 },
  ],
  [
    'onFirstPublicStreamVideoFrameDecoded',
    { public_stream_id: 'public-1', info },
    ', status: 0',
    { public_stream_id: 'public-1', info },
  ],
  [
    'onPushPublicStreamResult',
    { room_id: 'room-1', public_stream_id: 'public-2', error_code: -3 },
    ', status: 0, publicStreamId: public-2, error_code: -3',
    { room_id: 'room-1', public_stream_id: 'public-2', error_code: -3 },
  ],
  [
    'onFirstPublicStreamAudioFrame',
    { public_stream_id: 'public-1' },
    ', status: 0',
    { public_stream_id: 'public-1' },
  ],
  ['onFirstLocalVideoFrameCaptured', { index: 1, info }, ', status: 0', { index: 1, info }],
  ['onLocalVideoSizeChanged', { index: 1, info }, ', status: 0', { index: 1, info }],
  ['onRemoteVideoSizeChanged', { key, info }, ', status: 0', { key: userRoomIndex, info }],
  [
    'onUserStartAudioCapture',
    { room_id: 'room-1', user_id: 'user-2' },
    ', status: 0, user_id:user-2',
    { user_id: 'user-2', room_id: 'room-1' },
  ],
  [
    'onUserStopAudioCapture',
    { room_id: 'room-1', user_id: 'user-2' },
    ', status: 0, user_id:user-2',
    { user_id: 'user-2', room_id: 'room-1' },
  ],
  ['onFirstLocalAudioFrame', { index: 1 }, ', status: 0, streamIndex=1', { index: 1 }],
  [
    'onFirstRemoteAudioFrame',
    { key },
    ', status: 0, streamIndex=3, roomId = room-1, uid = user-2',
    roomIndexUser,
  ],
  ['onFirstRemoteVideoFrameRendered', { key, info }, ', status: 0', { key: userRoomIndex, info }],
  ['onFirstRemoteVideoFrameDecoded', { key, info }, ' status: 0', { key: userRoomIndex, info }],
  [
    'onRemoteAudioStateChanged',
    { key, state: 4, reason: 5 },
    ', status: 0, streamIndex: 3, roomId: room-1, uid: user-2',
    { key: roomIndexUser, state: 4, reason: 5 },
  ],
  [
    'onLocalVideoStateChanged',
    { stream_index: 1, state: 2, error: -3 },
    ', status: 0, streamIndex: 1, state: 2, error: -3',
    { streamIndex: 1, state: 2, error: -3 },
  ],
  [
    'onRemoteVideoStateChanged',
    { key, state: 4, reason: 5 },
    ', status: 0, streamIndex: 3, roomId: room-1, uid: user-2',
    { key: roomIndexUser, state: 4, reason: 5 },
  ],
  [
    'onAudioFrameSendStateChanged',
    firstFrame.args,
    ', status: 0, userId:user-2 meta_data: méta-3, state: 4',
    firstFrame.userFirst,
  ],
  [
    'onVideoFrameSendStateChanged',
    firstFrame.args,
    ', status: 0, userId: user-2, meta_data: méta-3, state: 4',
    firstFrame.userFirst,
  ],
  ['onScreenVideoFrameSendStateChanged', firstFrame.args, firstFrame.log, firstFrame.userFirst],
  ['onAudioFramePlayStateChanged', firstFrame.args, firstFrame.log, firstFrame.userFirst],
  ['onVideoFramePlayStateChanged', firstFrame.args, firstFrame.log, firstFrame.userFirst],
  ['onScreenVideoFramePlayStateChanged', firstFrame.args, firstFrame.log, firstFrame.userFirst],
  ['onHardwareEchoDetectionResult', { result: 3 }, ', status: 0', { hardware_echo_detection_result: 3 }],
  [
    'onLocalProxyStateChanged',
    { local_proxy_type: 1, local_proxy_state: 2, local_proxy_error: -3 },
    ', status: 0',
    { local_proxy_type: 1, local_proxy_state: 2, local_proxy_error: -3 },
  ],
  [
    'onRemoteVideoSuperResolutionModeChanged',
    { stream_key: key, mode: 4, reason: 5 },
    ', status: 0',
    { stream_key: roomUserIndex, mode: 4, reason: 5 },
  ],
  ['onEchoTestResult', { result: 4 }, ', status: 0', { result: 4 }],
  ['onScreenAudioFrameSendStateChanged', firstFrame.args, ', status: 0', firstFrame.roomFirst],
  ['onScreenAudioFramePlayStateChanged', firstFrame.args, ', status: 0', firstFrame.roomFirst],
  ['onCloudProxyConnected', { interval: 321 }, ', status: 0', { interval: 321 }],
  ['onNetworkTimeSynchronized', {}, ', status: 0', {}],
];
