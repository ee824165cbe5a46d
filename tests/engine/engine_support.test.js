'use strict';
// docs/engine-support.md says what the embedded engine can do. Every method is called with right arguments, and what
// comes of it has to be what the table says: an operation that is added, or lost, needs its row changed.

const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');

const sdk = require('../..');
const { readLog } = require('../module/support/log_file.js');
const { endProcessAfterTests } = require('../module/support/process_end.js');
const { Samples } = require('../package/support/samples.js');
const { methodsOf } = require('../package/support/typings.js');
const { startDisplay, windowWithIcon } = require('./support/display.js');
const { writeWave } = require('./support/waves.js');

const kNotSupported = -1001;
const page = path.join(__dirname, '../../docs/engine-support.md');
// The private service of this test's own.
process.env.XDG_RUNTIME_DIR = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-service-'));
const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-test-'));

/** What becomes of a call, by the states of the page. */
const outcomes = {
  works: 'done',
  partly: 'done',
  "the module's own": 'done',
  'not supported': 'not supported',
};

/** The page's rows: { 'class.method': outcome }. */
function readPage() {
  const rows = {};
  let className;
  for (const line of fs.readFileSync(page, 'utf8').split('\n')) {
    if (line.startsWith('## ')) className = /^## `(\w+)`$/.exec(line)?.[1];
    const [, method, state] = /^\| `(\w+)` \| ([^|]+) \|/.exec(line) ?? [];
    if (className === undefined || method === undefined) continue;
    const name = `${className}.${method}`;
    assert.ok(state in outcomes, `${name}: there is no state "${state}"`);
    assert.ok(!(name in rows), `${name} has two rows`);
    rows[name] = outcomes[state];
  }
  return rows;
}

/** Arguments where samples made from the types alone would be refused, or would not reach the operation. */
const picture = {
  ...{ pixel_fmt: 1, color_space: 0, timestamp_ms: 1, width: 64, height: 2, rotation: 0, linesize: [64, 32, 32] },
  data: [Buffer.alloc(128), Buffer.alloc(32), Buffer.alloc(32)],
  ...{ extra_data: Buffer.alloc(0), supplementary_info: Buffer.alloc(0) },
};
const sound = { sample_rate: 48000, channel: 2, timestamp_ms: 1, data: Buffer.alloc(1920) };
// One white pixel.
const image = path.join(logFolder, 'image.png');
fs.writeFileSync(image, Buffer.from('iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGP4DwABAQEAsTj2FAAAAABJRU5ErkJggg==', 'base64'));
const place = { x: 0, y: 0, width: 0.5, height: 0.5 };
const watermark = { visible_in_preview: true, position_in_landscape_mode: place, position_in_portrait_mode: place };
const whole = { sample_rate: 0, channel: 0, samples_per_call: 0 };
// A tenth of a second of silence.
const clip = path.join(logFolder, 'clip.wav');
const riff = Buffer.alloc(44 + 9600);
riff.write('RIFF');
riff.writeUInt32LE(36 + 9600, 4);
riff.write('WAVEfmt ', 8);
for (const [at, value] of [[16, 16], [24, 48000], [28, 96000], [40, 9600]]) riff.writeUInt32LE(value, at);
for (const [at, value] of [[20, 1], [22, 1], [32, 2], [34, 16]]) riff.writeUInt16LE(value, at);
riff.write('data', 36);
fs.writeFileSync(clip, riff);
const reports = { interval: 100, smooth: 1, local_main_report_mode: 0, audio_report_mode: 0 };
const display = startDisplay();
const parts = { highlight_config: { enable_highlight: true, border_color: 0xff0000, border_width: 4 } };
const roomConfig = {
  ...{ room_profile_type: 0, is_auto_publish: false, is_auto_subscribe_audio: false, is_auto_subscribe_video: false },
  remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 },
};
const head = { forward: { x: 1, y: 0, z: 0 }, right: { x: 0, y: 1, z: 0 }, up: { x: 0, y: 0, z: 1 } };
const headPlace = { position: { x: 0, y: 0, z: 0 }, orientation: head };

const fitting = {
  registerPlugin: [path.join(__dirname, '../../build/release/plugins/privacy_blur.so')],
  setPluginParameter: ['strength 30'],
  enableAudioPlugin: [true, 0, whole],
  muteAudioCapture: [0, true],
  setCaptureVolume: [0, 50],
  setPlaybackVolume: [50],
  setLocalVoicePitch: [3],
  setEarMonitorVolume: [50],
  setLocalVoiceEqualization: [{ frequency: 4, gain: 6 }],
  setLocalVoiceReverbParam: [{ room_size: 50, decay_time: 30, damping: 50, wet_gain: 0, dry_gain: 0, pre_delay: 20 }],
  enableAudioPropertiesReport: [{ ...reports, enable_spectrum: true, enable_vad: true, enable_voice_pitch: true }],
  enableAudioFrameCallback: [0, whole],
  disableAudioFrameCallback: [0],
  setAudioPlaybackDevice: ['null:'],
  setAudioCaptureDevice: ['test:sine'],
  setAudioPlaybackDeviceVolume: [100],
  setAudioCaptureDeviceVolume: [100],
  initAudioPlaybackDeviceForTest: ['null:'],
  initAudioCaptureDeviceForTest: ['test:sine'],
  startAudioPlaybackDeviceTest: [clip, 100],
  startEchoTest: [{ audio_properties_report_interval: 100, uid: 'user', room_id: 'room', token: '' }, 2],
  startHardwareEchoDetection: [clip],
  setVideoCaptureDevice: ['test:ball'],
  setVideoCaptureConfig: [{ capture_preference: 1, width: 320, height: 180, frame_rate: 15 }],
  setDummyCaptureImagePath: [image],
  setVideoDigitalZoomConfig: [0, 0.5],
  setAudioSourceType: [0],
  setVideoSourceType: [0, 0],
  setVideoWatermark: [0, image, watermark],
  clearVideoWatermark: [0],
  setLocalVideoSink: [0, 1],
  setVideoEncoderConfig: [[{ width: 320, height: 180, frame_rate: 15, max_bitrate: -1, min_bitrate: 0, encoder_preference: 0 }]],
  setScreenVideoEncoderConfig: [{ width: 320, height: 180, frame_rate: 15, max_bitrate: -1, min_bitrate: 0, encoder_preference: 0 }],
  setRemoteAudioPlaybackVolume: [{ room_id: 'room', user_id: 'someone', stream_index: 0 }, 50],
  setRemoteRoomAudioPlaybackVolume: [50],
  setRemoteVideoSink: [{ room_id: 'room', user_id: 'someone', stream_index: 0 }, 1],
  unsetRemoteVideoSink: [{ room_id: 'room', user_id: 'someone', stream_index: 0 }],
  unsetLocalVideoSink: [0],
  pushExternalVideoFrame: [picture],
  getThumbnail: (video) => [2, video.getScreenCaptureSourceList()[0].source_id, 64, 64],
  getWindowAppIcon: () => [windowWithIcon(), 16, 16],
  startScreenVideoCapture: (video) => [
    video.getScreenCaptureSourceList()[0],
    { region_rect: { x: 0, y: 0, width: 64, height: 48 }, capture_mouse_cursor: 0, filter_config: [], ...parts },
  ],
  updateScreenCaptureRegion: [{ x: 8, y: 8, width: 64, height: 48 }],
  updateScreenCaptureHighlightConfig: [parts.highlight_config],
  startFileRecording: [0, { dir_path: logFolder, file_type: 1 }, 2],
  stopFileRecording: [0],
  startAudioRecording: [{ absolute_file_name: path.join(logFolder, 'sound.wav'), frame_source: 0, sample_rate: 0, channel: 0, quality: 0 }],
  enableFaceDetection: [100, ''],
  takeLocalSnapshot: [0],
  pushExternalAudioFrame: [sound],
  sendUserBinaryMessageOutsideRoom: ['user', 1, Buffer.alloc(1), 0],
  sendServerBinaryMessage: [1, Buffer.alloc(1)],
  joinRoom: ['', { uid: 'user', extra_info: '' }, roomConfig],
  subscribeStream: ['someone', 3],
  unsubscribeStream: ['someone', 3],
  sendUserBinaryMessage: ['user', 1, Buffer.alloc(1), 0],
  sendRoomBinaryMessage: [1, Buffer.alloc(1)],
  updateSelfOrientation: [head],
  updateSelfPosition: [headPlace],
  updateListenerOrientation: [head],
  updateRemotePosition: ['someone', headPlace],
};

/** A second of silence. */
const wave = path.join(logFolder, 'silence.wav');
writeWave(wave, 1000, () => 0);
const mixing = { type: 0, play_count: -1, position: 0, callback_on_progress_interval: 0, sync_progress_to_record_frame: false };
const effect = { type: 0, play_count: -1, pitch: 0, start_pos: 0 };
const media = (autoPlay) => ({
  ...{ type: 0, play_count: -1, start_pos: 0, callback_on_progress_interval: '0' },
  ...{ sync_progress_to_record_frame: false, auto_play: autoPlay },
});

const fittingMixing = {
  startAudioMixing: [1, wave, mixing],
  setAudioMixingVolume: [1, 50, 0],
  setAudioMixingPosition: [1, 500],
  preloadAudioMixing: [1, wave],
  setAudioMixingDualMonoMode: [1, 1],
  setAudioMixingPitch: [1, 2],
  setAudioMixingPlaybackSpeed: [1, 50],
  setAudioMixingLoudness: [1, -20],
  setAudioMixingProgressInterval: [1, 100],
  selectAudioTrack: [1, 0],
};
for (const name of ['stop', 'pause', 'resume', 'unload']) fittingMixing[`${name}AudioMixing`] = [1];
for (const name of ['Duration', 'CurrentPosition', 'PlaybackDuration']) fittingMixing[`getAudioMixing${name}`] = [1];
Object.assign(fitting, fittingMixing, { getAudioTrackCount: [1] });

const fittingEffects = {
  start: [1, '', effect],
  preload: [1, wave],
  setPosition: [1, 500],
  setVolume: [1, 50],
  setVolumeAll: [50],
};
for (const name of ['stop', 'unload', 'pause', 'resume', 'getPosition', 'getVolume', 'getDuration']) fittingEffects[name] = [1];

const fittingMedia = {
  open: [wave, media(false)],
  openWithCustomSource: [{ mode: 0, type: 0 }, media(true)],
  setVolume: [50, 0],
  getVolume: [0],
  setAudioPitch: [1],
  setPosition: [500],
  setAudioDualMonoMode: [1],
  selectAudioTrack: [0],
  setPlaybackSpeed: [50],
  setProgressInterval: ['100'],
  setLoudness: [-20],
  pushExternalAudioFrame: [sound],
};

/** What the engine does on threads of its own is waited for: until `value()` is no failure. */
function waitUntilThere(value) {
  for (let round = 0; value() < 0 && round < 5000; ++round) Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 2);
}

/** Sound that plays, for the operations on it; one that pauses, to be resumed. */
function prepareMixing(video, method) {
  if (!/AudioMixing|AudioTrack/.test(method)) return;
  video.unloadAudioMixing(1);
  if (method === 'unloadAudioMixing') video.preloadAudioMixing(1, wave);
  video.startAudioMixing(1, wave, mixing);
  waitUntilThere(() => video.getAudioMixingDuration(1));
  if (method === 'resumeAudioMixing') video.pauseAudioMixing(1);
}

function prepareEffect(player, method) {
  player.preload(1, wave);
  player.start(1, '', effect);
  waitUntilThere(() => player.getDuration(1));
  if (method === 'resume') player.pause(1);
}

function prepareMedia(player, method) {
  if (method === 'pushExternalAudioFrame') return player.openWithCustomSource({ mode: 0, type: 0 }, media(true));
  player.open(wave, media(method !== 'start'));
  waitUntilThere(() => player.getTotalDuration());
  if (method === 'resume') player.pause();
}

/** Operations that the engine's own log tells to be missing. Each is told once, so this is asked when all were called. */
function refusedByEngine() {
  const files = fs.readdirSync(logFolder).filter((name) => name.includes('_corvane_rtc_'));
  const text = files.map((name) => fs.readFileSync(path.join(logFolder, name), 'utf8')).join('');
  return new Set([...text.matchAll(/ W (\w+): the engine does not offer this operation$/gm)].map(([, name]) => name));
}

/** What one call shows by its result and its lines. The engine's log knows of the others. */
function outcomeOf(method, result, lines) {
  if (result === kNotSupported || lines.some((line) => /is (nullptr|null)$/.test(line))) return 'not supported';
  return `done: ${JSON.stringify(result)}`;
}

const skipped = ['createRTCVideo', 'destroyRTCVideo', 'destroy'];

/** A plug-in that is registered is needed by the others, and gone after unregisterPlugin(); likewise forwarding. */
const lateMethods = ['enableVideoPlugin', 'setPluginParameter', 'unregisterPlugin', 'stopForwardStreamToRooms', 'leaveRoom'];
const order = (method) => lateMethods.indexOf(method);

/** `prepare` runs before each call. */
function callAll(className, object, prepare = () => {}, fits = fitting) {
  const samples = new Samples();
  const found = {};
  const methods = [...methodsOf(className)].sort(([a], [b]) => order(a) - order(b));
  for (const [method, [signature]] of methods) {
    if (skipped.includes(method)) continue;
    const given = fits[method];
    const args = (typeof given === 'function' ? given(object) : given) ?? samples.argumentsOf(signature).map(([, value]) => value);
    prepare(method);
    const before = readLog(logFolder).length;
    const result = object[method](...args);
    const lines = readLog(logFolder)
      .slice(before)
      .map(({ text }) => text)
      .filter((text) => text.startsWith(`${method}(`));
    found[`${className}.${method}`] = outcomeOf(method, result, lines);
  }
  return found;
}

/** So that there is one to be found on any machine. */
const parameters = JSON.stringify({ microphones: ['test:sine'] });

endProcessAfterTests(() => {
  display.stop();
  for (const folder of [logFolder, process.env.XDG_RUNTIME_DIR]) fs.rmSync(folder, { recursive: true, force: true });
});

test('the page tells of every method what the embedded engine makes of it', () => {
  sdk.setLogConfig({ log_path: logFolder, log_level: -1, log_file_size: 10, log_filename_prefix: 'test' });
  const video = new sdk.xoRTCVideo();
  const found = { 'xoRTCVideo.createRTCVideo': `done: ${video.createRTCVideo('app-id', () => {}, parameters)}` };
  Object.assign(found, callAll('xoRTCVideo', video, (method) => prepareMixing(video, method)));
  const room = new sdk.xoRTCRoom('room', () => {});
  // Most of a room's operations want to be in it; one that has been joined is not joined again.
  const join = (method) => {
    if (method === 'joinRoom') room.leaveRoom();
    else room.joinRoom('', { uid: 'user', extra_info: '' }, roomConfig);
  };
  Object.assign(found, callAll('xoRTCRoom', room, join));
  const effects = new sdk.xoRTCAudioEffectPlayer(() => {});
  const player = new sdk.xoRTCMediaPlayer(0, () => {});
  Object.assign(found, callAll('xoRTCAudioEffectPlayer', effects, (method) => prepareEffect(effects, method), fittingEffects));
  Object.assign(found, callAll('xoRTCMediaPlayer', player, (method) => prepareMedia(player, method), fittingMedia));
  found['xoRTCRoom.destroy'] = `done: ${room.destroy()}`;
  found['xoRTCVideo.destroyRTCVideo'] = `done: ${video.destroyRTCVideo()}`;

  for (const operation of refusedByEngine()) {
    const name = `xoRTCVideo.${operation}`;
    if (name in found) found[name] = 'not supported';
  }
  // What is done has a result that no failure has.
  for (const [name, outcome] of Object.entries(found)) {
    if (/^done: (undefined|\d+|true|false|".*"|\[.+\]|\{.+\})$/.test(outcome)) found[name] = 'done';
  }
  assert.deepStrictEqual(readPage(), found);
});
