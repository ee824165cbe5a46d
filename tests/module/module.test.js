'use strict';

// The module's shape and its plain functions.

const test = require('node:test');
const assert = require('node:assert');
const { Worker } = require('node:worker_threads');
const fs = require('node:fs');
const path = require('node:path');
const { sdk, engine, createEngine, temporaryFolder, readLog } = require('./support');

const folder = path.dirname(Object.keys(require.cache).find((file) => file.endsWith('corvane_meeting_sdk.node')));
const binary = path.join(folder, 'corvane_meeting_sdk.node');

const classes = {
  xoRTCVideo: ['KavRTCVideo', 212, 'test1', 'setRemoteVideoBuffer'],
  xoRTCRoom: ['KavRTCRoom', 50, 'isRoomCreated', 'removeAllRemotePosition'],
  xoRTCAudioEffectPlayer: ['KavRTCAudioEffectPlayer', 17, 'start', 'setEventHandler'],
  xoRTCMediaPlayer: ['KavRTCMediaPlayer', 21, 'open', 'pushExternalAudioFrame'],
};
const functions = [
  'setLogConfig', 'getSDKVersion', 'getTimestampMs', 'getTimestampUs', 'getCurrentProcessId', 'getErrorDescription',
];

test('exports four classes and six functions, in order', () => {
  assert.deepStrictEqual(Object.keys(sdk), [...Object.keys(classes), ...functions]);
  for (const [exported, [name, count, first, last]] of Object.entries(classes)) {
    const methods = Object.getOwnPropertyNames(sdk[exported].prototype).filter((each) => each !== 'constructor');
    assert.strictEqual(sdk[exported].name, name);
    assert.strictEqual(methods.length, count, name);
    assert.strictEqual(methods[0], first);
    assert.strictEqual(methods.at(-1), last);
  }
});

test('setLogConfig passes its record on and maps the level', () => {
  const log_path = temporaryFolder();
  const config = { log_path, log_level: 0, log_file_size: 7, log_filename_prefix: 'präfix' };
  assert.strictEqual(sdk.setLogConfig(config), 0);
  assert.deepStrictEqual(engine.lastArgs('setLogConfig').log_config ?? engine.lastArgs('setLogConfig'), config);

  // Which levels reach the file: errors, warnings, information, detail.
  const video = createEngine({ logPath: log_path });
  const written = (log_level) => {
    sdk.setLogConfig({ log_path, log_level, log_file_size: 7, log_filename_prefix: '' });
    const before = readLog(log_path).length;
    new sdk.xoRTCRoom(); // an error
    sdk.getErrorDescription('5'); // a warning and information
    engine.pushFrame({ sink: 'local:0' }); // detail
    return [...new Set(readLog(log_path).slice(before).map(({ level }) => level))].sort().join('');
  };
  video.video.setLocalVideoSink(0, 1);
  assert.strictEqual(written(0), 'EIW');
  assert.strictEqual(written(1), 'EW');
  assert.strictEqual(written(2), 'E');
  assert.strictEqual(written(3), '');
  assert.strictEqual(written(17), '', 'an unknown level changes nothing');
  assert.strictEqual(written(-1), 'DEIW');
  video.destroy();
});

test('setLogConfig keeps the folder of the last call that the engine accepted', () => {
  const [first, second] = [temporaryFolder(), temporaryFolder()];
  const call = (log_path, log_level = 0) =>
    sdk.setLogConfig({ log_path, log_level, log_file_size: 1, log_filename_prefix: '' });
  assert.strictEqual(call(first), 0);
  engine.answer('setLogConfig', -7);
  assert.strictEqual(call(second, 1), -7);
  engine.reset();
  assert.strictEqual(sdk.setLogConfig('x'), -1);
  assert.strictEqual(sdk.setLogConfig(), -1);
  const video = new sdk.xoRTCVideo();
  video.createRTCVideo('app', () => {}, '');
  assert.strictEqual(fs.readdirSync(first).length, 1);
  assert.strictEqual(fs.readdirSync(second).length, 0);
  assert.ok(readLog(first).every(({ level }) => level !== 'I'), 'the level changed although the engine refused');
  call(first);
  video.destroyRTCVideo();
});

test('setLogConfig with missing or mistyped keys calls the engine, then throws the first error', () => {
  engine.clear();
  assert.throws(() => sdk.setLogConfig({}), { name: 'TypeError', message: 'A string was expected' });
  assert.throws(() => sdk.setLogConfig({ log_path: temporaryFolder(), log_level: 'x', log_file_size: 4, log_filename_prefix: 'p' }),
    { name: 'TypeError', message: 'A number was expected' });
  assert.strictEqual(engine.countCalls('setLogConfig'), 2);
  const args = engine.lastArgs('setLogConfig').log_config ?? engine.lastArgs('setLogConfig');
  assert.deepStrictEqual([args.log_level, args.log_file_size, args.log_filename_prefix], [0, 4, 'p']);
  const boom = new Error('boom');
  assert.throws(() => sdk.setLogConfig({ get log_path() { throw boom; } }), boom);
  assert.throws(() => sdk.setLogConfig(new Proxy({}, { get() { throw boom; } })), boom);
});

test('versions, times, ids and descriptions', () => {
  engine.answer('getSDKVersion', '3.58.1-öäü');
  assert.strictEqual(sdk.getSDKVersion(), '3.58.1-öäü');
  assert.strictEqual(sdk.getCurrentProcessId(), String(process.pid));
  const [before, ms, us, after] = [Date.now(), sdk.getTimestampMs(), sdk.getTimestampUs(), Date.now()];
  assert.ok(before - 20 <= ms && ms <= after + 20, 'the wall clock in milliseconds');
  assert.ok(Number.isInteger(us) && Math.abs(us / 1000 - ms) < 1000);
  engine.answer('getErrorDescription', 'no such room');
  assert.strictEqual(sdk.getErrorDescription(-1001), 'no such room');
  assert.strictEqual(engine.lastArgs('getErrorDescription').code, -1001);
  assert.strictEqual(sdk.getErrorDescription('5'), '');
  assert.strictEqual(sdk.getErrorDescription(), '');
  engine.answer('getErrorDescription', null);
  assert.strictEqual(sdk.getErrorDescription(NaN), '');
  engine.reset();
});

test('a second require, a copy of the file and a worker load the module', async () => {
  const copy = path.join(temporaryFolder(), 'copy.node');
  fs.copyFileSync(binary, copy);
  // Beside its engine library, so that the loader finds it.
  const beside = path.join(folder, `copy-${process.pid}.node`);
  fs.copyFileSync(binary, beside);
  try {
    assert.strictEqual(typeof require(beside).xoRTCVideo, 'function');
  } finally {
    try {
      fs.unlinkSync(beside);
    } catch {
      // Windows keeps a loaded library's file.
    }
  }
  const source = `
    const sdk = require(${JSON.stringify(binary)});
    const video = new sdk.xoRTCVideo();
    require('node:worker_threads').parentPort.postMessage([sdk.getCurrentProcessId(), video.setPlaybackVolume(5)]);`;
  const worker = new Worker(source, { eval: true });
  const answer = await new Promise((resolve, reject) => worker.once('message', resolve).once('error', reject));
  assert.deepStrictEqual(answer, [String(process.pid), -1]);
  await worker.terminate();
});
