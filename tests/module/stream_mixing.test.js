'use strict';

// The parameters of mixes and pushes on their way to the engine. Refused arguments and the small methods are rows of
// method_tables/mixing.js.

const assert = require('node:assert');
const { test, before, after, beforeEach, afterEach } = require('node:test');
const { MessageChannel } = require('node:worker_threads');

const { sdk, engine, createEngine } = require('./support');
const { gc } = require('./support/garbage');
const { textsOf } = require('./support/method_table');
const { isGroup, keysOf, watched } = require('./support/records');
const samples = require('./support/mixing_samples');

const { live, mixed, publicStream, initialMixedRegion, initialPublicRegion } = samples;
const BUILDERS = [live, mixed, publicStream];

let log;
let video;
before(() => {
  log = createEngine();
  video = log.video;
});
after(() => log.destroy());
beforeEach(() => engine.reset());
// Whatever happened, the parameter objects have been given back.
afterEach(() => assert.strictEqual(engine.objects().live, 0));

const copy = (value) => {
  if (Array.isArray(value)) return value.map(copy);
  return isGroup(value) ? Object.fromEntries(Object.entries(value).map(([key, item]) => [key, copy(item)])) : value;
};
const at = (object, path) => path.reduce((value, key) => value?.[key], object);
/** A copy with one value replaced, or taken out if it is undefined. */
function put(object, path, value) {
  const changed = copy(object);
  const holder = at(changed, path.slice(0, -1));
  if (value === undefined) delete holder[path.at(-1)];
  else holder[path.at(-1)] = value;
  return changed;
}
/** The paths of all values that are no groups; of the list, those of its first element. */
function pathsOf(value, path = []) {
  if (!isGroup(value)) return [path];
  const keys = Array.isArray(value) ? ['0'] : Object.keys(value);
  return keys.flatMap((key) => pathsOf(value[key], [...path, key]));
}

/** Starts with the parameters: { answer or thrown, state, lines }. */
function start({ methods, id, name }, params, method = methods.start) {
  engine.clear();
  const outcome = {};
  outcome.lines = textsOf(log, () => {
    try {
      outcome.answer = video[method]('aufgabe', params);
    } catch (error) {
      outcome.thrown = error;
    }
  });
  const calls = engine.calls(`IRTCVideo.${method}`);
  outcome.calls = calls.length;
  if (calls.length > 0) {
    assert.strictEqual(calls[0].args[id], 'aufgabe');
    outcome.state = calls[0].args[name];
  }
  return outcome;
}

for (const builder of BUILDERS) {
  for (const [kind, method] of Object.entries(builder.methods)) {
    test(`${method} passes everything on, with its lines, and gives the object back`, () => {
      engine.answer(method, 31);
      const { answer, lines, state } = start(builder, builder.params, method);
      assert.strictEqual(answer, 31);
      assert.deepStrictEqual(state, builder.state(builder.params));
      assert.deepStrictEqual(lines, [
        `+${method}(#)`,
        `+${builder.builder}(#)`,
        ...builder.lines,
        `-${builder.builder}(#)`,
        `-${method}(#), ret: 31`,
      ]);
      // One operation, with the observer only where one is taken.
      assert.strictEqual(engine.countCalls(builder.methods[kind === 'start' ? 'update' : 'start']), 0);
      const taken = kind === 'start' && builder !== publicStream;
      assert.strictEqual(engine.lastArgs(method).observer, taken ? true : undefined);
    });
  }

  test(`${builder.methods.start} reads in the engine's order, its list in two passes`, () => {
    const keys = [];
    const { layout_regions, ...rest } = builder.params;
    const [region] = layout_regions;
    start(builder, watched({ ...rest, layout_regions: [region, region] }, keys));
    const [texts, others] = builder.orders;
    assert.deepStrictEqual(keys, [...keysOf(rest), 'layout_regions', ...texts, ...texts, ...others, ...others]);
  });

  test(`${builder.methods.start}: a missing or mistyped key costs its own value only`, () => {
    const { params } = builder;
    const base = builder.state(params);
    let cases = 0;
    for (const path of pathsOf(params)) {
      const key = path.at(-1);
      // Has tests of its own: other keys depend on it.
      if (key === 'type' || key.startsWith('image_')) continue;
      const value = at(params, path);
      const holder = at(builder.initial, path.slice(0, -1));
      const ifTyped = isGroup(holder) && key in holder;
      const fallback = ifTyped ? at(builder.initial, path) : { string: '', number: 0, boolean: false, object: null }[typeof value];
      let expected = put(base, path.map((step) => builder.engineKeys[step] ?? step), fallback);
      if (key === 'data') expected = put(expected, ['regions', '0', 'data_size'], 0);
      for (const wrong of [undefined, null, Symbol('falsch'), typeof value === 'number' ? '5' : 5]) {
        const { state, calls, thrown, answer } = start(builder, put(params, path, wrong));
        const what = `${path.join('.')}: ${String(wrong)}`;
        assert.strictEqual(calls, 1, what);
        assert.deepStrictEqual(state, expected, what);
        assert.strictEqual(thrown instanceof Error, !ifTyped, what);
        if (ifTyped) assert.strictEqual(answer, 0, what);
        cases += 1;
      }
    }
    assert.ok(cases > 100, String(cases));
  });

  test(`${builder.methods.start}: missing groups and lists, and elements that are no records`, () => {
    const { params } = builder;
    for (const key of Object.keys(params).filter((name) => isGroup(params[name]))) {
      for (const wrong of [undefined, null, 5]) {
        const { state, thrown } = start(builder, put(params, [key], wrong));
        if (key === 'server_control_config') {
          assert.strictEqual(thrown, undefined);
          assert.ok(!('server_control_config' in state));
          continue;
        }
        assert.ok(thrown instanceof Error, key);
        const seen = state[builder.engineKeys[key] ?? key];
        if (key === 'layout_regions') assert.strictEqual(seen, null);
        else assert.deepStrictEqual([...new Set(Object.values(seen))].filter(Boolean), [], key);
      }
    }
    const { state, thrown } = start(builder, { ...params, layout_regions: [null, 5, , {}] });
    assert.ok(thrown instanceof Error);
    assert.strictEqual(state.regions.length, 4);
    const empty = start(builder, { ...params, layout_regions: [] });
    assert.deepStrictEqual([empty.answer, empty.state.regions ?? []], [0, []]);
    const nothing = start(builder, {});
    assert.ok(nothing.thrown instanceof Error);
    assert.strictEqual(nothing.calls, 1);
  });

  test(`${builder.methods.start}: the first error is the one that comes, behind the engine call`, () => {
    const first = new Error('zuerst');
    const params = copy(builder.params);
    Object.defineProperty(params, 'room_id', {
      get() {
        throw first;
      },
    });
    const { thrown, calls, state, lines } = start(builder, { __proto__: params, layout_regions: 5 });
    assert.strictEqual(thrown, first);
    assert.strictEqual(calls, 1);
    assert.strictEqual(state.room_id, '');
    assert.ok(lines.at(-1).endsWith('ret: 0'));
    assert.strictEqual(video.setPlaybackVolume(1), 0);
  });

  test(`${builder.methods.start}: no parameter object, no call`, () => {
    engine.withhold(builder.export);
    for (const method of Object.values(builder.methods)) {
      const { answer, lines, calls } = start(builder, builder.params, method);
      assert.deepStrictEqual([answer, calls], [-1, 0]);
      assert.deepStrictEqual(lines, [
        `+${method}(#)`,
        `+${builder.builder}(#)`,
        `${builder.builder}(#), ${builder.missing}`,
        `-${method}(#), ret: -1`,
      ]);
    }
  });

  test(`${builder.methods.start}: a list that claims to be giant is refused`, () => {
    for (const length of [2 ** 20 + 1, 2 ** 32 - 1]) {
      const { answer, calls, lines } = start(builder, { ...builder.params, layout_regions: new Array(length) });
      assert.deepStrictEqual([answer, calls], [-1, 0]);
      assert.match(lines.at(-2), /^\w+\(#\), Param is invalid/);
    }
  });
}

test('stopping converts its untested task id before it looks for the engine', (t) => {
  for (const method of ['stopLiveTranscoding', 'stopPushStreamToCDN']) {
    engine.answer(method, 5);
    const lines = textsOf(log, () => assert.strictEqual(video[method]('aufgabe'), 5));
    assert.deepStrictEqual(lines, [`+${method}(#)`, `-${method}(#), ret: 5`]);
    assert.deepStrictEqual(engine.lastArgs(method), { task_id: 'aufgabe' });
    for (const wrong of [undefined, 5, {}]) {
      assert.throws(() => video[method](wrong), { message: 'A string was expected' });
      assert.deepStrictEqual(engine.lastArgs(method), { task_id: '' });
    }
  }
  const without = new sdk.xoRTCVideo();
  engine.clear();
  for (const method of ['stopLiveTranscoding', 'stopPushStreamToCDN']) {
    const missing = [`+${method}(#)`, `${method}(#), pRtcVideo is nullptr`, `-${method}(#), ret: -1`];
    assert.deepStrictEqual(textsOf(log, () => assert.strictEqual(without[method]('aufgabe'), -1)), missing);
    const lines = textsOf(log, () => assert.throws(() => without[method](5), { message: 'A string was expected' }));
    assert.deepStrictEqual(lines, missing);
  }
  assert.deepStrictEqual(engine.calls(), []);
});

test('updateLiveTranscoding converts its untested task id', () => {
  assert.throws(() => video.updateLiveTranscoding(5, live.params), { message: 'A string was expected' });
  const { task_id, param } = engine.lastArgs('updateLiveTranscoding');
  assert.strictEqual(task_id, '');
  assert.deepStrictEqual(param, live.state(live.params));
});

test('a region of a stream has no image, whatever its keys say; a size is passed on as it is', () => {
  const [region] = live.params.layout_regions;
  for (const type of [0, 2, undefined]) {
    const { state } = start(live, { ...live.params, layout_regions: [{ ...region, type }] });
    const { data, data_size, data_param } = state.regions[0];
    assert.deepStrictEqual({ data, data_size, data_param }, { data: null, data_size: 0, data_param: { image_width: 0, image_height: 0 } });
  }
  const data = new Uint16Array([1, 2]);
  const large = { image_width: 4000, image_height: 3000 };
  const { state, answer } = start(live, { ...live.params, layout_regions: [{ ...region, data, data_param: large }] });
  assert.strictEqual(answer, 0);
  assert.deepStrictEqual([state.regions[0].data_size, state.regions[0].data_param], [4, large]);

  for (const missing of ['image_width', 'image_height']) {
    const half = start(live, { ...live.params, layout_regions: [{ ...region, data_param: { ...large, [missing]: '5' } }] });
    assert.ok(half.thrown instanceof Error);
    assert.deepStrictEqual(half.state.regions[0].data_param, { ...large, [missing]: 0 });
  }
});

test('a watermark is a typed array, and its size both numbers', () => {
  const region = (given) => start(mixed, { ...mixed.params, layout_regions: [given] });
  for (const image_water_mark of ['text', [1, 2], new ArrayBuffer(4), new DataView(new ArrayBuffer(4)), null]) {
    assert.deepStrictEqual(region({ image_water_mark }).state.regions, [initialMixedRegion]);
  }
  for (const image_water_mark_param of [{ image_width: 5 }, { image_height: 5 }, { image_width: '5', image_height: 5 }, 5, null]) {
    const { state, thrown } = region({ image_water_mark_param });
    assert.strictEqual(thrown, undefined);
    assert.deepStrictEqual(state.regions, [initialMixedRegion]);
  }
  // Stored with the precision of a float.
  const { state, lines } = region({ alpha: 0.1, corner_radius: 1 / 3 });
  assert.deepStrictEqual([state.regions[0].alpha, state.regions[0].corner_radius], [Math.fround(0.1), Math.fround(1 / 3)]);
  assert.ok(lines.some((line) => line.includes('alpha:0.100000, corner_radius:0.333333,z_order')));
});

test('settings that are not given stay the engine\'s', () => {
  const { server_control_config, background_image_url, is_support_client_push_stream, ...rest } = mixed.params;
  const { answer, lines } = start(mixed, { ...rest, layout_regions: [] });
  assert.strictEqual(answer, 0);
  const setters = engine.calls().map(({ name }) => name).filter((name) => name.startsWith('IMixedStreamConfig.set'));
  assert.ok(setters.includes('IMixedStreamConfig.setRoomId'));
  for (const unset of ['setServerControlConfig', 'setBackgroundImageUrl', 'setIsSupportClientPushStream']) {
    assert.ok(!setters.includes(`IMixedStreamConfig.${unset}`), unset);
  }
  assert.ok(lines.some((line) => line.endsWith(', is_support_client_push_stream: 0')));
  assert.ok(!lines.some((line) => /^(MixedStreamServerControlConfig|setBackgroundImageURL)/.test(line)));
});

test('a public region is cut to the canvas, and only where it is too large', () => {
  const sizes = [
    [1.5, 1],
    [1, 1],
    [Infinity, 1],
    [0.999, 0.999],
    [-0.5, -0.5],
    [-Infinity, -Infinity],
  ];
  for (const [given, seen] of sizes) {
    const { state, answer } = start(publicStream, { ...publicStream.params, layout_regions: [{ width: given, height: given, x: 1.5, alpha: 2 }] });
    assert.strictEqual(answer, 0);
    assert.deepStrictEqual(state.regions, [{ ...initialPublicRegion, width: seen, height: seen, x: 1.5, alpha: 2 }]);
  }
});

test('the bit rate of a public picture has a spelling of its own', () => {
  const { bitrate_kpbs, ...rest } = publicStream.params.video_param;
  const video_param = { ...rest, bitrate_kbps: bitrate_kpbs };
  const { state, thrown } = start(publicStream, { ...publicStream.params, video_param });
  assert.strictEqual(thrown.message, 'A number was expected');
  assert.deepStrictEqual(state.video_param, { ...rest, bitrate_kbps: 0 });
});

test('a public canvas is black until its colour has been read', () => {
  start(publicStream, { ...publicStream.params, bg_color: 5 });
  const colours = engine.calls('IPublicStreamParam.setBackgroundColor').map(({ args }) => args.bg_color);
  assert.deepStrictEqual(colours, ['#000000', '']);
});

/** The two builders whose regions have images, and where these stand. */
const IMAGES = [
  [live, 'data', 'data_size', { ...live.params.layout_regions[0] }],
  [mixed, 'image_water_mark', 'image_water_mark_size', { ...mixed.params.layout_regions[0] }],
];

for (const [builder, key, size, region] of IMAGES) {
  test(`${builder.methods.start}: images live until the engine has read them`, () => {
    const make = (n) => ({
      ...region,
      region_id: `${n}`.repeat(100),
      get [key]() {
        // Nothing but the call itself holds it.
        return new Uint8Array(1 << 14).fill(n);
      },
      get spatial_position() {
        gc();
        return region.spatial_position;
      },
    });
    const { state, answer } = start(builder, { ...builder.params, layout_regions: [1, 2, 3].map(make) });
    assert.strictEqual(answer, 0);
    assert.ok(!('regions_changed' in state));
    state.regions.forEach((seen, index) => {
      assert.deepStrictEqual(seen[key], Buffer.alloc(1 << 14, index + 1));
      assert.strictEqual(seen.region_id, `${index + 1}`.repeat(100));
    });
  });

  test(`${builder.methods.start}: an image whose memory a later getter takes away is empty`, () => {
    const bytes = new Uint8Array(1 << 20).fill(65);
    const taking = {
      ...region,
      get apply_spatial_audio() {
        new MessageChannel().port1.postMessage(null, [bytes.buffer]);
        return true;
      },
    };
    const { state, answer } = start(builder, { ...builder.params, layout_regions: [{ ...region, [key]: bytes }, taking] });
    assert.strictEqual(answer, 0);
    assert.strictEqual(bytes.byteLength, 0);
    assert.deepStrictEqual(state.regions.map((seen) => seen[size]), [0, 8]);
    assert.ok(!('regions_changed' in state));
  });

  test(`${builder.methods.start}: an image of more bytes than 31 bits count is refused`, () => {
    // Address space only: nothing touches it.
    const { answer, calls } = start(builder, { ...builder.params, layout_regions: [{ ...region, [key]: new Uint8Array(2 ** 31) }] });
    assert.deepStrictEqual([answer, calls], [-1, 0]);
  });
}

test('a public message of more bytes than 31 bits count is refused', () => {
  const lines = textsOf(log, () => {
    assert.strictEqual(video.sendPublicStreamSEIMessage(0, 0, new Uint8Array(2 ** 31), 0, 0), -1);
  });
  assert.strictEqual(lines[1], 'sendPublicStreamSEIMessage(#) param is invalid, 3, 3, 6, 3, 3');
  assert.strictEqual(engine.countCalls('sendPublicStreamSEIMessage'), 0);
});

test('tasks report to the engine object\'s observers', () => {
  video.startLiveTranscoding('mischung', live.params);
  video.startPushMixedStreamToCDN('mischung-2', mixed.params);
  const { room_id, user_id } = live.params;
  video.startPushSingleStreamToCDN('einzeln', { room_id, uri: 'rtmp://h/e', user_id, is_screen_stream: false });
  const transcoding = engine.attached('ITranscodingObserver');
  for (const id of ['mischung', 'mischung-2']) assert.ok(transcoding.includes(id), id);
  assert.deepStrictEqual(engine.attached('IPushSingleStreamToCDNObserver'), ['einzeln']);
});
