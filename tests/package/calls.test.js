'use strict';
// Every method, called to the letter of its type: the module has to take it, and every value that the type asks for has
// to arrive at the engine under its own name. So no typed key is one that the module does not read, and none that it
// reads is missing.

const assert = require('node:assert');
const { test, describe } = require('node:test');

const { scriptedFolder } = require('./support/native.js');
process.env.CORVANE_MEETING_SDK_DIR = scriptedFolder();

const { sdk, engine, createEngine, createRoom } = require('../module/support');
const { Samples } = require('./support/samples.js');
const { checker, methodsOf, mismatches } = require('./support/typings.js');

/** Not the engine's to hear of, or with more to them than one call: other tests are about these. */
const otherTests = {
  xoRTCVideo: [
    ...['test1', 'createRTCVideo', 'destroyRTCVideo'],
    ...['registerPlugin', 'unregisterPlugin', 'enableVideoPlugin', 'setPluginParameter'],
  ],
  xoRTCRoom: ['isRoomCreated', 'getRoomId', 'destroy'],
  xoRTCAudioEffectPlayer: [],
  xoRTCMediaPlayer: [],
};

/** Methods that the module answers by itself. */
const ownMethods = ['setVideoSinkApplyRotation', 'setLocalVideoBuffer', 'setRemoteVideoBuffer'];

/** What JavaScript says one way and the engine's records another. */
const engineNames = {
  bitratekpbs: 'bitratekbps',
  filterconfig: 'excludedwindowlist',
  channel: 'channels',
  pixelfmt: 'pixelformat',
  timestampms: 'timestampus',
};

/** Values that the module uses itself: never an argument of the engine's. */
const keptBack = [
  'setLocalVideoSink.format',
  'setRemoteVideoSink.format',
  'setPublicStreamVideoSink.format',
  'getStandardPitchInfo.index',
  'enableAudioPlugin.enable',
];

/** Arguments that have to go together, where samples that know nothing of each other would be refused. */
const picture = () => ({
  ...{ pixel_fmt: 1, color_space: 2, timestamp_ms: 1003, width: 64, height: 2, rotation: 90 },
  data: [Buffer.alloc(128, 1), Buffer.alloc(32, 2), Buffer.alloc(32, 3)],
  linesize: [64, 32, 32],
  extra_data: Buffer.from('extra'),
  supplementary_info: Buffer.from('supplementary'),
});
/** A count of bytes to send, and the bytes beside it. */
const allBytes = (at) => (args) => (args[at][1] = args[at + 1][1].length);
/** 64-bit numbers travel as text. */
const interval = ([, [, config]]) => (config.callback_on_progress_interval = '2001');
/** Shares of the canvas beyond 1 are cut to 1. */
const share = ([, [, param]]) => Object.assign(param.layout_regions[0], { width: 0.5, height: 0.25 });
const adjusted = {
  pushExternalVideoFrame: ([[, frame]]) => Object.assign(frame, picture()),
  sendUserBinaryMessageOutsideRoom: allBytes(1),
  sendServerBinaryMessage: allBytes(0),
  sendUserBinaryMessage: allBytes(1),
  sendRoomBinaryMessage: allBytes(0),
  open: interval,
  openWithCustomSource: interval,
  setProgressInterval: ([text]) => (text[1] = '2001'),
  startPushPublicStream: share,
  updatePublicStreamParam: share,
};

const plain = (name) => name.toLowerCase().replaceAll('_', '');

/** All single values in a value, as "name=value", however deep. */
function leaves(value, name) {
  if (Buffer.isBuffer(value)) return [`${plain(name)}=${value.toString('base64')}`];
  if (Array.isArray(value)) return value.flatMap((item) => leaves(item, name));
  if (value !== null && typeof value === 'object') return Object.keys(value).flatMap((key) => leaves(value[key], key));
  return [`${plain(name)}=${value}`];
}

/** Which of the arguments' single values the engine was not given. */
function lost(method, args) {
  const arrived = new Set(engine.calls().flatMap((call) => leaves(call.args, '')));
  return args
    .filter(([name]) => !keptBack.includes(`${method}.${name}`))
    .flatMap(([name, value]) => leaves(value, name))
    .filter((leaf) => {
      const [key, value] = leaf.split(/=(.*)/s);
      const asEngine = `${engineNames[key] ?? key}=${key === 'timestampms' ? value * 1000 : value}`;
      return !arrived.has(leaf) && !arrived.has(asEngine);
    });
}

/** Calls every method of the object; tells what went wrong. */
function callAll(className, object) {
  const samples = new Samples();
  const wrong = [];
  for (const [method, [signature]] of methodsOf(className)) {
    if (otherTests[className].includes(method)) continue;
    const args = samples.argumentsOf(signature);
    adjusted[method]?.(args);
    engine.clear();
    let result;
    try {
      result = object[method](...args.map(([, value]) => value));
    } catch (error) {
      wrong.push(`${method} throws ${error.message}`);
      continue;
    }
    const refused = result === -1 || (engine.calls().length === 0 && !ownMethods.includes(method));
    if (refused) wrong.push(`${method} is refused`);
    const type = checker.getReturnTypeOfSignature(signature);
    wrong.push(...mismatches(type, result, `result of ${method}`));
    if (!refused && !ownMethods.includes(method)) {
      wrong.push(...lost(method, args).map((leaf) => `${method} loses ${leaf}`));
    }
  }
  return wrong;
}

describe('calls to the letter of the typings reach the engine whole', () => {
  const made = {
    xoRTCVideo: (video) => video,
    xoRTCRoom: () => createRoom().room,
    xoRTCAudioEffectPlayer: () => new sdk.xoRTCAudioEffectPlayer(() => undefined),
    xoRTCMediaPlayer: () => new sdk.xoRTCMediaPlayer(0, () => undefined),
  };
  for (const [className, make] of Object.entries(made)) {
    test(className, () => {
      const { video, destroy } = createEngine();
      const object = make(video);
      const wrong = callAll(className, object);
      object.destroy?.();
      destroy();
      assert.deepStrictEqual(wrong, []);
    });
  }
});

describe('what the engine gives comes as typed', () => {
  const device = { device_name: 'name', device_id: 'id' };
  const answers = {
    enumerateVideoCaptureDevices: [device],
    enumerateAudioPlaybackDevices: [device],
    enumerateAudioCaptureDevices: [device],
    getVideoCaptureDevice: { result: 0, device_id: 'id' },
    getAudioPlaybackDevice: { result: 0, device_id: 'id' },
    getAudioCaptureDeviceMute: { result: 0, mute: true },
    getAudioCaptureDeviceVolume: { result: 0, volume: 5 },
    getScreenCaptureSourceList: [
      {
        ...{ type: 2, source_id: 5, source_name: 'name', application: '', pid: 0, primary_monitor: true },
        region_rect: { x: 1, y: 2, width: 3, height: 4 },
      },
    ],
    getThumbnail: { width: 4, height: 2, pixelFormat: 6 },
    getWindowAppIcon: { width: 4, height: 2, pixelFormat: 6 },
    getStandardPitchInfo: [{ start_time: 1, duration: 2, pitch: 60 }],
  };
  const argumentsOf = { getThumbnail: [1, 2], getWindowAppIcon: [1], getStandardPitchInfo: [0] };

  test('lists, texts, pictures and notes', () => {
    const { video, destroy } = createEngine();
    video.setSingScoringConfig({ sample_rate: 48000, mode: 0, lyrics_filepath: 'l', midi_filepath: 'm' });
    for (const [method, answer] of Object.entries(answers)) {
      engine.answer(method, answer);
      const result = video[method](...(argumentsOf[method] ?? []));
      const [signature] = methodsOf('xoRTCVideo').get(method);
      assert.deepStrictEqual(mismatches(checker.getReturnTypeOfSignature(signature), result, method), []);
      if (typeof result === 'object') assert.notDeepStrictEqual(result, Array.isArray(result) ? [] : {}, method);
    }
    engine.reset();
    destroy();
  });
});
