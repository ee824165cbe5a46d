'use strict';

// What a room reports reaches the room's callback whole, and the log says so.

const assert = require('node:assert');
const { test } = require('node:test');

const { checkEvent, checkLine, declaredEvents, withNullBytes, withNullTexts } = require('./event_tables/check');
const { events: rows, prefixes } = require('./event_tables/room_events');
const { createEngine, createRoom, engine } = require('./support');

const countNames = { onRoomBinaryMessageReceived: 'size', onUserBinaryMessageReceived: 'size' };

const session = createEngine({ logLevel: 0 });
const room = createRoom('room-a');
const check = (row) =>
  checkEvent(engine, room, session.entries, row, { prefix: prefixes[row[0]], target: 'room-a' });

/** The lines about the render rate that `act` writes, without the number of their source line. */
function renderRateLines(act) {
  const seen = session.entries().length;
  act();
  const lines = session.log().slice(seen).filter((text) => text.startsWith('setVideoRenderFps('));
  return lines.map((text) => text.replace(/^setVideoRenderFps\(\d+\)/, ''));
}

const reportRate = (event, renderer_output_frame_rate, target = 'room-a') =>
  engine.fire(event, { stats: { video_stats: { renderer_output_frame_rate } } }, { target });

// First, while the rate is still low: it only ever rises.
test('stream statistics raise the render rate', async () => {
  const steps = [
    ['onLocalStreamStats', 0, []],
    ['onRemoteStreamStats', 15, [', from:onRemoteStreamStats, fps:15']],
    ['onRemoteStreamStats', 15, []],
    ['onLocalStreamStats', 14, []],
    ['onRemoteStreamStats', 30, [', from:onRemoteStreamStats, fps:30']],
    ['onRemoteStreamStats', 20, []],
    ['onLocalStreamStats', 31, [', from:onLocalStreamStats, fps:31']],
  ];
  for (const [event, rate, lines] of steps) {
    assert.deepStrictEqual(renderRateLines(() => reportRate(event, rate)), lines, `${event} with ${rate}`);
  }
  await room.waitFor(({ events }) => events.length === steps.length);
});

test('the table names every event of a room', () => {
  const named = new Set(rows.map(([event]) => event));
  assert.deepStrictEqual([...named].sort(), declaredEvents('rtc_room_events.h').sort());
});

test('every event: payload, order of keys, log line', async (t) => {
  for (const row of rows) {
    await t.test(row[0], async () => {
      const line = await check(row);
      assert.strictEqual(await check(row), line);
    });
  }
});

test('null texts arrive, and are logged, as ""', async (t) => {
  for (const row of rows.map(withNullTexts).filter(Boolean)) {
    await t.test(row[0], () => check(row));
  }
});

test('null bytes arrive as "", whatever their length', async (t) => {
  const messages = rows.map((row) => withNullBytes(row, countNames)).filter(Boolean);
  assert.deepStrictEqual(messages.map(([event]) => event).sort(), Object.keys(countNames).sort());
  for (const row of messages) {
    await t.test(row[0], () => check(row));
  }
});

test('a null list is empty, whatever its count', async (t) => {
  const lists = [
    [
      'onForwardStreamStateChanged',
      { infos: null, info_count: 2 },
      ', status: 0',
      { infos: [], info_count: 2 },
    ],
    ['onSubtitleMessageReceived', { subtitles: null, subtitle_count: 2 }, ', status: 0', { subtitles: [] }],
  ];
  for (const row of lists) {
    await t.test(row[0], () => check(row));
  }
});

test('the state of forwarding is logged once more when it is delivered', async () => {
  const seen = session.entries().length;
  room.collector.clear();
  const infos = [{ room_id: 'room-1' }, { room_id: 'room-2' }, { room_id: 'room-3' }];
  engine.fire('onForwardStreamStateChanged', { infos }, { target: 'room-a' });
  await room.waitFor('onForwardStreamStateChanged');
  const [script] = session.entries().filter(({ text }) => text.startsWith('+KavRTCRoom('));
  const line = session.entries().slice(seen).find(({ text }) => text.startsWith('onForwardStreamStateChanged: '));
  assert.deepStrictEqual(line, { level: 'I', tid: script.tid, text: 'onForwardStreamStateChanged: roomCount: 3' });
});

test('each room has its own callback; destroying one silences all until another is made', async () => {
  const other = createRoom('room-b');
  room.collector.clear();
  engine.fire('onUserLeave', { uid: 'of-a', reason: 1 }, { target: 'room-a' });
  engine.fire('onUserLeave', { uid: 'of-b', reason: 2 }, { target: 'room-b' });
  await Promise.all([room.waitFor('onUserLeave'), other.waitFor('onUserLeave')]);
  assert.deepStrictEqual(room.of('onUserLeave'), [{ uid: 'of-a', reason: 1 }]);
  assert.deepStrictEqual(other.of('onUserLeave'), [{ uid: 'of-b', reason: 2 }]);

  assert.strictEqual(other.room.destroy(), 0);
  let seen = session.entries().length;
  engine.fire('onUserLeave', { uid: 'dropped', reason: 3 }, { target: 'room-a' });
  checkLine(session.entries().slice(seen), 'onUserLeave', ', status: 11');
  // The render rate does not wait for the gate.
  seen = session.entries().length;
  assert.deepStrictEqual(
    renderRateLines(() => reportRate('onRemoteStreamStats', 1000)),
    [', from:onRemoteStreamStats, fps:1000'],
  );
  checkLine(session.entries().slice(seen), 'onRemoteStreamStats', ', status: 11');

  const third = createRoom('room-c');
  engine.fire('onUserLeave', { uid: 'again', reason: 4 }, { target: 'room-a' });
  await room.waitFor(({ events }) => events.some(({ Object: payload }) => payload.uid === 'again'));
  assert.deepStrictEqual(room.of('onUserLeave').map(({ uid }) => uid), ['of-a', 'again']);
  assert.strictEqual(other.events.length, 1);
  assert.strictEqual(third.room.destroy(), 0);
});

// Last: no rate is higher afterwards.
test('a negative rate counts as higher than any other', () => {
  assert.deepStrictEqual(
    renderRateLines(() => reportRate('onLocalStreamStats', -1)),
    [', from:onLocalStreamStats, fps:-1'],
  );
  assert.deepStrictEqual(renderRateLines(() => reportRate('onLocalStreamStats', 2147483647)), []);
});
