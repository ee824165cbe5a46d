'use strict';

const assert = require('node:assert');
const { test } = require('node:test');

const { EFFECT_ROWS, EFFECT_CONFIG, MEDIA_ROWS, MEDIA_CONFIG, FRAME } = require('./method_tables/players');
const { sdk, engine, createEngine, Collector } = require('./support');
const { collectUntil, withoutEngineObject } = require('./support/garbage');
const { checkRight, checkWrong, checkMissing, textsOf, linesOf } = require('./support/method_table');

// Channels keep their callbacks, and these everything around them, for ever.
const ignore = () => {};

/** What the two classes do alike, and what tells them apart. */
const CLASSES = [
  {
    className: 'KavRTCAudioEffectPlayer',
    Player: sdk.xoRTCAudioEffectPlayer,
    rows: EFFECT_ROWS,
    otherMethods: [],
    make: (callback) => new sdk.xoRTCAudioEffectPlayer(callback),
    lookup: 'getAudioEffectPlayer',
    missing: '@, AudioEffectPlayer is nullptr',
    handlers: 'IAudioEffectPlayerEventHandler',
    target: '',
    event: 'onAudioEffectPlayerStateChanged',
    args: (n) => ({ effect_id: n, state: 3, error: -1 }),
    payload: (n) => ({ effect_id: n, state: 3, error: -1 }),
  },
  {
    className: 'KavRTCMediaPlayer',
    Player: sdk.xoRTCMediaPlayer,
    rows: MEDIA_ROWS,
    otherMethods: ['pushExternalAudioFrame'],
    make: (callback, id = 4) => new sdk.xoRTCMediaPlayer(id, callback),
    lookup: 'getMediaPlayer',
    missing: '@, MediaPlayer is nullptr',
    handlers: 'IMediaPlayerEventHandler',
    target: '4',
    event: 'onMediaPlayerStateChanged',
    args: (n) => ({ player_id: n, state: 3, error: -1 }),
    payload: (n) => ({ player_id: n, state: 3, error: -1 }),
  },
];

/** `run` with a created engine that is gone afterwards. */
async function withEngine(run, options) {
  engine.reset();
  const log = createEngine(options);
  try {
    await run(log);
  } finally {
    log.destroy();
    engine.reset();
  }
}

for (const player of CLASSES) {
  const { className, rows, make, lookup } = player;

  test(`${className}: every method is in the table`, () => {
    const names = Object.getOwnPropertyNames(player.Player.prototype).filter((name) => name !== 'constructor');
    assert.deepStrictEqual(names.sort(), [...rows.map(({ name }) => name), ...player.otherMethods].sort());
  });

  test(`${className}: right arguments reach the engine and its answer comes back`, () =>
    withEngine((log) => {
      const target = make(ignore);
      for (const row of rows) {
        checkRight(row, target, log);
        engine.answer(row.call, -104);
        assert.strictEqual(target[row.name](...row.args), -104, row.name);
      }
    }));

  test(`${className}: wrong arguments are refused and reach no engine`, () =>
    withEngine((log) => {
      const target = make(ignore);
      for (const row of rows) checkWrong(row, target, log);
    }));

  test(`${className}: the engine's player is looked up anew on every call`, async () => {
    let target;
    const everyMethodSays = (log, line) => {
      for (const row of rows) checkMissing(row, target, log, line);
    };
    await withEngine((log) => {
      target = make(ignore);
      engine.clear();
      target.stop(1);
      target.stop(1);
      assert.strictEqual(engine.countCalls(lookup), 2);
      if (lookup === 'getMediaPlayer') assert.deepStrictEqual(engine.lastArgs(lookup), { player_id: 4 });

      engine.withhold(lookup);
      everyMethodSays(log, player.missing);
      engine.withhold(lookup, false);
      assert.strictEqual(target.stop(1), 0);
    });
    // Another engine is as good; after a failed creation there is none, but the log is open.
    await withEngine(() => assert.strictEqual(target.stop(1), 0));
    engine.withhold('createRTCVideo');
    const failed = createEngine();
    everyMethodSays(failed, `@, ${className} error: IRTCVideo is null`);
    const lines = textsOf(failed, () => make(ignore));
    assert.deepStrictEqual(lines, [
      `+${className}(#)`,
      `${className}(#), ${className} error: IRTCVideo is null`,
      `${className}(#), ret: -1`,
    ]);
    engine.reset();
    failed.video.createRTCVideo('app-id', ignore, '');
    failed.destroy();
  });

  test(`${className}: without any engine object`, () => {
    const gone = `@, ${className} error: getInstance is null`;
    let target;
    const noticed = (log) => {
      const lines = textsOf(log, () => {
        target = make(ignore);
      });
      return lines.length === 3 && lines[1] === gone.replace('@', `${className}(#)`) && lines[2].endsWith('ret: -1');
    };
    return withoutEngineObject(noticed, (log) => {
      for (const row of rows) checkMissing(row, target, log, gone);
    });
  });

  test(`${className}: construction`, () =>
    withEngine((log) => {
      const lines = textsOf(log, () => make(ignore));
      assert.deepStrictEqual(lines, [`+${className}(#)`, `${className}(#), ret: 0`]);

      const media = className === 'KavRTCMediaPlayer';
      const wrong = media ? [[], [1], ['1', () => {}], [null, () => {}], [1, {}]] : [[], [null], [{}], ['callback']];
      for (const args of wrong) {
        let target;
        const refused = textsOf(log, () => {
          target = new player.Player(...args);
        });
        assert.deepStrictEqual(refused, [
          `+${className}(#)`,
          `${className}(#), Param Invalid`,
          `${className}(#), ret: -1`,
        ]);
        // It has no channel, but its methods work.
        assert.strictEqual(target.stop(1), 0);
        if (media) assert.deepStrictEqual(engine.lastArgs(lookup), { player_id: -1 });
        assert.strictEqual(target.setEventHandler(), 0);
        engine.fire(player.event, player.args(1), { target: media ? '-1' : '' });
        const dropped = new RegExp(`^-${player.event}\\(\\d+\\), status: 1$`);
        assert.ok(log.log().some((line) => dropped.test(line)), log.log().join('\n'));
      }
      if (!media) {
        engine.withhold(lookup);
        const without = textsOf(log, () => make(ignore));
        assert.deepStrictEqual(without, [
          `+${className}(#)`,
          `${className}(#), AudioEffectPlayer is nullptr`,
          `${className}(#), ret: -1`,
        ]);
      }
      assert.throws(() => player.Player(() => {}), TypeError);
    }));

  test(`${className}: events`, () =>
    withEngine(async (log) => {
      const collector = new Collector();
      const target = make(collector.callback);
      // Construction alone registers nothing.
      assert.deepStrictEqual(engine.attached(player.handlers), []);
      target.setEventHandler();
      assert.deepStrictEqual(engine.attached(player.handlers), [player.target]);

      engine.fire(player.event, player.args(9));
      await collector.waitFor(player.event);
      assert.deepStrictEqual(collector.events, [{ Type: player.event, Object: player.payload(9) }]);
      assert.deepStrictEqual(Object.keys(collector.events[0].Object), Object.keys(player.payload(9)));
      // The post's line may come before or after the delivery's.
      const entries = log.entries().filter(({ text }) => text.includes(player.event));
      assert.deepStrictEqual(
        entries.map(({ level, text }) => `${level} ${text.replace(/\(\d+\)/, '(#)')}`).sort(),
        [`D -${player.event}(#), status: 0`, `I [${player.event}] , +callback`, `I ${player.event}, -callback`],
      );
      assert.ok(log.log().indexOf(`[${player.event}] , +callback`) < log.log().indexOf(`${player.event}, -callback`));

      // A callback that throws does not stop later events, and the closing line is written.
      collector.clear();
      collector.onCall = () => {
        collector.onCall = null;
        throw new Error('of the test');
      };
      engine.fire(player.event, player.args(1), { repeat: 2 });
      await collector.waitFor(player.event);
      assert.strictEqual(log.log().filter((text) => text === `${player.event}, -callback`).length, 3);
    }));

  test(`${className}: events from several threads arrive in each thread's order`, () =>
    withEngine(
      async () => {
        const collector = new Collector();
        make(collector.callback).setEventHandler();
        for (let thread = 0; thread < 3; ++thread) {
          for (let n = 0; n < 100; ++n) {
            engine.fire(player.event, player.args(thread * 1000 + n), { thread, wait: false });
          }
        }
        engine.settle();
        await collector.waitFor(() => collector.events.length === 300);
        const numbers = collector.events.map(({ Object: payload }) => Object.values(payload)[0]);
        for (let thread = 0; thread < 3; ++thread) {
          const own = numbers.filter((n) => Math.floor(n / 1000) === thread);
          assert.deepStrictEqual(own, Array.from({ length: 100 }, (_, n) => thread * 1000 + n));
        }
      },
      { logLevel: 3 },
    ));

  test(`${className}: a collected player detaches its handler and no other`, () =>
    withEngine(async (log) => {
      const stopped = `${className} stopCallback`;
      const count = () => log.log().filter((text) => text === stopped).length;
      let wanted = count() + 1;
      const collector = new Collector();
      (() => make(collector.callback).setEventHandler())();
      assert.deepStrictEqual(engine.attached(player.handlers), [player.target]);
      await collectUntil(() => count() >= wanted);
      assert.deepStrictEqual(engine.attached(player.handlers), []);

      // The handler of a later object stays.
      wanted = count() + 1;
      (() => make(collector.callback).setEventHandler())();
      const later = make(collector.callback);
      later.setEventHandler();
      await collectUntil(() => count() >= wanted);
      assert.deepStrictEqual(engine.attached(player.handlers), [player.target]);
      engine.fire(player.event, player.args(1));
      await collector.waitFor(player.event);

      // One that was never registered leaves the engine alone.
      wanted = count() + 1;
      (() => make(ignore))();
      engine.clear();
      await collectUntil(() => count() >= wanted);
      assert.strictEqual(engine.countCalls('setEventHandler'), 0);
      later.setEventHandler();
    }));

  test(`${className}: events of a collected player are dropped while the engine still holds its handler`, () =>
    withEngine(async (log) => {
      const stopped = `${className} stopCallback`;
      const count = () => log.log().filter((text) => text === stopped).length;
      const wanted = count() + 1;
      const collector = new Collector();
      // Withholding the player keeps the finaliser from detaching.
      (() => make(collector.callback).setEventHandler())();
      engine.withhold(lookup);
      await collectUntil(() => count() >= wanted);
      assert.deepStrictEqual(engine.attached(player.handlers), [player.target]);
      engine.fire(player.event, player.args(1), { threads: 2, repeat: 20 });
      const lines = log.log().filter((text) => text.startsWith(`-${player.event}(`));
      assert.strictEqual(lines.length, 40);
      assert.ok(lines.every((text) => text.endsWith(', status: 11')), lines[0]);
      assert.deepStrictEqual(collector.events, []);
    }));

  test(`${className}: collected while events are in flight`, () =>
    withEngine(
      async (log) => {
        const stopped = `${className} stopCallback`;
        for (let round = 0; round < 5; ++round) {
          const wanted = log.log().filter((text) => text === stopped).length + 1;
          (() => make(ignore).setEventHandler())();
          engine.fire(player.event, player.args(1), { threads: 3, repeat: 5000, wait: false });
          await collectUntil(() => log.log().filter((text) => text === stopped).length >= wanted);
          engine.settle();
        }
      },
      { logLevel: 0 },
    ));
}

test('a record without one of its keys, or with one mistyped, is refused as a whole', () =>
  withEngine((log) => {
    const effects = new sdk.xoRTCAudioEffectPlayer(ignore);
    const media = new sdk.xoRTCMediaPlayer(1, ignore);
    const SOURCE = { mode: 1, type: 2 };
    const cases = [
      ['start', EFFECT_CONFIG, (record) => effects.start(1, 'path', record)],
      ['open', MEDIA_CONFIG, (record) => media.open('path', record)],
      ['openWithCustomSource', SOURCE, (record) => media.openWithCustomSource(record, MEDIA_CONFIG)],
      ['openWithCustomSource', MEDIA_CONFIG, (record) => media.openWithCustomSource(SOURCE, record)],
      ['pushExternalAudioFrame', FRAME, (record) => media.pushExternalAudioFrame(record)],
    ];
    for (const [name, right, call] of cases) {
      assert.strictEqual(call(right), 0);
      engine.clear();
      for (const key of Object.keys(right)) {
        const wrongs = [{}, null, Symbol('wrong'), typeof right[key] === 'string' ? 500 : '500'];
        for (const wrong of [...wrongs.map((value) => ({ ...right, [key]: value })), without(right, key)]) {
          const lines = textsOf(log, () => assert.strictEqual(call(wrong), -1, `${name} ${key}`));
          assert.deepStrictEqual(lines, [`+${name}(#)`, `${name}(#), Param Invalid`, `${name}(#), ret: -1`]);
        }
        // A getter that throws refuses, too, and its exception is the caller's.
        const throwing = Object.defineProperty(without(right, key), key, {
          get() {
            throw new RangeError(key);
          },
        });
        assert.throws(() => call(throwing), { name: 'RangeError', message: key });
      }
      assert.strictEqual(engine.countCalls(name), 0, name);
    }
  }));

function without(record, key) {
  const { [key]: _, ...rest } = record;
  return rest;
}

test('progress intervals are signed decimal texts', () =>
  withEngine(() => {
    const media = new sdk.xoRTCMediaPlayer(1, ignore);
    for (const [text, interval] of [
      ['250', 250],
      ['  \t\n+42', 42],
      ['-17', -17],
      ['12x34', 12],
      ['1.9', 1],
      ['abc', 0],
      ['', 0],
      ['0x10', 0],
      ['- 5', 0],
      ['9007199254740993', 9007199254740993n],
      ['9223372036854775807', 9223372036854775807n],
    ]) {
      assert.strictEqual(media.setProgressInterval(text), 0);
      assert.strictEqual(BigInt(engine.lastArgs('setProgressInterval').interval), BigInt(interval), text);
      media.open('', { ...MEDIA_CONFIG, callback_on_progress_interval: text });
      assert.strictEqual(BigInt(engine.lastArgs('open').config.callback_on_progress_interval), BigInt(interval), text);
    }
    assert.strictEqual(media.setProgressInterval('9'.repeat(400)), 0);
  }));

test('numbers of the players are truncated', () =>
  withEngine(() => {
    const media = new sdk.xoRTCMediaPlayer(7.9, ignore);
    media.setLoudness(0.9);
    assert.strictEqual(engine.lastArgs('setLoudness').loudness, 0);
    assert.deepStrictEqual(engine.lastArgs('getMediaPlayer'), { player_id: 7 });
    media.setPosition(2 ** 32 + 3.5);
    assert.strictEqual(engine.lastArgs('setPosition').position, 3);
    media.setVolume(NaN, -1.5);
    assert.deepStrictEqual(engine.lastArgs('setVolume'), { volume: 0, type: -1 });
    const effects = new sdk.xoRTCAudioEffectPlayer(ignore);
    effects.start(1.9, '', { ...EFFECT_CONFIG, pitch: -3.9 });
    assert.strictEqual(engine.lastArgs('IAudioEffectPlayer.start').config.pitch, -3);
  }));

test('media players are told apart by their ids', () =>
  withEngine(async () => {
    const collectors = [3, 8].map((id) => {
      const collector = new Collector();
      const player = new sdk.xoRTCMediaPlayer(id, collector.callback);
      player.setEventHandler();
      return { collector, player };
    });
    assert.deepStrictEqual(engine.attached('IMediaPlayerEventHandler').sort(), ['3', '8']);
    engine.clear();
    for (const { player } of collectors) player.start();
    assert.deepStrictEqual(engine.calls('start').map(({ id }) => id), ['3', '8']);

    // 64 bits of progress arrive as text.
    const progresses = ['0', '9007199254740993', '-9223372036854775808', '9223372036854775807'];
    for (const progress of progresses) {
      engine.fire('onMediaPlayerPlayingProgress', { player_id: 8, progress: BigInt(progress) }, { target: 8 });
    }
    const [three, eight] = collectors.map(({ collector }) => collector);
    await eight.waitFor(() => eight.events.length === progresses.length);
    assert.deepStrictEqual(
      eight.events,
      progresses.map((progress) => ({ Type: 'onMediaPlayerPlayingProgress', Object: { player_id: 8, progress } })),
    );
    assert.deepStrictEqual(three.events, []);
  }));

test('pushExternalAudioFrame', () =>
  withEngine((log) => {
    const media = new sdk.xoRTCMediaPlayer(1, ignore);
    engine.answer('pushExternalAudioFrame', 7);
    const pushed = textsOf(log, () => assert.strictEqual(media.pushExternalAudioFrame(FRAME), 7));
    assert.deepStrictEqual(pushed, ['+pushExternalAudioFrame(#)', 'pushExternalAudioFrame(#), ret: 7']);
    const { builder } = engine.lastArgs('buildAudioFrame');
    assert.deepStrictEqual(
      [builder.sample_rate, builder.channels, builder.timestamp_us, builder.data_size, builder.deep_copy],
      [48000, 2, 1000, 4, true],
    );
    assert.strictEqual(engine.countCalls('IMediaPlayer.pushExternalAudioFrame'), 1);

    // Milliseconds are cut to whole ones; what 64 bits do not hold is cut to their ends.
    for (const [timestamp_ms, microseconds] of [
      [-1.9, -1000],
      [0.9, 0],
      [1e15, 10n ** 18n],
      [NaN, 0],
      [Infinity, 9223372036854775000n],
      [-1e300, -9223372036854775000n],
    ]) {
      assert.strictEqual(media.pushExternalAudioFrame({ ...FRAME, timestamp_ms }), 7);
      const { timestamp_us } = engine.lastArgs('buildAudioFrame').builder;
      assert.strictEqual(BigInt(timestamp_us), BigInt(microseconds), String(timestamp_ms));
    }

    // The size is that of the elements, the data that of the view.
    for (const [data, size] of [
      [new Int16Array([1, 2, 3]), 6],
      [new Float32Array(3), 12],
      [new Int16Array(new Int16Array([1, 2, 3, 4]).buffer, 2, 2), 4],
    ]) {
      media.pushExternalAudioFrame({ ...FRAME, data });
      assert.strictEqual(engine.lastArgs('buildAudioFrame').builder.data_size, size);
    }

    // More bytes than the engine's frames count. The pages are never touched, so they cost nothing.
    engine.clear();
    const tooLong = textsOf(log, () => {
      assert.strictEqual(media.pushExternalAudioFrame({ ...FRAME, data: new Uint8Array(2 ** 31) }), -1);
    });
    assert.strictEqual(tooLong[1], 'pushExternalAudioFrame(#), Param Invalid');
    assert.strictEqual(engine.countCalls('buildAudioFrame'), 0);

    for (const wrong of [undefined, null, 5, 'frame', true]) {
      const lines = linesOf(log, () => assert.strictEqual(media.pushExternalAudioFrame(wrong), -1));
      const type = { undefined: 0, object: 1, boolean: 2, number: 3, string: 4 }[typeof wrong];
      assert.deepStrictEqual(lines[1], { level: 'W', text: `pushExternalAudioFrame(#) param is not valid, ${type}` });
    }

    // No frame: nothing to push, nothing to release. A getter may take the samples away before they are read.
    engine.clear();
    const doomed = new Uint8Array(4);
    const treacherous = {
      ...FRAME,
      get timestamp_ms() {
        structuredClone(doomed.buffer, { transfer: [doomed.buffer] });
        return 1;
      },
      data: doomed,
    };
    assert.strictEqual(media.pushExternalAudioFrame(treacherous), -1);
    engine.withhold('buildAudioFrame');
    assert.strictEqual(media.pushExternalAudioFrame(FRAME), -1);
    assert.strictEqual(engine.countCalls('pushExternalAudioFrame'), 0);

    engine.withhold('buildAudioFrame', false);
    media.pushExternalAudioFrame(FRAME);
    const { built, builtReleased, live, violations } = engine.frames();
    assert.ok(built > 0);
    assert.deepStrictEqual([builtReleased, live, violations], [built, 0, 0]);

    engine.withhold('getMediaPlayer');
    const missing = textsOf(log, () => assert.strictEqual(media.pushExternalAudioFrame(FRAME), -1));
    assert.deepStrictEqual(missing, [
      '+pushExternalAudioFrame(#)',
      'pushExternalAudioFrame(#), MediaPlayer is nullptr',
      'pushExternalAudioFrame(#), ret: -1',
    ]);
  }));

test('a handler outlives its engine and serves the next one', async () => {
  engine.reset();
  const first = createEngine();
  const collector = new Collector();
  const media = new sdk.xoRTCMediaPlayer(2, collector.callback);
  media.setEventHandler();
  first.destroy();
  assert.deepStrictEqual(engine.attached('IMediaPlayerEventHandler'), []);
  const second = createEngine();
  media.setEventHandler();
  engine.fire('onMediaPlayerStateChanged', { player_id: 2, state: 1, error: 0 });
  await collector.waitFor('onMediaPlayerStateChanged');
  second.destroy();
});
