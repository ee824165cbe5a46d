'use strict';

// Pictures and sound that the application pushes: what reaches the engine, what is refused and with which line, and that
// every frame is given back exactly once.

const assert = require('node:assert');
const { test, before, after, beforeEach } = require('node:test');
const { MessageChannel } = require('node:worker_threads');

const { engine, createEngine, assertClean } = require('./support');
const { linesOf } = require('./support/method_table');

let log;
let video;
before(() => {
  log = createEngine();
  video = log.video;
});
after(() => log.destroy());
beforeEach(() => engine.reset());

const bytes = (size, seed) => Uint8Array.from({ length: size }, (_, i) => (i * 7 + seed) & 0xff);
const detach = (array) => new MessageChannel().port1.postMessage(null, [array.buffer]);

/** 6×3 pixels with rows of 8 and 4 bytes. */
const i420 = (more = {}) => ({
  pixel_fmt: 1,
  color_space: 3,
  timestamp_ms: 1234.5,
  data: [bytes(24, 1), bytes(8, 2), bytes(8, 3)],
  linesize: [8, 4, 4],
  extra_data: bytes(5, 4),
  supplementary_info: bytes(6, 5),
  width: 6,
  height: 3,
  rotation: 90,
  ...more,
});
const rgba = (more = {}) => i420({ pixel_fmt: 5, data: [bytes(72, 1)], linesize: [24], ...more });
const sound = (more = {}) => ({
  sample_rate: 16000,
  channel: 2,
  timestamp_ms: 20.25,
  data: Int16Array.from({ length: 320 }, (_, i) => i * 100),
  ...more,
});

const refusal = (name) => [{ level: 'I', text: `${name}(#), Param Invalid` }];

/** Checks that a frame is refused with exactly these lines and nothing reaches the engine. */
function refuses(name, frame, lines = refusal(name), what = '') {
  engine.clear();
  assert.deepStrictEqual(
    linesOf(log, () => assert.strictEqual(video[name](frame), -1, what)),
    lines,
    what,
  );
  assert.deepStrictEqual(engine.calls(), [], what);
}

test('a picture reaches the engine plane by plane, without a line in the log', () => {
  engine.answer('pushExternalVideoFrame', 12);
  assert.deepStrictEqual(linesOf(log, () => assert.strictEqual(video.pushExternalVideoFrame(i420()), 12)), []);
  const { builder } = engine.lastArgs('buildVideoFrame');
  const { data, ...rest } = builder;
  assert.deepStrictEqual(rest, {
    pixel_format: 1,
    color_space: 3,
    linesize: [8, 4, 4, 0],
    extra_data: Buffer.from(bytes(5, 4)),
    extra_data_size: 5,
    supplementary_info: Buffer.from(bytes(6, 5)),
    supplementary_info_size: 6,
    width: 6,
    height: 3,
    rotation: 90,
    timestamp_us: 1234500,
  });
  // Of the last row the engine reads the pixels only.
  assert.deepStrictEqual(data, [Buffer.from(bytes(22, 1)), Buffer.from(bytes(7, 2)), Buffer.from(bytes(7, 3)), null]);
  const { frame } = engine.lastArgs('pushExternalVideoFrame');
  assert.deepStrictEqual([frame.width, frame.height, frame.rotation, frame.timestampUs], [6, 3, 90, 1234500]);
  assert.deepStrictEqual(frame.planes[1], Buffer.from([...bytes(3, 2), ...bytes(7, 2).subarray(4)]));

  for (const format of [5, 6]) {
    assert.strictEqual(video.pushExternalVideoFrame(rgba({ pixel_fmt: format })), 12);
    assert.deepStrictEqual(engine.lastArgs('pushExternalVideoFrame').frame.planes, [Buffer.from(bytes(72, 1))]);
  }
  const { built, builtReleased, live } = engine.frames();
  assert.deepStrictEqual({ built, builtReleased, live }, { built: 3, builtReleased: 3, live: 0 });
  assertClean();
});

test('a picture that the engine does not build is not pushed', () => {
  engine.withhold('buildVideoFrame');
  assert.strictEqual(video.pushExternalVideoFrame(i420()), -1);
  assert.strictEqual(engine.countCalls('buildVideoFrame'), 1);
  assert.strictEqual(engine.countCalls('pushExternalVideoFrame'), 0);
});

test('what is no object is refused with its type number, on a level of its own', () => {
  const types = [[undefined, 0], [null, 1], [true, 2], [5, 3], ['text', 4], [Symbol('s'), 5], [5n, 9]];
  for (const name of ['pushExternalVideoFrame', 'pushExternalAudioFrame']) {
    for (const [value, type] of types) {
      refuses(name, value, [{ level: 'W', text: `${name}(#) param is not valid, ${type}` }]);
    }
    refuses(name, () => {});
  }
});

/** Wrong values for every key of a frame. */
const WRONG = {
  number: [undefined, null, '1', true, 1n, {}, [1]],
  array: [undefined, null, 5, 'text', {}, new Uint8Array(4), new Proxy([], {})],
  bytes: [undefined, null, 5, 'text', [1, 2], new ArrayBuffer(4), new DataView(new ArrayBuffer(4)), {}],
};
const VIDEO_KEYS = {
  ...{ pixel_fmt: 'number', color_space: 'number', timestamp_ms: 'number', data: 'array', linesize: 'array' },
  ...{ extra_data: 'bytes', supplementary_info: 'bytes', width: 'number', height: 'number', rotation: 'number' },
};
const AUDIO_KEYS = { sample_rate: 'number', channel: 'number', timestamp_ms: 'number', data: 'bytes' };

test('every key of a wrong type is refused, the first of several as well', () => {
  for (const [name, make, keys] of [
    ['pushExternalVideoFrame', i420, VIDEO_KEYS],
    ['pushExternalAudioFrame', sound, AUDIO_KEYS],
  ]) {
    for (const [key, kind] of Object.entries(keys)) {
      for (const value of WRONG[kind]) {
        refuses(name, make({ [key]: value }), undefined, `${key}: ${String(value)}`);
      }
      const frame = make();
      delete frame[key];
      refuses(name, frame, undefined, `no ${key}`);
      const seen = [];
      video[name](new Proxy(make({ [key]: Symbol('wrong') }), {
        get(target, property) {
          seen.push(property);
          return target[property];
        },
      }));
      assert.deepStrictEqual(seen, Object.keys(keys).slice(0, Object.keys(keys).indexOf(key) + 1));
    }
  }
});

test('planes and row sizes: four at most, each of its type', () => {
  const name = 'pushExternalVideoFrame';
  const five = (value) => new Array(5).fill(value);
  const tooLong = (list, length) => [{ level: 'W', text: `${name}(#) param is invalid, ${list} length:${length}` }];
  refuses(name, i420({ data: five(bytes(1, 0)) }), tooLong('dataArray', 5));
  refuses(name, i420({ data: new Array(2 ** 31 - 1) }), tooLong('dataArray', 2 ** 31 - 1));
  refuses(name, i420({ linesize: five(8) }), tooLong('lineArray', 5));
  refuses(name, i420({ data: five(bytes(1, 0)), linesize: five(8) }), tooLong('dataArray', 5));
  const [, u, v] = i420().data;
  assert.strictEqual(video.pushExternalVideoFrame(i420({ data: [bytes(24, 1), u, v, v], linesize: [8, 4, 4, 7] })), 0);
  assert.deepStrictEqual(engine.lastArgs('buildVideoFrame').builder.linesize, [8, 4, 4, 7]);
  for (const plane of [undefined, null, 'text', 5, [1], new DataView(new ArrayBuffer(99))]) {
    refuses(name, i420({ data: [bytes(24, 1), plane, bytes(8, 3)] }));
  }
  for (const size of [undefined, null, '4', 4n, {}]) refuses(name, i420({ linesize: [8, size, 4] }));
});

test('a plane that is shorter than its rows is refused, never read beyond its end', () => {
  const name = 'pushExternalVideoFrame';
  refuses(name, i420({ data: [bytes(23, 1), bytes(8, 2), bytes(8, 3)] }));
  refuses(name, i420({ data: [bytes(24, 1), bytes(7, 2), bytes(8, 3)] }));
  refuses(name, i420({ data: [bytes(24, 1), bytes(8, 2), bytes(7, 3)] }));
  refuses(name, i420({ data: [bytes(24, 1), bytes(8, 2)] }));
  refuses(name, i420({ data: [] }));
  refuses(name, i420({ height: 4 }));
  refuses(name, i420({ height: 2147483647, linesize: [2147483647, 4, 4] }));
  refuses(name, i420({ linesize: [-8, 4, 4] }));
  refuses(name, i420({ linesize: [8, -2147483648, 4] }));
  refuses(name, rgba({ data: [bytes(71, 1)] }));
  const detached = bytes(24, 1);
  detach(detached);
  refuses(name, i420({ data: [detached, bytes(8, 2), bytes(8, 3)] }));
  // Of a format that nobody knows every plane is taken as a full one.
  refuses(name, i420({ pixel_fmt: 77 }));

  // A typed array of wider elements counts in bytes, one with an offset from there.
  assert.strictEqual(video.pushExternalVideoFrame(rgba({ data: [new Uint32Array(18)] })), 0);
  assert.strictEqual(video.pushExternalVideoFrame(rgba({ data: [bytes(80, 1).subarray(8)] })), 0);
  refuses(name, rgba({ data: [bytes(80, 1).subarray(9)] }));
  const shared = new Uint8Array(new SharedArrayBuffer(72));
  assert.strictEqual(video.pushExternalVideoFrame(rgba({ data: [shared] })), 0);
  for (const size of [[0, 3], [6, 0], [-6, 3], [6, -3], [-2147483648, -2147483648]]) {
    const [width, height] = size;
    engine.clear();
    assert.strictEqual(video.pushExternalVideoFrame(i420({ width, height })), -1, String(size));
    assert.strictEqual(engine.countCalls('pushExternalVideoFrame'), 0);
  }
  assert.strictEqual(engine.frames().live, 0);
});

test('memory that a getter takes away is not read', () => {
  const name = 'pushExternalVideoFrame';
  for (const key of ['linesize', 'extra_data', 'rotation']) {
    const frame = i420();
    const value = frame[key];
    const [plane] = frame.data;
    Object.defineProperty(frame, key, {
      get() {
        if (plane.length > 0) detach(plane);
        return value;
      },
    });
    refuses(name, frame, undefined, key);
  }
  const samples = new Uint8Array(640);
  const frame = {
    ...sound(),
    get data() {
      detach(samples);
      return samples;
    },
  };
  engine.clear();
  assert.strictEqual(video.pushExternalAudioFrame(frame), -1);
  assert.strictEqual(engine.countCalls('pushExternalAudioFrame'), 0);
});

test('a getter that throws refuses the frame, and its error comes out', () => {
  for (const [name, make, keys] of [
    ['pushExternalVideoFrame', i420, VIDEO_KEYS],
    ['pushExternalAudioFrame', sound, AUDIO_KEYS],
  ]) {
    for (const key of Object.keys(keys)) {
      const thrown = new Error(key);
      const frame = make();
      Object.defineProperty(frame, key, {
        get() {
          throw thrown;
        },
      });
      engine.clear();
      assert.throws(() => video[name](frame), (error) => error === thrown, key);
      assert.deepStrictEqual(engine.calls(), []);
    }
  }
});

test('sound reaches the engine, uncopied by the module, and its frame is given back', () => {
  engine.answer('pushExternalAudioFrame', 13);
  const { data, ...rest } = sound();
  assert.deepStrictEqual(linesOf(log, () => assert.strictEqual(video.pushExternalAudioFrame({ ...rest, data }), 13)), []);
  const samples = Buffer.from(data.buffer);
  assert.deepStrictEqual(engine.lastArgs('buildAudioFrame').builder, {
    ...{ sample_rate: 16000, channels: 2, timestamp_us: 20250, data: samples, data_size: 640, deep_copy: false },
  });
  assert.deepStrictEqual(engine.lastArgs('pushExternalAudioFrame').frame, {
    ...{ timestampUs: 20250, sampleRate: 16000, channels: 2, data: samples, frameType: 0, muted: false },
  });
  engine.withhold('buildAudioFrame');
  assert.strictEqual(video.pushExternalAudioFrame(sound()), -1);
  assert.strictEqual(engine.countCalls('pushExternalAudioFrame'), 1);
  const { built, builtReleased, live } = engine.frames();
  assert.deepStrictEqual({ built, builtReleased, live }, { built: 1, builtReleased: 1, live: 0 });
  assertClean();
});

test('times become microseconds; what 64 bits cannot hold becomes 0', () => {
  for (const [milliseconds, microseconds] of [
    [0, 0],
    [0.0009, 0],
    [-1.5, -1500],
    [1e15, 1e18],
    [9.3e15, 0],
    [-1e300, 0],
    [NaN, 0],
    [Infinity, 0],
  ]) {
    video.pushExternalVideoFrame(i420({ timestamp_ms: milliseconds }));
    assert.strictEqual(Number(engine.lastArgs('buildVideoFrame').builder.timestamp_us), microseconds, String(milliseconds));
    video.pushExternalAudioFrame(sound({ timestamp_ms: milliseconds }));
    assert.strictEqual(Number(engine.lastArgs('buildAudioFrame').builder.timestamp_us), microseconds, String(milliseconds));
  }
});

test('without an engine a frame leaves one line', () => {
  const { sdk } = require('./support');
  const idle = new sdk.xoRTCVideo();
  for (const [name, frame] of [['pushExternalVideoFrame', i420()], ['pushExternalAudioFrame', sound()]]) {
    for (const given of [frame, 5, undefined]) {
      const lines = linesOf(log, () => assert.strictEqual(idle[name](given), -1));
      assert.deepStrictEqual(lines, [{ level: 'I', text: `${name}(#), pRtcVideo is nullptr` }]);
    }
  }
});
