'use strict';

// Values that are of the right type and still not what anybody expects: every call is refused, served or answered by an
// exception, and nothing crashes.

const assert = require('node:assert');
const { test, before, after, beforeEach } = require('node:test');
const { MessageChannel } = require('node:worker_threads');

const { engine, createEngine } = require('./support');
const { textsOf } = require('./support/method_table');
const { keysOf, watched } = require('./support/records');
const METHODS = require('./method_tables');

let log;
let video;
before(() => {
  log = createEngine();
  video = log.video;
});
after(() => log.destroy());
beforeEach(() => engine.reset());

/** An array without its memory. */
function detached(array) {
  new MessageChannel().port1.postMessage(null, [array.buffer]);
  assert.strictEqual(array.byteLength, 0);
  return array;
}

const sei = (bytes) => {
  const result = video.sendSEIMessage(0, bytes, 0, 0);
  assert.strictEqual(result, 0);
  const { message, length } = engine.lastArgs('sendSEIMessage');
  return { message, length };
};

test('numbers are converted as the host converts them', () => {
  const volumes = [
    [50.9, 50],
    [-50.9, -50],
    [-0, 0],
    [NaN, 0],
    [Infinity, 0],
    [-Infinity, 0],
    [2 ** 31, -(2 ** 31)],
    [2 ** 32 + 5, 5],
    [Number.MAX_SAFE_INTEGER, -1],
    [1e300, 0],
    [Number.MIN_VALUE, 0],
  ];
  for (const [given, seen] of volumes) {
    assert.strictEqual(video.setPlaybackVolume(given), 0);
    assert.strictEqual(engine.lastArgs('setPlaybackVolume').volume, seen, String(given));
  }
  for (const [given, seen] of [[-1, 4294967295], [2 ** 32, 0], [255.5, 255], [NaN, 0]]) {
    video.setAudioPlaybackDeviceVolume(given);
    assert.strictEqual(engine.lastArgs('setAudioPlaybackDeviceVolume').volume, seen, String(given));
  }
  for (const number of [NaN, Infinity, -Infinity, -0, Number.MAX_VALUE, 5e-324]) {
    video.setColorFilterIntensity(number);
    assert.ok(Object.is(engine.lastArgs('setColorFilterIntensity').intensity, number) || number === 0);
  }
  assert.strictEqual(video.setVideoDigitalZoomConfig(0, 0.5), 0);
});

test('a size that no whole number holds is logged as the nearest one', () => {
  for (const [size, shown] of [[NaN, 0], [1e300, 2147483647], [-Infinity, -2147483648], [-1.9, -1]]) {
    const lines = textsOf(log, () => video.setVideoDigitalZoomConfig(1, size));
    assert.strictEqual(lines[1], `setVideoDigitalZoomConfig(#) type: 1, size: ${shown}`);
  }
});

test('texts end at their first zero, and what is no Unicode is replaced', () => {
  const texts = [
    ['', ''],
    ['vorn\0hinten', 'vorn'],
    ['\0', ''],
    ['\ud800', '\ufffd'],
    ['a\udc00b\ud83d', 'a\ufffdb\ufffd'],
    ['𝄞 麦克风 ü', '𝄞 麦克风 ü'],
    ['%s%n%d%%', '%s%n%d%%'],
    ['zwei\nZeilen\r\n', 'zwei\nZeilen\r\n'],
    // Around the size up to which a text is kept in place, cut inside and outside of characters.
    ...Array.from({ length: 12 }, (_, i) => 'x'.repeat(240 + i)).map((text) => [text, text]),
    ...Array.from({ length: 12 }, (_, i) => `${'x'.repeat(238 + i)}𝄞`).map((text) => [text, text]),
    ['ü'.repeat(100000), 'ü'.repeat(100000)],
  ];
  for (const [given, seen] of texts) {
    assert.strictEqual(video.setBusinessId(given), 0);
    assert.strictEqual(engine.lastArgs('setBusinessId').business_id, seen);
    assert.strictEqual(video.sendServerMessage(given) > 0, true);
    assert.strictEqual(engine.lastArgs('sendServerMessage').message, seen);
  }
  const lines = textsOf(log, () => video.sendServerMessage('%s%n%d%%'));
  assert.strictEqual(lines[1], 'sendServerMessage(#), message: %s%n%d%%');
});

test('any kind of typed array is bytes, from its own offset and in its own length', () => {
  const memory = Uint8Array.from({ length: 64 }, (_, i) => i + 1);
  for (const Kind of [Int8Array, Uint8ClampedArray, Int16Array, Uint16Array, Int32Array, Uint32Array, Float32Array,
    Float64Array, BigInt64Array, BigUint64Array]) {
    const array = new Kind(memory.buffer, 16, 2);
    const bytes = Buffer.from(memory.buffer, 16, 2 * Kind.BYTES_PER_ELEMENT);
    assert.deepStrictEqual(sei(array), { message: bytes, length: bytes.length }, Kind.name);
  }
  assert.deepStrictEqual(sei(memory.subarray(60)), { message: Buffer.from([61, 62, 63, 64]), length: 4 });
  assert.deepStrictEqual(sei(Buffer.from('knoten')), { message: Buffer.from('knoten'), length: 6 });
  const shared = new Uint8Array(new SharedArrayBuffer(4));
  shared.set([9, 8, 7, 6]);
  assert.deepStrictEqual(sei(shared), { message: Buffer.from([9, 8, 7, 6]), length: 4 });
  for (const nothing of [new ArrayBuffer(4), new DataView(new ArrayBuffer(4)), [1, 2], { length: 2 }]) {
    assert.strictEqual(video.sendSEIMessage(0, nothing, 0, 0), -1);
  }
});

test('arrays without memory have no bytes', () => {
  for (const array of [new Uint8Array(0), Buffer.alloc(0), detached(new Uint8Array(64)), detached(new Float64Array(8))]) {
    assert.strictEqual(sei(array).length, 0);
    assert.ok(video.sendStreamSyncInfo(array, { stream_index: 0, repeat_count: 0, stream_type: 0 }) === 0);
    assert.strictEqual(engine.lastArgs('sendStreamSyncInfo').length, 0);
  }
  const data = new Uint8Array(1 << 20).fill(65);
  const config = {
    stream_index: 0,
    get repeat_count() {
      detached(data);
      return 3;
    },
    stream_type: 0,
  };
  assert.strictEqual(video.sendStreamSyncInfo(data, config), 0);
  assert.strictEqual(engine.lastArgs('sendStreamSyncInfo').length, 0);
});

test('a message of more bytes than 31 bits count is refused', () => {
  // Address space only: nothing touches it.
  const huge = new Uint8Array(2 ** 31);
  assert.strictEqual(video.sendSEIMessage(0, huge, 0, 0), -1);
  assert.strictEqual(video.sendStreamSyncInfo(huge, { stream_index: 0, repeat_count: 0, stream_type: 0 }), -1);
  assert.strictEqual(video.sendServerBinaryMessage(2 ** 31, huge), -1);
  assert.deepStrictEqual(engine.calls(), []);
});

test('bytes are logged up to their first zero, and no further than a line reaches', () => {
  const logged = (bytes) => textsOf(log, () => video.sendSEIMessage(0, bytes, 0, 0))[1];
  const line = (text) => `sendSEIMessage(#) stream_index: 0, message: ${text}, repeat_count: 0, mode: 0 `;
  assert.strictEqual(logged(Buffer.from('ohne Ende')), line('ohne Ende'));
  assert.strictEqual(logged(Buffer.from('vorn\0hinten')), line('vorn'));
  assert.strictEqual(logged(Buffer.alloc(16)), line(''));
  assert.strictEqual(logged(Buffer.from('weiter').subarray(0, 2)), line('we'));
  const long = logged(Buffer.alloc(1 << 20, 'x'));
  assert.ok(long.length > 10000 && long.length <= 10240, String(long.length));
});

test('a length of its own must lie within the typed array', () => {
  const bytes = Buffer.from('nachricht');
  for (const [length, fits] of [[0, true], [9, true], [10, false], [-1, false], [2 ** 31 - 1, false], [-(2 ** 31), false], [NaN, true]]) {
    engine.clear();
    const lines = textsOf(log, () => {
      assert.strictEqual(video.sendServerBinaryMessage(length, bytes) > 0, fits, `${length}`);
      assert.strictEqual(video.sendUserBinaryMessageOutsideRoom('u', length, bytes, 0) > 0, fits, `${length}`);
    });
    const calls = engine.calls();
    assert.strictEqual(calls.length, fits ? 2 : 0);
    for (const { args } of calls) {
      assert.deepStrictEqual(args.message ?? Buffer.alloc(0), bytes.subarray(0, Number.isNaN(length) ? 0 : length));
    }
    if (!fits) {
      assert.deepStrictEqual(lines, [
        '+sendServerBinaryMessage(#)',
        'sendServerBinaryMessage(#), Param is invalid',
        '-sendServerBinaryMessage(#), ret: -1',
        '+sendUserBinaryMessageOutsideRoom(#)',
        'sendUserBinaryMessageOutsideRoom(#), Param is invalid',
        '-sendUserBinaryMessageOutsideRoom(#), ret: -1',
      ]);
    }
  }
  engine.clear();
  assert.strictEqual(video.sendServerBinaryMessage(1, detached(new Uint8Array(4))), -1);
  assert.ok(video.sendServerBinaryMessage(0, detached(new Uint8Array(4))) > 0);
});

/** Rows whose engine arguments come from a record's properties. */
const RECORD_METHODS = METHODS.filter(({ kinds, gets }) => kinds.includes('o') && gets !== undefined);

/** What a row passes, with every object replaced. */
const withObjects = (row, replace) => row.args.map((arg, i) => (row.kinds[i] === 'o' ? replace(arg) : arg));

test('records that lack every property are served with nothing, and the host complains', () => {
  for (const row of RECORD_METHODS) {
    for (const empty of [() => ({}), () => [], () => () => {}, () => Object.create(null), () => new Map()]) {
      engine.clear();
      assert.throws(() => video[row.name](...withObjects(row, empty)), Error, row.name);
      assert.strictEqual(engine.countCalls(row.call), 1, row.name);
    }
  }
});

test('a property of the wrong type reads as nothing, and the others are read all the same', () => {
  const layer = { width: '640', height: 360, frame_rate: null, max_bitrate: 1, min_bitrate: {}, encoder_preference: 2 };
  assert.throws(() => video.setVideoEncoderConfig([layer, { ...layer, width: 320 }]), { message: 'A number was expected' });
  const rest = { height: 360, frame_rate: 0, max_bitrate: 1, min_bitrate: 0, encoder_preference: 2 };
  assert.deepStrictEqual(engine.lastArgs('setVideoEncoderConfig').channel_solutions, [
    { width: 0, ...rest },
    { width: 320, ...rest },
  ]);
  assert.throws(() => video.setVideoEncoderConfig([5, null, undefined, 'text']), Error);
  assert.strictEqual(engine.lastArgs('setVideoEncoderConfig').count, 4);
  assert.throws(() => video.startCloudProxy([{ cloud_proxy_ip: 5, cloud_proxy_port: 80 }]), { message: 'A string was expected' });
  assert.deepStrictEqual(engine.lastArgs('startCloudProxy').configurations, [{ cloud_proxy_ip: '', cloud_proxy_port: 80 }]);
});

test('a getter that throws reads as nothing; its error comes first of all and leaves the next call alone', () => {
  for (const row of RECORD_METHODS) {
    const thrown = new Error(`aus ${row.name}`);
    const throwing = () =>
      new Proxy({}, {
        get() {
          throw thrown;
        },
      });
    engine.clear();
    assert.throws(() => video[row.name](...withObjects(row, throwing)), (error) => error === thrown, row.name);
    assert.strictEqual(engine.countCalls(row.call), 1, row.name);
    assert.strictEqual(video.setPlaybackVolume(1), 0);
  }
  for (const primitive of [5, 'text', undefined, null, Symbol('s')]) {
    const config = {
      get width() {
        throw primitive;
      },
    };
    try {
      video.setMaxVideoEncoderConfig(config);
      assert.fail('nothing was thrown');
    } catch (error) {
      assert.strictEqual(error, primitive);
    }
  }
});

test('proxies serve as records but not as lists, and every record is read in the engine\'s order', () => {
  for (const row of METHODS.filter(({ kinds }) => kinds === 'a')) {
    assert.strictEqual(video[row.name](new Proxy([], {})), -1, row.name);
  }
  // The tables' records are written in that order.
  for (const row of METHODS.filter(({ kinds, gets }) => /[oa]/.test(kinds) && gets !== undefined)) {
    const keys = [];
    video[row.name](...row.args.map((arg) => watched(arg, keys)));
    assert.deepStrictEqual(keys, keysOf(row.args), row.name);
    assert.deepStrictEqual(engine.lastArgs(row.call), row.gets, row.name);
  }
});

test('a record that lets the engine object be used while it is read changes nothing', () => {
  const config = {
    get width() {
      video.setPlaybackVolume(33);
      return 1;
    },
    height: 2,
    frame_rate: 3,
    max_bitrate: 4,
    min_bitrate: 5,
    encoder_preference: 6,
  };
  assert.strictEqual(video.setMaxVideoEncoderConfig(config), 0);
  assert.deepStrictEqual(engine.calls().map(({ name }) => name), ['IRTCVideo.setPlaybackVolume', 'IRTCVideo.setMaxVideoEncoderConfig']);
});

test('lists that claim to be giant are refused, long ones are served', () => {
  const [source, parameters] = METHODS.find(({ name }) => name === 'startScreenVideoCapture').args;
  const giants = [2 ** 20 + 1, 2 ** 32 - 1];
  for (const length of giants) {
    const list = new Array(length);
    assert.strictEqual(video.setVideoEncoderConfig(list), -1);
    assert.strictEqual(video.startCloudProxy(list), -1);
    assert.strictEqual(video.setLocalProxy(list), -1);
    assert.strictEqual(video.updateScreenCaptureFilterConfig(list), -1);
    assert.strictEqual(video.startScreenVideoCapture(source, { ...parameters, filter_config: list }), -1);
    assert.strictEqual(video.feedback(1, { problem_desc: '', room_info: list }), -1);
  }
  assert.deepStrictEqual(engine.calls(), []);
  const lines = textsOf(log, () => video.feedback(1, { problem_desc: '', room_info: new Array(giants[1]) }));
  assert.strictEqual(lines[1], 'feedback(#), Param is invalid, info');

  engine.record(false);
  // Holes have no properties: the host's first complaint is the call's.
  assert.throws(() => video.setVideoEncoderConfig(new Array(2 ** 20)), Error);
  engine.record(true);
});

test('missing lists within records are empty, and the host complains', () => {
  assert.throws(() => video.feedback(1, { problem_desc: 'nur das' }), { message: 'An array was expected' });
  assert.deepStrictEqual(engine.lastArgs('feedback').info, { problem_desc: 'nur das', room_info: null, room_info_count: 0 });
});

test('surplus arguments do not matter', () => {
  for (const row of METHODS.filter(({ gets }) => gets !== undefined)) {
    engine.clear();
    video[row.name](...row.args, ...new Array(20).fill(Symbol('zu viel')));
    assert.deepStrictEqual(engine.lastArgs(row.call), row.gets, row.name);
  }
});
