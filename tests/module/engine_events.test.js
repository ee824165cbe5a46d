'use strict';

// What the engine reports reaches the application whole, and the log says so.

const assert = require('node:assert');
const { test } = require('node:test');

const { checkEvent, declaredEvents, withNullBytes, withNullTexts } = require('./event_tables/check');
const rows = require('./event_tables/engine_events');
const { createEngine, engine } = require('./support');

/** What the count of a message's bytes is called. */
const countNames = {
  onUserBinaryMessageReceivedOutsideRoom: 'size',
  onSEIMessageReceived: 'length',
  onStreamSyncInfoReceived: 'size',
  onPublicStreamSEIMessageReceived: 'message_length',
  onPublicStreamSEIMessageReceivedWithChannel: 'message_length',
  onPublicStreamDataMessageReceived: 'message_length',
};

const session = createEngine({ logLevel: 0 });
const check = (row) => checkEvent(engine, session, session.entries, row);

test('the table names every event of the engine', () => {
  const named = new Set(rows.map(([event]) => event));
  assert.deepStrictEqual([...named].sort(), declaredEvents('rtc_video_events.h').sort());
});

test('every event: payload, order of keys, log line', async (t) => {
  for (const row of rows) {
    await t.test(row[0], async () => {
      const line = await check(row);
      // The number in the line stands for the handler's place in the source, so it is the same every time.
      assert.strictEqual(await check(row), line);
    });
  }
});

test('null texts arrive, and are logged, as ""', async (t) => {
  for (const row of rows.map(withNullTexts).filter(Boolean)) {
    await t.test(row[0], () => check(row));
  }
});

test('null bytes arrive, and are logged, as "", whatever their length', async (t) => {
  const messages = rows.map((row) => withNullBytes(row, countNames)).filter(Boolean);
  assert.deepStrictEqual(messages.map(([event]) => event).sort(), Object.keys(countNames).sort());
  for (const row of messages) {
    await t.test(row[0], () => check(row));
  }
});

test('a null report of audio properties is an empty list, whatever its count', async () => {
  await check([
    'onLocalAudioPropertiesReport',
    { audio_properties_infos: null, audio_properties_info_number: 3 },
    ', n_status: 0, audio_properties_info_number:3',
    { audio_properties_infos: [], audio_properties_info_number: 3 },
  ]);
});

test('long messages arrive whole; their log line is cut', async () => {
  const message = `${'äbc'.repeat(30000)}.`;
  session.collector.clear();
  const seen = session.entries().length;
  engine.fire('onUserMessageReceivedOutsideRoom', { uid: 'user-1', message });
  const { Object: payload } = await session.waitFor('onUserMessageReceivedOutsideRoom');
  assert.strictEqual(payload.message, message);
  const { text } = session.entries().slice(seen).find((entry) => entry.text.includes('uid:user-1'));
  assert.match(text, /^onUserMessageReceivedOutsideRoom\(\d+\), n_status: 0, uid:user-1, message:(äbc){1000}/);
  assert.ok(Buffer.byteLength(text) < 10240);
});

test('events of one engine thread keep their order, and none is lost', async () => {
  const threads = 4;
  const repeat = 500;
  session.collector.clear();
  engine.fire('onAudioMixingPlayingProgress', { mix_id: { $thread: 0 }, progress: { $index: 0 } }, { threads, repeat });
  await session.waitFor(({ events }) => events.length === threads * repeat);
  for (let thread = 0; thread < threads; ++thread) {
    const progress = session.of('onAudioMixingPlayingProgress').filter(({ mix_id }) => mix_id === thread);
    assert.deepStrictEqual(
      progress.map((payload) => payload.progress),
      Array.from({ length: repeat }, (_, i) => i),
    );
  }
});
