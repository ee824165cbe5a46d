'use strict';

// Devices and their tests, and screen sharing.

const { args, family, managers } = require('../support/method_row.js');
const { number, boolean, string, object, array, untested } = args;

const refusal = '@, param is not valid';

const cameras = family({ owner: 'IVideoDeviceManager', managers: [managers.videoDevices] }, [
  ['enumerateVideoCaptureDevices', [], undefined, { empty: [] }],
  ['setVideoCaptureDevice', [string('cam-ß')], { device_id: 'cam-ß' }, { refusal }],
  ['getVideoCaptureDevice', [], undefined, { empty: '' }],
]);

const audioDevices = { owner: 'IAudioDeviceManager', managers: [managers.audioDevices] };

const soundDevices = family(audioDevices, [
  ['enumerateAudioPlaybackDevices', [], undefined, { empty: [] }],
  ['enumerateAudioCaptureDevices', [], undefined, { empty: [] }],
  ['setAudioPlaybackDevice', [string('spk-1')], { device_id: 'spk-1' }, { refusal }],
  ['setAudioCaptureDevice', [string('mic-1')], { device_id: 'mic-1' }, { refusal }],
  ['getAudioPlaybackDevice', [], undefined, { empty: '' }],
  ['getAudioCaptureDevice', [], undefined, { empty: '' }],
  ['setAudioPlaybackDeviceVolume', [number(201)], { volume: 201 }, { refusal }],
  ['getAudioPlaybackDeviceVolume', [], undefined, { exit: '-@, volume: 0, ret: #' }],
  ['setAudioCaptureDeviceVolume', [number(4000000000)], { volume: 4000000000 }, { refusal }],
  ['getAudioCaptureDeviceVolume', [], undefined, { exit: '-@, volume: 0, ret: #' }],
  ['setAudioPlaybackDeviceMute', [boolean(true)], { mute: true }, { refusal }],
  ['getAudioPlaybackDeviceMute'],
  ['setAudioCaptureDeviceMute', [boolean(true)], { mute: true }, { refusal }],
  ['getAudioCaptureDeviceMute'],
  ['followSystemCaptureDevice', [boolean(true)], { followed: true }, { exit: '+@ ret: #' }],
  ['followSystemPlaybackDevice', [boolean(true)], { followed: true }, { exit: '+@ ret: #' }],
  ['enableFilterSilentDevice', [boolean(true)], { enable: true }],
  ['enableVocalInstrumentBalance', [boolean(true)], { enable: true }],
]);

const echo = { audio_properties_report_interval: 250, uid: 'ich', room_id: 'echo', token: 'marke' };

const tests = family({ ...audioDevices, exit: '@, ret: #' }, [
  [
    'startEchoTest',
    [object(echo), number(5)],
    { config: echo, delay_time: 5 },
    { says: ['@, play_delay_time: 5'] },
  ],
  ['stopEchoTest', [], {}],
  ['initAudioPlaybackDeviceForTest', [string('spk-2')], { device_id: 'spk-2' }],
  ['initAudioCaptureDeviceForTest', [string('mic-2')], { device_id: 'mic-2' }],
  [
    'startAudioPlaybackDeviceTest',
    [string('/tmp/probe.wav'), untested(333)],
    { test_audio_file_path: '/tmp/probe.wav', indication_interval: 333 },
    { says: ['@, file_path: /tmp/probe.wav'] },
  ],
  ['stopAudioPlaybackDeviceTest', [], {}],
  ['startAudioDeviceRecordTest', [number(250)], { indication_interval: 250 }],
  ['stopAudioDeviceRecordAndPlayTest', [], {}],
  ['stopAudioDevicePlayTest', [], {}],
  [
    'startHardwareEchoDetection',
    [string('/tmp/klang.wav')],
    { test_audio_file_path: '/tmp/klang.wav' },
    { says: ['@, file_path: /tmp/klang.wav'] },
  ],
  ['stopHardwareEchoDetection', [], {}],
]);

const rect = (n) => ({ x: -n, y: n + 1, width: n + 2, height: n + 3 });
const source = {
  type: 1,
  source_id: -77,
  source_name: 'Fenster',
  application: 'Programm',
  pid: 4711,
  primary_monitor: true,
  region_rect: rect(10),
};
const highlight = { enable_highlight: true, border_color: -65536, border_width: 4 };
const capture = {
  region_rect: rect(20),
  capture_mouse_cursor: 1,
  filter_config: [101, -102],
  highlight_config: highlight,
};
const windows = { excluded_window_list: [101, -102], excluded_window_count: 2 };
const windowLines = ['@, wndSourceId: 101', '@, wndSourceId: -102'];

const screens = family({}, [
  ['setScreenAudioStreamIndex', [number(1)], { stream_index: 1 }, { refusal: '@ param is not valid' }],
  ['startScreenAudioCapture', [], {}],
  ['startMacScreenAudioCapture', [string('loop-1')], { device_id: 'loop-1' }],
  ['stopScreenAudioCapture', [], {}],
  [
    'startScreenVideoCapture',
    [object(source), object(capture)],
    { source_info: source, capture_params: { ...capture, filter_config: windows } },
    { says: windowLines },
  ],
  ['updateScreenCaptureRegion', [object(rect(30))], { region_rect: rect(30) }],
  ['updateScreenCaptureHighlightConfig', [object(highlight)], { highlight_config: highlight }],
  ['updateScreenCaptureMouseCursor', [number(1)], { capture_mouse_cursor: 1 }],
  [
    'updateScreenCaptureFilterConfig',
    [array([101, -102])],
    { filter_config: windows },
    { refusal: '@, Param is invalid, filters', says: windowLines },
  ],
  ['stopScreenVideoCapture', [], {}],
  ['getScreenCaptureSourceList', [], undefined, { empty: [] }],
  [
    'getThumbnail',
    [number(1), number(2), untested(3), untested(4)],
    undefined,
    { empty: {} },
  ],
  [
    'getWindowAppIcon',
    [number(1), untested(2), untested(3)],
    undefined,
    { empty: {} },
  ],
  ['setScreenAudioChannel', [number(2)], { channel: 2 }],
]);

module.exports = [...cameras, ...soundDevices, ...tests, ...screens];
