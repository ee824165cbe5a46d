'use strict';

const assert = require('node:assert');
const { test } = require('node:test');

const { sdk, engine, createEngine } = require('./support');
const { checkRight, checkWrong, checkMissing, linesOf } = require('./support/method_table');
const METHODS = require('./method_tables');

const CLASSES = ['xoRTCVideo', 'xoRTCRoom', 'xoRTCAudioEffectPlayer', 'xoRTCMediaPlayer'];
const CLASS_ARGUMENTS = { xoRTCRoom: ['raum', () => {}], xoRTCAudioEffectPlayer: [() => {}], xoRTCMediaPlayer: [1, () => {}] };

const construct = (name) => new sdk[name](...(CLASS_ARGUMENTS[name] ?? []));
const methodsOf = (name) => Object.getOwnPropertyNames(sdk[name].prototype).filter((method) => method !== 'constructor');

/** Methods that work without an engine, or need one for nothing. */
const INDEPENDENT = new Set(['test1', 'createRTCVideo', 'destroyRTCVideo', 'isRoomCreated', 'getRoomId', 'destroy']);
/** Methods that look at an argument before they look for the engine. */
const READ_FIRST = new Set(['stopLiveTranscoding', 'stopPushStreamToCDN', 'setMultiDeviceAVSync']);

/** What methods without an engine answer: nothing. */
const NOTHING = [-1, '', [], {}];
const isNothing = (answer) => NOTHING.some((nothing) => {
  try {
    assert.deepStrictEqual(answer, nothing);
    return true;
  } catch {
    return false;
  }
});

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

test('without an engine every method of the four classes refuses with its line, whatever its arguments are', (t) => {
  const log = createEngine({ params: '{"test":"no engine"}' });
  t.after(() => log.destroy());
  const missing = {
    xoRTCVideo: ', pRtcVideo is nullptr',
    xoRTCRoom: ', m_pRtcRoom is nullptr',
    xoRTCAudioEffectPlayer: ', KavRTCAudioEffectPlayer error: IRTCVideo is null',
    xoRTCMediaPlayer: ', KavRTCMediaPlayer error: IRTCVideo is null',
  };
  const video = new sdk.xoRTCVideo();
  engine.clear();
  let methods = 0;
  for (const name of CLASSES) {
    const object = name === 'xoRTCVideo' ? video : construct(name);
    const wrong = [Symbol('wrong'), 1n, undefined, null];
    for (const method of methodsOf(name)) {
      ++methods;
      if (INDEPENDENT.has(method)) continue;
      const calls = READ_FIRST.has(method) ? [['text']] : [[], ['text', 1, {}], wrong];
      const lines = linesOf(log, () => {
        for (const args of calls) {
          const answer = object[method](...args);
          assert.ok(isNothing(answer), `${name}.${method}: ${answer}`);
        }
      });
      const found = lines.filter(({ text }) => text === `${method}(#)${missing[name]}`);
      assert.strictEqual(found.length, calls.length, `${name}.${method}: ${JSON.stringify(lines)}`);
    }
  }
  assert.strictEqual(methods, 212 + 50 + 17 + 21);
  assert.deepStrictEqual(engine.calls(), []);
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
    assert.throws(() => sdk[name](), /without 'new'/, name);
    for (const method of methodsOf(name)) {
      const call = sdk[name].prototype[method];
      for (const other of [...objects.filter((object) => !(object instanceof sdk[name])), {}, undefined, 5]) {
        assert.throws(() => call.call(other), TypeError, `${name}.${method}`);
      }
    }
  }
});

const names = METHODS.map(({ name }) => name);
assert.strictEqual(new Set(names).size, names.length, 'a method stands in the tables twice');

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

  test(`every wrong kind in every position is refused: ${title}`, (t) => {
    const log = createEngine();
    t.after(() => log.destroy());
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

test('a refused argument outranks a missing sub-manager', (t) => {
  const log = createEngine();
  t.after(() => log.destroy());
  for (const name of new Set(METHODS.flatMap(({ managers }) => managers.map(({ withheld }) => withheld)))) {
    engine.withhold(name);
  }
  t.after(() => engine.reset());
  for (const row of METHODS.filter(({ kinds, managers }) => /^[^?]/.test(kinds) && managers.length > 0)) {
    checkWrong(row, log.video, log);
  }
});
