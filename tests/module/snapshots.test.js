'use strict';

// Pictures of streams: what the engine's pixels become in JavaScript, pixel by pixel, and the events around them.

const assert = require('node:assert/strict');
const { test, beforeEach } = require('node:test');

const { engine, createEngine, pixels, assertClean } = require('./support');
const { decodePngText } = require('./support/png');

const { I420, RGBA, ARGB } = pixels;
const app = createEngine();
const streamKey = { room_id: 'room-1', user_id: 'user-2', stream_index: 1 };

const localTask = app.video.takeLocalSnapshot(0);
const remoteTask = app.video.takeRemoteSnapshot(streamKey);

let linesBefore = 0;
beforeEach(() => {
  linesBefore = app.entries().length;
  app.collector.clear();
  engine.clear();
});

/** The lines of the test so far with a word in them, as 'level text', source lines as '#'. */
function linesWith(word) {
  return app
    .entries()
    .slice(linesBefore)
    .filter(({ text }) => text.includes(word))
    .map(({ level, text }) => `${level} ${text.replace(/\(\d+\)/, '(#)')}`);
}

function fireLocal(image, options = {}) {
  const { error_code = 0, ...rest } = options;
  return engine.fire(
    'onTakeLocalSnapshotResult',
    { task_id: localTask, stream_index: 1, image, error_code },
    { target: localTask, ...rest },
  );
}

async function takeLocal(image, options) {
  fireLocal(image, options);
  await app.waitFor('onTakeLocalSnapshotResult');
  assert.equal(app.events.length, 1);
  return app.events[0].Object;
}

/** Four bytes of memory for each pixel as R, G, B, A: how each format is shown. */
const shown = {
  [ARGB]: ([b, g, r, a]) => [r, g, b, a],
  [RGBA]: ([b0, b1, , b3]) => [b1, b0, b3, 255],
};

/** The pixels of a picture whose memory is `bytes`; where they end, zeros go on. */
function expectedPixels({ width, height, pixelFormat }, bytes) {
  const memory = Buffer.alloc(width * height * 4);
  bytes.copy(memory);
  const groups = Array.from({ length: width * height }, (_, i) => [...memory.subarray(i * 4, i * 4 + 4)]);
  return Buffer.from(groups.flatMap(shown[pixelFormat]));
}

function assertPicture(text, frame, bytes) {
  const picture = decodePngText(text);
  assert.deepEqual([picture.width, picture.height], [frame.width, frame.height]);
  assert.ok(picture.rgba.equals(expectedPixels(frame, bytes)), `pixels of ${JSON.stringify(frame)}`);
}

test('a local picture: payload, order of keys, lines', async () => {
  const image = { width: 5, height: 3, pixelFormat: ARGB, seed: 1 };
  const payload = await takeLocal(image);
  assert.deepEqual(Object.keys(payload), ['task_id', 'stream_index', 'image', 'error_code']);
  assert.deepEqual({ ...payload, image: '' }, { task_id: localTask, stream_index: 1, image: '', error_code: 0 });
  assertPicture(payload.image, image, pixels.memory(image));
  const name = 'onTakeLocalSnapshotResult';
  assert.deepEqual(linesWith(name), [
    `I +${name}(#)`,
    `I ${name}(#), +kVideoPixelFormatARGB`,
    `I ${name}(#), -kVideoPixelFormatARGB`,
    `I -${name}(#), status: 0`,
  ]);
  assertClean();
});

test('a remote picture: payload, order of keys, lines', async () => {
  const image = { width: 3, height: 5, pixelFormat: RGBA, seed: 2 };
  const name = 'onTakeRemoteSnapshotResult';
  engine.fire(name, { task_id: remoteTask, stream_key: streamKey, image, error_code: 0 }, { target: remoteTask });
  await app.waitFor(name);
  const payload = app.events[0].Object;
  assert.deepEqual(Object.keys(payload), ['task_id', 'stream_key', 'image', 'error_code']);
  assert.deepEqual({ ...payload, image: '' }, { task_id: remoteTask, stream_key: streamKey, image: '', error_code: 0 });
  assert.deepEqual(Object.keys(payload.stream_key), ['room_id', 'user_id', 'stream_index']);
  assertPicture(payload.image, image, pixels.memory(image));
  assert.deepEqual(linesWith(name), [
    `I +${name}(#)`,
    `I ${name}(#), +kVideoPixelFormatRGBA`,
    `I ${name}(#), -kVideoPixelFormatRGBA`,
    `I -${name}(#), status: 0`,
  ]);
});

test('every pixel, in both formats and many sizes', async (t) => {
  for (const pixelFormat of [ARGB, RGBA]) {
    for (const [width, height] of [[1, 1], [1, 7], [7, 1], [64, 48], [321, 181]]) {
      await t.test(`${width}x${height}, format ${pixelFormat}`, async () => {
        const image = { width, height, pixelFormat, seed: width };
        assertPicture((await takeLocal(image)).image, image, pixels.memory(image));
      });
    }
  }
});

test('the pixels stay as the engine had them', async () => {
  for (const pixelFormat of [ARGB, RGBA]) {
    const image = { width: 9, height: 4, pixelFormat, seed: 4 };
    const { answers } = fireLocal(image, { detailed: true });
    assert.ok(answers[0].frames[0].planes[0].equals(pixels.planes(image)[0]));
  }
  await app.waitFor(() => app.events.length === 2);
});

// Rows are read one after the other; the stride tells only how many bytes there are.
test('strides, gaps and missing planes', async (t) => {
  const nothing = Buffer.alloc(0);
  for (const pixelFormat of [ARGB, RGBA]) {
    const size = { width: 6, height: 4, pixelFormat, seed: 5 };
    const all = pixels.memory(size);
    const cases = [
      ['padded rows show their padding', { strides: [32] }, pixels.memory({ ...size, strides: [32] }).subarray(0, 96)],
      ['a gap before the plane', { gaps: [16] }, all],
      ['a stride that is too short', { strides: [8] }, all.subarray(0, 32)],
      ['a stride that ends inside a pixel', { strides: [7] }, all.subarray(0, 28)],
      ['a stride of 0', { strides: [0] }, nothing],
      ['a stride below 0', { strides: [-24] }, nothing],
      ['no plane', { nullPlanes: [0] }, nothing],
      ['pixels on a graphics device', { frameType: 1 }, nothing],
    ];
    for (const [name, change, memory] of cases) {
      await t.test(`${name}, format ${pixelFormat}`, async () => {
        assertPicture((await takeLocal({ ...size, ...change })).image, size, memory);
        assertClean();
      });
    }
  }
});

test('pictures without a size have an empty text', async () => {
  for (const pixelFormat of [ARGB, RGBA]) {
    for (const [width, height] of [[0, 4], [4, 0], [0, 0], [-4, 4], [4, -4]]) {
      app.collector.clear();
      assert.equal((await takeLocal({ width, height, pixelFormat })).image, '', `${width}x${height}`);
    }
  }
});

test('other formats are the text "null"', async () => {
  for (const pixelFormat of [I420, 0, 2, 7, -1]) {
    app.collector.clear();
    const payload = await takeLocal({ width: 8, height: 8, pixelFormat });
    assert.deepEqual(payload, { task_id: localTask, stream_index: 1, image: 'null', error_code: 0 });
    assert.equal(
      linesWith('pixformat').at(-1),
      `I onTakeLocalSnapshotResult(#), pixformat = ${pixelFormat} not support!`,
    );
  }
  assert.deepEqual(linesWith('kVideoPixelFormat'), []);
});

test('a failed snapshot has no image', async () => {
  const image = { width: 8, height: 8, pixelFormat: ARGB };
  assert.deepEqual(await takeLocal(image, { error_code: 5 }), { task_id: localTask, stream_index: 1, error_code: 5 });
  assert.deepEqual(linesWith('no image'), ['I onTakeLocalSnapshotResult, no image']);
  assert.deepEqual(linesWith('kVideoPixelFormat'), []);

  const name = 'onTakeRemoteSnapshotResult';
  engine.fire(name, { task_id: 1, stream_key: {}, image, error_code: -3 }, { target: remoteTask });
  await app.waitFor(name);
  assert.deepEqual(app.of(name), [
    { task_id: 1, stream_key: { room_id: '', user_id: '', stream_index: 0 }, error_code: -3 },
  ]);
  assert.deepEqual(linesWith('no image').at(-1), `I ${name}, no image`);
});

test('without a picture there is no event', async () => {
  fireLocal(null);
  fireLocal(null, { error_code: 5 });
  engine.fire(
    'onTakeRemoteSnapshotResult',
    { task_id: 1, stream_key: streamKey, image: null, error_code: 0 },
    { target: remoteTask },
  );
  const last = await takeLocal({ width: 1, height: 1, pixelFormat: ARGB }, {});
  assert.equal(last.error_code, 0);
  assert.deepEqual(linesWith('image is nullptr'), [
    'I onTakeLocalSnapshotResult(#), image is nullptr',
    'I onTakeLocalSnapshotResult(#), image is nullptr',
    'I onTakeRemoteSnapshotResult(#), image is nullptr',
  ]);
});

test('several threads encode at once', async () => {
  const [threads, repeat] = [4, 5];
  for (const pixelFormat of [ARGB, RGBA]) {
    app.collector.clear();
    const image = { width: 96, height: 54, pixelFormat, seed: 6 };
    fireLocal(image, { threads, repeat });
    await app.waitFor(() => app.events.length === threads * repeat);
    const texts = new Set(app.events.map(({ Object: payload }) => payload.image));
    assert.equal(texts.size, 1);
    assertPicture([...texts][0], image, pixels.memory(image));
  }
  assertClean();
});
