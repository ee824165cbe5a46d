'use strict';

// Sinks, the transporter and destination buffers: pictures from the engine to JavaScript.

const test = require('node:test');
const assert = require('node:assert');
const { sdk, engine, createEngine, pixels } = require('./support');

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));
const remoteKey = { room_id: 'room', user_id: 'user', stream_index: 0 };
const normal = (lines) => lines.map((line) => line.replace(/\(\d+\)/, '(L)'));

/** Keeps JavaScript from delivering while `work` runs, and answers the frames of the delivery after it. */
async function inOneBatch(made, work) {
  made.collector.clear();
  work();
  await made.waitFor(() => made.frames.length > 0);
  return made.frames.map(({ Type, Object }) => ({ Type, ...Object }));
}

/** Registers a buffer that local frames of this size go into. */
function registerLocal(video, width, height, stream_type = 'onLocalVideoFrame', size = (width * height * 3) / 2) {
  const plane_y = Buffer.alloc(size);
  assert.strictEqual(video.setLocalVideoBuffer({ stream_type, width, height, plane_y }), 0);
  return plane_y;
}

test('a size that no buffer has is told; then frames go into the buffer', async () => {
  const made = createEngine();
  const { video } = made;
  assert.strictEqual(video.setLocalVideoSink(0, 1), 0);
  const frame = { sink: 'local:0', width: 32, height: 16, rotation: 90, seed: 3, timestampUs: 2 ** 32 + 7 };
  engine.pushFrame(frame);
  const notice = await made.waitFor('onLocalVideoSizeChanged');
  assert.deepStrictEqual(notice.Object, { index: 0, info: { width: 32, height: 16, rotation: 90 } });
  await sleep(50);
  assert.strictEqual(made.frames.length, 0);

  const buffer = registerLocal(video, 32, 16);
  const [got] = await inOneBatch(made, () => engine.pushFrame(frame));
  assert.strictEqual(JSON.stringify(got), JSON.stringify({
    Type: 'onLocalVideoFrame', channel_id: '', user_id: '', public_stream_id: '', task_id: '', format: 1, rotation: 90,
    width: 32, height: 16, plane_size_y: 32, plane_size_u: 16, plane_size_v: 16, timestamp: 7, offset_y: 0, offset_u: 0,
  }));
  assert.ok(buffer.equals(Buffer.concat(pixels.planes(frame))));

  // Another size: the notice again.
  made.collector.clear();
  engine.pushFrame({ sink: 'local:0', width: 64, height: 16 });
  assert.strictEqual((await made.waitFor('onLocalVideoSizeChanged')).Object.info.width, 64);
  made.destroy();
});

test('every kind of stream carries its identity', async () => {
  const made = createEngine();
  const { video } = made;
  video.setLocalVideoSink(7, 1);
  video.setRemoteVideoSink(remoteKey, 1);
  video.setRemoteVideoSink({ ...remoteKey, stream_index: 1 }, 1);
  video.setPublicStreamVideoSink('public', 1);
  registerLocal(video, 64, 48, 'onLocalScreenFrame');
  for (const stream_type of ['onRemoteVideoFrame', 'onRemoteScreenFrame']) {
    const plane_y = Buffer.alloc(64 * 48 * 1.5);
    assert.strictEqual(video.setRemoteVideoBuffer({ user_id: 'user', stream_type, width: 64, height: 48, plane_y }), 0);
  }
  const frames = await inOneBatch(made, () => {
    for (const sink of ['public:public', 'remote:room/user/1', 'remote:room/user/0', 'local:7']) engine.pushFrame({ sink });
  });
  assert.deepStrictEqual(
    frames.map(({ Type, channel_id, user_id, public_stream_id, task_id }) =>
      [Type, channel_id, user_id, public_stream_id, task_id]),
    [
      ['onLocalScreenFrame', '', '', '', ''],
      ['onRemoteVideoFrame', 'room', 'user', '', ''],
      ['onRemoteScreenFrame', 'room', 'user', '', ''],
      ['onPublicStreamVideoFrame', '', '', 'public', 'public'],
    ],
    'in the order of the stores, whatever the order of arrival',
  );
  made.collector.clear();
  engine.pushFrame({ sink: 'remote:room/user/1', width: 8, height: 8 });
  assert.deepStrictEqual((await made.waitFor('onRemoteVideoSizeChanged')).Object, {
    key: { user_id: 'user', room_id: 'room', stream_index: 1 }, info: { width: 8, height: 8, rotation: 0 },
  });
  made.destroy();
});

test('queues hold three frames and drop the oldest; keyed streams hold one', async () => {
  const made = createEngine();
  const { video } = made;
  video.setRemoteVideoSink({ room_id: 'queue', user_id: 'queue', stream_index: 0 }, 1);
  video.setPublicStreamVideoSink('public', 1);
  const plane_y = Buffer.alloc(64 * 48 * 1.5);
  video.setRemoteVideoBuffer({ user_id: 'queue', stream_type: 'onRemoteVideoFrame', width: 64, height: 48, plane_y });
  engine.clear();
  const queued = await inOneBatch(made, () => {
    for (let n = 0; n < 5; ++n) engine.pushFrame({ sink: 'remote:queue/queue/0', timestampUs: n });
  });
  assert.deepStrictEqual(queued.map(({ timestamp }) => timestamp), [2, 3, 4]);
  const keyed = await inOneBatch(made, () => {
    for (let n = 0; n < 4; ++n) engine.pushFrame({ sink: 'public:public', timestampUs: n });
  });
  assert.deepStrictEqual(keyed.map(({ timestamp }) => timestamp), [3]);
  assert.strictEqual(engine.frames().refused, 2 + 3, 'sinks answer false when a frame was dropped');
  made.destroy();
});

test('without a buffer the span from Y to the end of V comes as a Buffer', async () => {
  const made = createEngine();
  made.video.setPublicStreamVideoSink('public', 1);
  const cases = [
    { width: 32, height: 16 },
    { width: 32, height: 16, strides: [48, 24, 24] },
    { width: 32, height: 16, gaps: [0, 128, 64] },
    { width: 30, height: 6, strides: [32, 16, 16], gaps: [0, 5, 9] },
  ];
  for (const shape of cases) {
    const frame = { seed: 9, ...shape };
    const [got] = await inOneBatch(made, () => engine.pushFrame({ sink: 'public:public', ...frame }));
    const gaps = shape.gaps ?? [0, 0, 0];
    assert.deepStrictEqual([got.offset_y, got.offset_u], [gaps[1], gaps[2]], JSON.stringify(shape));
    const strideY = shape.strides?.[0] ?? frame.width;
    const strideU = shape.strides?.[1] ?? frame.width / 2;
    assert.deepStrictEqual([got.plane_size_y, got.plane_size_u, got.plane_size_v], [strideY, strideU, strideU]);
    const expected = pixels.memory(frame);
    // What lies in the gaps is nobody's.
    const startU = strideY * frame.height + gaps[1];
    const endU = startU + (strideU * frame.height) / 2;
    expected.fill(0, strideY * frame.height, startU);
    expected.fill(0, endU, endU + gaps[2]);
    assert.ok(Buffer.isBuffer(got.plane_y) && got.plane_y.equals(expected), JSON.stringify(shape));
  }
  made.destroy();
});

/** The planes of a picture turned clockwise. */
function turned([y, u, v], width, height, rotation) {
  const turn = (plane, w, h) => {
    const out = Buffer.alloc(plane.length);
    for (let row = 0; row < h; ++row) {
      for (let column = 0; column < w; ++column) {
        const at = { 90: column * h + (h - 1 - row), 180: (h - 1 - row) * w + (w - 1 - column), 270: (w - 1 - column) * h + row };
        out[at[rotation]] = plane[row * w + column];
      }
    }
    return out;
  };
  return Buffer.concat([turn(y, width, height), turn(u, width / 2, height / 2), turn(v, width / 2, height / 2)]);
}

test('frames are turned upright when asked for', async () => {
  const made = createEngine();
  made.video.setPublicStreamVideoSink('public', 1);
  assert.strictEqual(made.video.setVideoSinkApplyRotation(true), 0);
  for (const rotation of [90, 180, 270, 0, 45]) {
    const frame = { width: 32, height: 16, rotation, seed: 5 };
    const [got] = await inOneBatch(made, () => engine.pushFrame({ sink: 'public:public', ...frame }));
    const turns = [90, 180, 270].includes(rotation);
    const swapped = rotation === 90 || rotation === 270;
    assert.deepStrictEqual([got.rotation, got.width, got.height], [turns ? 0 : rotation, swapped ? 16 : 32, swapped ? 32 : 16]);
    const planes = pixels.planes(frame);
    assert.ok(got.plane_y.equals(turns ? turned(planes, 32, 16, rotation) : Buffer.concat(planes)), `${rotation}`);
  }
  // Odd sizes round in every direction; nothing may be written out of bounds.
  for (const [width, height] of [[33, 17], [1, 1], [31, 2], [2, 31]]) {
    const [got] = await inOneBatch(made, () => engine.pushFrame({ sink: 'public:public', width, height, rotation: 90 }));
    assert.deepStrictEqual([got.width, got.height, got.rotation], [height, width, 0]);
  }
  made.video.setVideoSinkApplyRotation(false);
  made.destroy();
});

test('RGBA is made of the frame at delivery', async () => {
  const made = createEngine();
  made.video.setPublicStreamVideoSink('public', 5);
  const frame = { width: 16, height: 8, seed: 11 };
  const [got] = await inOneBatch(made, () => engine.pushFrame({ sink: 'public:public', ...frame }));
  assert.deepStrictEqual(Object.keys(got), [
    'Type', 'channel_id', 'user_id', 'public_stream_id', 'task_id', 'format', 'rotation', 'width', 'height', 'rgba', 'rgba_size',
  ]);
  assert.deepStrictEqual([got.format, got.rgba_size, got.rgba.length], [5, 16 * 8 * 4, 16 * 8 * 4]);
  const [y, u, v] = pixels.planes(frame);
  const clamp = (value) => Math.max(0, Math.min(255, value));
  for (let row = 0; row < 8; ++row) {
    for (let column = 0; column < 16; ++column) {
      const luma = 1.164 * (y[row * 16 + column] - 16);
      const [cb, cr] = [u, v].map((plane) => plane[(row >> 1) * 8 + (column >> 1)] - 128);
      const expected = [luma + 1.596 * cr, luma - 0.391 * cb - 0.813 * cr, luma + 2.018 * cb].map(clamp);
      const pixel = got.rgba.subarray((row * 16 + column) * 4);
      expected.forEach((value, i) => assert.ok(Math.abs(pixel[i] - value) <= 3, `${row},${column}: ${pixel[i]} for ${value}`));
      assert.strictEqual(pixel[3], 255);
    }
  }
  made.destroy();
});

test('frames without usable pixels are released and never delivered', async () => {
  const made = createEngine();
  made.video.setPublicStreamVideoSink('public', 1);
  engine.clear();
  const broken = [
    { nullPlanes: [1] }, { strides: [0, 32, 32] }, { strides: [64, 0, 32] }, { pixelFormat: 6 }, { frameType: 1 },
    { width: 0, height: 0 },
  ];
  for (const shape of broken) {
    engine.pushFrame({ sink: 'public:public', ...shape });
    await sleep(40);
  }
  assert.strictEqual(made.frames.length, 0);
  const lines = normal(made.log()).filter((line) => line === 'addVideoObject(L), yuv data is nullptr');
  assert.strictEqual(lines.length, broken.length - 1, 'the first stays silent');
  assert.strictEqual(engine.frames().givenReleased, broken.length, 'all frames went back');
  made.destroy();
});

test('buffer registrations are checked key by key', () => {
  const made = createEngine({ logLevel: 0 });
  const good = { user_id: 'u', stream_type: 'onRemoteVideoFrame', width: 4, height: 4, plane_y: Buffer.alloc(24) };
  const refusalOf = (method, argument) => {
    const before = made.log().length;
    assert.strictEqual(made.video[method](argument), -1);
    return normal(made.log().slice(before)).find((line) => line.includes('Param'));
  };
  for (const key of ['user_id', 'stream_type', 'width', 'height', 'plane_y']) {
    for (const value of [undefined, null, key === 'width' ? '4' : 4n, {}]) {
      const line = `setRemoteVideoBuffer(L), Param is invalid, ${key}`;
      assert.strictEqual(refusalOf('setRemoteVideoBuffer', { ...good, [key]: value }), line);
    }
  }
  assert.strictEqual(refusalOf('setLocalVideoBuffer', {}), 'setLocalVideoBuffer(L), Param is invalid, stream_type');
  assert.strictEqual(made.video.setRemoteVideoBuffer(good), 0);
  const boom = new Error('boom');
  assert.throws(() => made.video.setLocalVideoBuffer({ get stream_type() { throw boom; } }), boom);
  made.destroy();
});

test('short, empty, detached and cleared buffers are never written', async () => {
  const made = createEngine();
  const { video } = made;
  video.setLocalVideoSink(0, 1);
  const push = () => engine.pushFrame({ sink: 'local:0' });
  const outcome = async () => {
    made.collector.clear();
    push();
    await made.waitFor(() => made.frames.length > 0 || made.of('onLocalVideoSizeChanged').length > 0);
    return made.frames.length > 0 ? Object.keys(made.frames[0].Object).includes('plane_y') ? 'copy' : 'buffer' : 'notice';
  };
  const buffer = registerLocal(video, 64, 48);
  assert.strictEqual(await outcome(), 'buffer');
  registerLocal(video, 64, 48, 'onLocalVideoFrame', 64 * 48);
  assert.strictEqual(await outcome(), 'notice', 'shorter than the frame');
  registerLocal(video, 64, 48, 'onLocalVideoFrame', 0);
  assert.strictEqual(await outcome(), 'copy', 'no memory');
  video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: 64, height: 48, plane_y: buffer });
  assert.strictEqual(await outcome(), 'buffer');
  const transferred = new Uint8Array(64 * 48 * 2);
  video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: 64, height: 48, plane_y: transferred });
  structuredClone(transferred.buffer, { transfer: [transferred.buffer] });
  assert.strictEqual(await outcome(), 'copy', 'detached');
  video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: 0, height: 0, plane_y: buffer });
  assert.strictEqual(await outcome(), 'notice', 'cleared');
  const shared = new Uint8Array(new SharedArrayBuffer(64 * 48 * 2));
  video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: 64, height: 48, plane_y: shared });
  assert.strictEqual(await outcome(), 'buffer', 'shared memory');
  assert.ok(Buffer.from(shared).subarray(0, 4608).equals(Buffer.concat(pixels.planes({}))));
  made.destroy();
});

test('a buffer has to hold what goes into it, no more', async () => {
  const made = createEngine();
  const { video } = made;
  video.setLocalVideoSink(0, 1);
  video.setVideoSinkApplyRotation(true);
  // Turned pictures have no padding.
  const frame = { sink: 'local:0', width: 32, height: 16, strides: [48, 24, 24], rotation: 90 };
  registerLocal(video, 48, 16, 'onLocalVideoFrame', 32 * 16 * 1.5 - 1);
  engine.pushFrame(frame);
  const notice = await made.waitFor('onLocalVideoSizeChanged');
  assert.deepStrictEqual(notice.Object, { index: 0, info: { width: 48, height: 16, rotation: 90 } });
  const buffer = registerLocal(video, 48, 16, 'onLocalVideoFrame', 32 * 16 * 1.5);
  const [got] = await inOneBatch(made, () => engine.pushFrame(frame));
  assert.deepStrictEqual([got.width, got.height, 'plane_y' in got], [16, 32, false]);
  assert.ok(buffer.equals(turned(pixels.planes({ width: 32, height: 16 }), 32, 16, 90)));
  video.setVideoSinkApplyRotation(false);

  // RGBA comes in a Buffer of its own.
  video.setLocalVideoSink(0, 5);
  registerLocal(video, 64, 48, 'onLocalVideoFrame', 1);
  const [rgba] = await inOneBatch(made, () => engine.pushFrame({ sink: 'local:0' }));
  assert.strictEqual(rgba.rgba_size, 64 * 48 * 4);
  made.destroy();
});

test('sinks are logged and kept after unsetting', () => {
  const made = createEngine({ logLevel: 0 });
  const { video } = made;
  const lines = (work) => {
    const before = made.log().length;
    work();
    return normal(made.log().slice(before)).filter((line) => !line.startsWith('flushVideoFrame'));
  };
  engine.answer('IRTCVideo.setLocalVideoSink', -4);
  assert.deepStrictEqual(lines(() => assert.strictEqual(video.setLocalVideoSink(0, 5), -4)), [
    '+setLocalVideoSink(L)', 'LocalVideoSink constructor', '+setLocalVideoSink(L) size: 1, format: 5',
    'setLocalVideoSink(L), ret: -4',
  ]);
  engine.reset();
  video.setLocalVideoSink(0, 5);
  assert.deepStrictEqual(lines(() => video.unsetLocalVideoSink(0)), [
    '+unsetLocalVideoSink(L)', '+unsetLocalVideoSink(L) size: 2', 'unsetLocalVideoSink(L), ret: 0',
  ]);
  assert.ok(lines(() => video.setLocalVideoSink(0, 5)).includes('+setLocalVideoSink(L) size: 3, format: 5'));
  assert.deepStrictEqual(lines(() => video.setVideoSinkApplyRotation(false)), [
    '+setVideoSinkApplyRotation(L)', 'setVideoRotation(L), videoRotation: 0',
    'setVideoSinkApplyRotation(L) apply_rotation: 0', '-setVideoSinkApplyRotation(L), ret: 0',
  ]);
  made.destroy();
});

test('frames that nobody takes are dropped after 500 deliveries', { timeout: 60000 }, async () => {
  const made = createEngine({ logLevel: 0 });
  made.video.setLocalVideoSink(0, 1);
  engine.clear();
  engine.pushFrame({ sink: 'local:0', width: 40, height: 24 });
  await made.waitFor('onLocalVideoSizeChanged');
  await sleep(1000);
  assert.strictEqual(engine.frames().givenReleased, 0, 'the frame waits in its slot');
  // The thread that gives it back says so before and after.
  const lines = () => normal(made.log()).filter((line) => line.includes('checkVideoFrame'));
  await made.waitFor(() => lines().includes('-checkVideoFrame(L)'), { timeout: 30000 });
  assert.strictEqual(engine.frames().givenReleased, 1);
  assert.deepStrictEqual(lines(), [
    '+checkVideoFrame(L), count:501', '-checkVideoFrame(L), release frame', '-checkVideoFrame(L)',
  ]);
  made.destroy();
});

test('many streams from many threads arrive whole', async () => {
  const made = createEngine({ logLevel: 0 });
  const streams = [];
  for (let n = 0; n < 8; ++n) {
    made.video.setPublicStreamVideoSink(`public${n}`, n % 2 === 0 ? 1 : 5);
    streams.push({ sink: `public:public${n}`, frame: { width: 160, height: 90 } });
  }
  engine.startStreams({ streams, fps: 30, count: 30 });
  await made.waitFor(() => engine.streams().finished, { timeout: 20000 });
  await sleep(100);
  engine.stopStreams();
  const counts = new Map();
  for (const { Object: frame } of made.frames) counts.set(frame.task_id, (counts.get(frame.task_id) ?? 0) + 1);
  assert.strictEqual(counts.size, 8);
  for (const [stream, count] of counts) assert.ok(count >= 20, `${stream}: ${count}`);
  made.destroy();
});
