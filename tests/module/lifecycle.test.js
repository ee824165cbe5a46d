'use strict';

// Making and ending the engine, and what its end does to everything else.

const test = require('node:test');
const assert = require('node:assert');
const fs = require('node:fs');
const { sdk, engine, createEngine, temporaryFolder, readLog } = require('./support');
const { runScript, support } = require('./support/child');

const texts = (folder) => readLog(folder).map(({ text }) => text.replace(/\(\d+\)/, '(L)'));
const config = (log_path) => sdk.setLogConfig({ log_path, log_level: 0, log_file_size: 1, log_filename_prefix: '' });

test('creation opens the log, makes the handlers and registers them', () => {
  engine.clear();
  const made = createEngine({ appId: 'äpp', params: '{"a":1}', logLevel: 0 });
  assert.strictEqual(made.result, 0);
  assert.strictEqual(engine.lastArgs('createRTCVideo').app_id, 'äpp');
  assert.strictEqual(engine.lastArgs('createRTCVideo').parameters, '{"a":1}');
  assert.strictEqual(engine.countCalls('registerAudioFrameObserver'), 1);
  assert.strictEqual(engine.countCalls('IKTVManager.setEventHandler'), 1);
  assert.strictEqual(engine.countCalls('IKTVPlayer.setEventHandler'), 1);
  const lines = texts(made.logPath).filter((line) => !line.startsWith('flushVideoFrame'));
  assert.match(lines[0], /^\[CreateDstFile\] internal, opened file: .*-node\.log$/);
  assert.deepStrictEqual(lines.slice(1), [
    'initialize(L)',
    'createRTCVideo(L), appId:äpp, params: {"a":1}',
    'KavRTCVideoEventHandler constructor',
    'KavRTCTranscodingObserver constructor',
    'KavRTCObserver constructor',
    `createRTCVideo(L), ret:0, version:${sdk.getSDKVersion()}, pid:${process.pid}`,
  ].flatMap((line) => line));
  made.destroy();
});

test('the end tears down in order and closes the log', () => {
  const made = createEngine({ logLevel: 0 });
  made.video.setLocalVideoSink(0, 1);
  made.video.setRemoteVideoSink({ room_id: 'r', user_id: 'u', stream_index: 0 }, 1);
  made.video.setPublicStreamVideoSink('p', 1);
  const before = readLog(made.logPath).length;
  engine.clear();
  assert.strictEqual(made.destroy(), 0);
  assert.strictEqual(engine.countCalls('destroyRTCVideo'), 1);
  assert.deepStrictEqual(
    texts(made.logPath).slice(before).filter((line) => !/n_status|flushVideo/.test(line)),
    [
      'destroyRTCVideo(L), ',
      '+clearPublicSink(L)', 'PublicStreamVideoSink destructure', '-clearPublicSink(L), size: 0',
      '+clearLocalSink(L)', 'LocalVideoSink destructure', '-clearLocalSink(L), size: 0',
      '+clearRemoteSink(L)', 'RemoteVideoSink destructure', '-clearRemoteSink(L), size: 0',
      'KavRTCVideoEventHandler destructure',
      'KavRTCObserver destructure',
      'destroyRTCVideo(L), ',
      '+CloseDstFile',
    ],
  );
  assert.strictEqual(made.video.destroyRTCVideo(), -1, 'a second end finds nothing');
  assert.strictEqual(made.video.setPlaybackVolume(5), -1);
});

test('bad arguments are refused at level 1 with the log open', () => {
  const cases = [
    [[5, () => {}, ''], 'createRTCVideo(L), invalid param, not a string type'],
    [['a', {}, ''], 'createRTCVideo(L), invalid param, not a func type'],
    [['a', () => {}, 5], 'createRTCVideo(L), invalid param, not a string type'],
    [[], 'createRTCVideo(L), invalid param, not a string type'],
  ];
  for (const [args, line] of cases) {
    const folder = temporaryFolder();
    config(folder);
    engine.clear();
    const video = new sdk.xoRTCVideo();
    assert.strictEqual(video.createRTCVideo(...args), -1);
    assert.strictEqual(engine.countCalls('createRTCVideo'), 0);
    const entries = readLog(folder);
    const lines = entries
      .filter(({ tid }) => tid === entries[0].tid)
      .map(({ level, text }) => `${level} ${text.replace(/\(\d+\)/, '(L)')}`);
    assert.match(lines[0], /^I \[CreateDstFile\] internal, opened file: /);
    assert.deepStrictEqual(lines.slice(1), [
      `W ${line}`,
      `I createRTCVideo(L), ret:-1, version:${sdk.getSDKVersion()}, pid:${process.pid}`,
    ]);
    // Closes the log that the refused call left open.
    assert.strictEqual(video.createRTCVideo('a', () => {}, ''), 0);
    video.destroyRTCVideo();
  }
});

test('an engine that cannot be made leaves handlers for the next attempt', () => {
  engine.withhold('createRTCVideo');
  const made = createEngine({ logLevel: 0 });
  assert.strictEqual(made.result, -1);
  assert.ok(texts(made.logPath).includes('createRTCVideo(L), CreateKavRTCVideo failed.'));
  assert.strictEqual(made.video.setPlaybackVolume(5), -1);
  engine.reset();
  assert.strictEqual(made.video.createRTCVideo('a', made.collector.callback, ''), 0);
  const lines = texts(made.logPath);
  assert.strictEqual(lines.filter((line) => line === 'KavRTCObserver constructor').length, 1, 'reused');
  assert.ok(lines.includes('[CreateDstFile] internal, open file failed'));
  made.destroy();
});

test('missing karaoke managers are logged and no failure', () => {
  for (const [withheld, line] of [
    ['getKTVManager', 'createRTCVideo(L), iKTVManagerPtr is nullptr'],
    ['getKTVPlayer', 'createRTCVideo(L), iKTVPlayerPtr is nullptr'],
  ]) {
    engine.withhold(withheld);
    const made = createEngine({ logLevel: 0 });
    engine.reset();
    assert.strictEqual(made.result, 0);
    const entry = made.entries().find(({ text }) => text.replace(/\(\d+\)/, '(L)') === line);
    assert.strictEqual(entry?.level, 'W', line);
    made.destroy();
  }
});

test('a second creation sends events to the new callback only', async () => {
  const made = createEngine({ logLevel: 0 });
  const late = [];
  assert.strictEqual(made.video.createRTCVideo('b', (event) => late.push(event), ''), 0);
  engine.fire('onWarning', { warn: 4 }, { target: engine.attached('IRTCVideoEventHandler').at(-1) });
  await made.waitFor(() => late.length > 0);
  assert.deepStrictEqual(late, [{ Type: 'onWarning', Object: { warn: 4 } }]);
  assert.strictEqual(made.of('onWarning').length, 0);
  made.destroy();
});

test('one object ends the engine for all of them', () => {
  const made = createEngine();
  const other = new sdk.xoRTCVideo();
  assert.strictEqual(other.createRTCVideo('b', () => {}, ''), 0);
  assert.strictEqual(made.destroy(), 0);
  engine.clear();
  assert.strictEqual(other.setPlaybackVolume(5), -1);
  assert.strictEqual(other.destroyRTCVideo(), -1);
  assert.strictEqual(engine.calls().length, 0, 'nobody calls an engine that is gone');
});

test('a getter cannot end the engine or the room that its caller is about to call', () => {
  const made = createEngine();
  const room = new sdk.xoRTCRoom('room', () => {});
  const results = [];
  const ending = (end) => ({ get width() { results.push(end()); return 1; }, height: 2, frame_rate: 3, capture_preference: 0 });
  engine.clear();
  assert.strictEqual(made.video.setVideoCaptureConfig(ending(() => made.video.destroyRTCVideo())), 0);
  assert.strictEqual(room.setRemoteVideoConfig('u', { get framerate() { results.push(room.destroy()); return 15; } }), 0);
  assert.deepStrictEqual(results, [-1, -1]);
  assert.strictEqual(engine.countCalls('IRTCVideo.setVideoCaptureConfig'), 1);
  assert.strictEqual(engine.countCalls('IRTCRoom.setRemoteVideoConfig'), 1);
  // A room that the caller does not use may go.
  const other = new sdk.xoRTCRoom('other', () => {});
  assert.strictEqual(made.video.setVideoCaptureConfig(ending(() => other.destroy())), 0);
  assert.strictEqual(room.setRemoteVideoConfig('u', { get framerate() { results.push(room.isRoomCreated(), other.destroy()); return 15; } }), 0);
  assert.deepStrictEqual(results.slice(2), [0, true, -1]);
  assert.strictEqual(room.destroy(), 0);
  assert.strictEqual(made.destroy(), 0);
});

test('a callback that throws does not stop later events', async () => {
  const seen = [];
  const thrown = [];
  process.on('uncaughtException', (error) => thrown.push(error.message));
  const video = new sdk.xoRTCVideo();
  config(temporaryFolder());
  video.createRTCVideo('a', (event) => {
    seen.push(event.Object.warn);
    throw new Error(`thrown ${seen.length}`);
  }, '');
  engine.fire('onWarning', { warn: 1 });
  engine.fire('onWarning', { warn: 2 });
  const deadline = Date.now() + 5000;
  while (seen.length < 2 && Date.now() < deadline) await new Promise((resolve) => setTimeout(resolve, 5));
  process.removeAllListeners('uncaughtException');
  assert.deepStrictEqual(seen, [1, 2]);
  video.destroyRTCVideo();
});

// What the objects write to standard output, and collection, are seen from outside.
const runLines = (lines) => runScript(`
  const { sdk, engine } = require(${support});
  const collect = async () => { for (let i = 0; i < 5; ++i) { gc(); await new Promise((r) => setTimeout(r, 20)); } };
  (async () => { ${lines} })().then(() => process.exit(0), (error) => { console.log(error); process.exit(1); });`);

test('objects trace their making and collection on standard output', () => {
  const lines = runLines(`
    (() => { new sdk.xoRTCVideo().createRTCVideo('a', () => {}, ''); })();
    await collect();
    console.log('ended', engine.countCalls('destroyRTCVideo'));
    (() => { const video = new sdk.xoRTCVideo(); video.createRTCVideo('a', () => {}, ''); video.destroyRTCVideo(); })();
    await collect();
    console.log('ended', engine.countCalls('destroyRTCVideo'));`);
  const address = (pattern) => lines.filter((line) => pattern.test(line)).length;
  assert.strictEqual(address(/^KavRTCVideo constructor: (0x)?[0-9a-fA-F]+$/), 2);
  assert.strictEqual(address(/^KavRTCVideo destructure: (0x)?[0-9a-fA-F]+ isDestroyRTCVideo:1$/), 1);
  assert.strictEqual(address(/^KavRTCVideo destructure: (0x)?[0-9a-fA-F]+ isDestroyRTCVideo:0$/), 1);
  assert.ok(lines.indexOf('ended 1') > lines.indexOf('destroyRTCVideo'), lines.join('\n'));
  assert.ok(lines.includes('ended 2'));
});

test('collecting the newest object gives its place back to the one before', () => {
  const lines = runLines(`
    let frames = 0;
    globalThis.video = new sdk.xoRTCVideo();
    video.createRTCVideo('a', ({ type }) => { if (type === 'GroupVideoFrame') ++frames; }, '');
    video.setPublicStreamVideoSink('public', 1);
    const push = async () => {
      engine.pushFrame({ sink: 'public:public' });
      await new Promise((r) => setTimeout(r, 100));
    };
    globalThis.newest = new sdk.xoRTCVideo();
    await push();
    console.log('frames beside an object without an engine', frames);
    globalThis.newest = undefined;
    await collect();
    await push();
    console.log('frames after its collection', frames);`);
  assert.ok(lines.includes('frames beside an object without an engine 0'), lines.join('\n'));
  assert.ok(lines.includes('frames after its collection 1'), lines.join('\n'));
});

test('an engine that outlives a failed second creation ends with its object', () => {
  const lines = runLines(`
    (() => {
      const video = new sdk.xoRTCVideo();
      video.createRTCVideo('a', () => {}, '');
      engine.withhold('createRTCVideo');
      console.log('created', video.createRTCVideo('b', () => {}, ''), 'destroyed', video.destroyRTCVideo());
    })();
    console.log('ended', engine.countCalls('destroyRTCVideo'));
    await collect();
    console.log('ended', engine.countCalls('destroyRTCVideo'));`);
  assert.ok(lines.includes('created -1 destroyed -1'), lines.join('\n'));
  assert.ok(lines.some((line) => / isDestroyRTCVideo:0$/.test(line)), lines.join('\n'));
  assert.ok(lines.indexOf('ended 0') >= 0 && lines.indexOf('ended 1') > lines.indexOf('ended 0'), lines.join('\n'));
});

test('buffers that a worker registered end with it', () => {
  const lines = runLines(`
    const { Worker } = require('node:worker_threads');
    const registration = (size) =>
      ({ user_id: 'u', stream_type: 'onRemoteVideoFrame', width: 4, height: 4, plane_y: Buffer.alloc(size) });
    for (let round = 0; round < 3; ++round) {
      const worker = new Worker(\`
        const { sdk } = require(${support});
        globalThis.video = new sdk.xoRTCVideo();
        video.createRTCVideo('a', () => {}, '');
        video.setRemoteVideoBuffer(
          { user_id: 'u', stream_type: 'onRemoteVideoFrame', width: 4, height: 4, plane_y: Buffer.alloc(24) });
        require('node:worker_threads').parentPort.postMessage('registered');
      \`, { eval: true });
      await new Promise((resolve, reject) => worker.once('message', resolve).once('error', reject));
      await worker.terminate();
    }
    let told;
    globalThis.video = new sdk.xoRTCVideo();
    video.createRTCVideo('a', ({ Type, Object }) => { if (Type === 'onRemoteVideoSizeChanged') told = Object.key.user_id; }, '');
    video.setRemoteVideoSink({ room_id: 'r', user_id: 'u', stream_index: 0 }, 1);
    engine.pushFrame({ sink: 'remote:r/u/0', width: 4, height: 4 });
    for (let i = 0; i < 100 && told === undefined; ++i) await new Promise((r) => setTimeout(r, 20));
    console.log('told', told, video.setRemoteVideoBuffer(registration(24)), video.destroyRTCVideo());`);
  assert.ok(lines.includes('told u 0 0'), lines.join('\n'));
});

test('the process ends cleanly with an engine alive and frames under way', () => {
  runLines(`
    globalThis.video = new sdk.xoRTCVideo();
    video.createRTCVideo('a', () => {}, '');
    video.setLocalVideoSink(0, 5);
    engine.startStreams({ streams: [{ sink: 'local:0', frame: {} }], fps: 200 });
    await new Promise((r) => setTimeout(r, 200));`);
});

test('the end of an environment closes its channel under traffic', () => {
  const lines = runLines(`
    const { Worker } = require('node:worker_threads');
    const worker = new Worker(\`
      const { sdk, engine } = require(${support});
      globalThis.video = new sdk.xoRTCVideo();
      video.createRTCVideo('a', () => {}, '');
      video.setPublicStreamVideoSink('public', 5);
      engine.startStreams({ streams: [{ sink: 'public:public', frame: {} }], fps: 500 });
      engine.fire('onWarning', { warn: 1 }, { repeat: 20000, wait: false });
      require('node:worker_threads').parentPort.postMessage('running');
    \`, { eval: true });
    await new Promise((resolve, reject) => worker.once('message', resolve).once('error', reject));
    await new Promise((r) => setTimeout(r, 50));
    await worker.terminate();
    engine.stopStreams();
    console.log('objects', JSON.stringify(engine.objects()));`);
  assert.ok(lines.includes('KavRTCTransporter tsfn Finalizer. '), lines.join('\n'));
  assert.ok(lines.includes('KavRTCTransporter deinitialize.'));
  assert.ok(lines.some((line) => line.startsWith('objects {')), lines.join('\n'));
});
