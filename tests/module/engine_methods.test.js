'use strict';

const assert = require('node:assert');
const { test } = require('node:test');

const { sdk, engine, createEngine } = require('./support');
const { checkRight, checkWrong, checkMissing } = require('./support/method_table');
const METHODS = require('./method_tables');

const CLASSES = ['xoRTCVideo', 'xoRTCRoom', 'xoRTCAudioEffectPlayer', 'xoRTCMediaPlayer'];
const CLASS_ARGUMENTS = { xoRTCRoom: ['raum', () => {}], xoRTCAudioEffectPlayer: [() => {}], xoRTCMediaPlayer: [1, () => {}] };

const construct = (name) => new sdk[name](...(CLASS_ARGUMENTS[name] ?? []));
const methodsOf = (name) => Object.getOwnPropertyNames(sdk[name].prototype).filter((method) => method !== 'constructor');

/** Methods that work without an engine, or need one for nothing. */
const INDEPENDENT = new Set(['test1', 'createRTCVideo', 'destroyRTCVideo', 'isRoomCreated', 'getRoomId', 'destroy']);

// The first test: no object of the engine's class has existed yet.
test('without any object of the engine class all methods of the others refuse', () => {
  for (const name of CLASSES.slice(1)) {
    const object = construct(name);
    for (const method of methodsOf(name)) {
      if (INDEPENDENT.has(method)) continue;
      assert.strictEqual(object[method]('text', 'text', 'text'), -1, `${name}.${method}`);
    }
  }
});

/** Methods whose calls have no common shape: other files test them. */
const OTHERS = [
  ...['test1', 'createRTCVideo', 'destroyRTCVideo', 'pushExternalVideoFrame', 'pushExternalAudioFrame'],
  ...['registerPlugin', 'unregisterPlugin', 'enableVideoPlugin', 'enableAudioPlugin', 'setPluginParameter'],
  ...['startFileRecording', 'stopLiveTranscoding', 'stopPushStreamToCDN'],
];

test('every method of the engine class stands in a table once', () => {
  assert.deepStrictEqual(methodsOf('xoRTCVideo').sort(), [...METHODS.map(({ name }) => name), ...OTHERS].sort());
});

test('each method of the engine class misses the engine in its own way', (t) => {
  const log = createEngine();
  t.after(() => log.destroy());
  const video = new sdk.xoRTCVideo();
  for (const row of METHODS) checkMissing(row, video, log, row.missing);
});

test('methods keep to objects of their class', () => {
  const objects = CLASSES.map(construct);
  for (const name of CLASSES) {
    assert.throws(() => sdk[name](), /Class constructors cannot be invoked without 'new'/, name);
    const { prototype } = sdk[name];
    const others = [...objects.filter((object) => !(object instanceof sdk[name])), Object.create(prototype), {}, null, 5];
    for (const method of methodsOf(name)) {
      const call = prototype[method];
      for (const other of others) {
        assert.throws(() => call.call(other), TypeError, `${name}.${method}`);
      }
    }
  }
});

// In pieces, because the whole log is read after every row.
for (let start = 0; start < METHODS.length; start += 45) {
  const rows = METHODS.slice(start, start + 45);
  const title = `${rows[0].name} to ${rows.at(-1).name}`;

  test(`right arguments reach the engine, and its result comes back: ${title}`, (t) => {
    const log = createEngine();
    t.after(() => log.destroy());
    // The rate only rises, so that no row's own rate writes a line.
    log.video.setVideoCaptureConfig({ capture_preference: 0, frame_rate: 60, height: 1, width: 1 });
    for (const row of rows.filter(({ gets }) => gets !== undefined)) checkRight(row, log.video, log);
  });

  test(`every wrong kind in every position is refused, whatever else is missing: ${title}`, (t) => {
    const log = createEngine();
    t.after(() => log.destroy());
    t.after(() => engine.reset());
    // A refused argument outranks a missing sub-manager.
    for (const { withheld } of rows.flatMap(({ managers }) => managers)) engine.withhold(withheld);
    for (const row of rows) checkWrong(row, log.video, log);
  });

  test(`a sub-manager that is missing is missed: ${title}`, (t) => {
    const log = createEngine();
    t.after(() => log.destroy());
    for (const row of rows) {
      for (const { withheld, line } of row.managers) {
        engine.withhold(withheld);
        checkMissing(row, log.video, log, line, { argumentsFirst: true });
        engine.withhold(withheld, false);
      }
    }
  });
}
