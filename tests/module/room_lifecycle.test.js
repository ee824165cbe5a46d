'use strict';

const assert = require('node:assert');
const { test } = require('node:test');

const { sdk, engine, createEngine, createRoom } = require('./support');
const { collectUntil, withoutEngineObject } = require('./support/garbage');
const { runScript, support } = require('./support/child');
const { inRoom } = require('./support/in_room');
const { linesOf, textsOf } = require('./support/method_table');

// Channels keep their callbacks, and these everything around them, for ever.
const ignore = () => {};

test('construction', () => {
  engine.reset();
  const log = createEngine();
  let made;
  const right = textsOf(log, () => {
    made = new sdk.xoRTCRoom('café', ignore, 'extra');
  });
  assert.deepStrictEqual(right, ['+KavRTCRoom(#', 'KavRTCRoom(#), roomId: café', 'KavRTCRoom(#)']);
  assert.strictEqual(made.isRoomCreated(), true);
  assert.deepStrictEqual(
    engine.calls().slice(-2).map(({ name, args }) => [name, args.room_id]),
    [
      ['IRTCVideo.createRTCRoom', 'café'],
      ['IRTCRoom.setRTCRoomEventHandler', undefined],
    ],
  );
  assert.deepStrictEqual(engine.attached('IRTCRoomEventHandler'), ['café']);

  engine.clear();
  const wrong = [[], ['id'], ['id', null], ['id', {}], [123, () => {}], [null, () => {}], [() => {}, 'id']];
  const refused = linesOf(log, () => {
    for (const args of wrong) {
      const target = new sdk.xoRTCRoom(...args);
      assert.strictEqual(target.isRoomCreated(), false);
      assert.strictEqual(target.joinRoom('t', {}, {}), -1);
      assert.strictEqual(target.destroy(), -1);
    }
  });
  assert.deepStrictEqual(refused.slice(0, 2), [
    { level: 'I', text: '+KavRTCRoom(#' },
    { level: 'E', text: 'KavRTCRoom(#), Param Invalid' },
  ]);
  assert.strictEqual(refused.filter(({ text }) => text === 'KavRTCRoom(#), Param Invalid').length, wrong.length);
  assert.strictEqual(engine.countCalls(), 0);

  engine.withhold('createRTCRoom');
  const failed = linesOf(log, () => {
    assert.strictEqual(new sdk.xoRTCRoom('other', ignore).isRoomCreated(), false);
  });
  assert.deepStrictEqual(failed.slice(1), [
    { level: 'I', text: 'KavRTCRoom(#), roomId: other' },
    { level: 'E', text: 'createRTCRoom error!' },
  ]);
  assert.throws(() => sdk.xoRTCRoom('id', () => {}), TypeError);

  // An object whose engine could not be made, with the log open.
  made.destroy();
  log.destroy();
  engine.withhold('createRTCVideo');
  const without = createEngine();
  const lines = linesOf(without, () => {
    const target = new sdk.xoRTCRoom('id', ignore);
    assert.deepStrictEqual([target.isRoomCreated(), target.getRoomId(), target.destroy()], [false, '', -1]);
  });
  assert.deepStrictEqual(lines[1], {
    level: 'E',
    text: 'KavRTCRoom, 错误: 还没有创建Video, IVIideo指针为空',
  });
  // Closes the log.
  engine.reset();
  without.video.createRTCVideo('app-id', ignore, '');
  without.destroy();
});

test('without any engine object no room is made', () => {
  let target;
  const noticed = (log) => {
    const lines = linesOf(log, () => {
      target = new sdk.xoRTCRoom('id', ignore);
    });
    return lines.at(-1).level === 'E' && lines.at(-1).text === 'KavRTCRoom(#), KavRTCRoom error: getInstance is null';
  };
  return withoutEngineObject(noticed, () => {
    assert.deepStrictEqual([target.isRoomCreated(), target.getRoomId(), target.leaveRoom()], [false, '', -1]);
  });
});

test('getRoomId, isRoomCreated and destroy', () => {
  inRoom((target, log) => {
    const alive = textsOf(log, () => {
      assert.strictEqual(target.isRoomCreated(), true);
      assert.strictEqual(target.getRoomId(), 'the room');
    });
    assert.deepStrictEqual(alive, ['+getRoomId(#', '-getRoomId(#), ret: 0 room_id=the room']);

    engine.clear();
    const destroyed = textsOf(log, () => assert.strictEqual(target.destroy(), 0));
    assert.deepStrictEqual(destroyed, ['+destroyRTCRoom(#', '-destroyRTCRoom(#)']);
    assert.deepStrictEqual(engine.calls().map(({ name }) => name), ['IRTCRoom.destroy']);
    assert.deepStrictEqual(engine.attached('IRTCRoomEventHandler'), []);

    const dead = textsOf(log, () => {
      assert.strictEqual(target.isRoomCreated(), false);
      assert.strictEqual(target.getRoomId(), '');
      assert.strictEqual(target.destroy(), -1);
    });
    assert.deepStrictEqual(dead, ['+getRoomId(#', '-getRoomId(#), ret: -1 room_id=', '+destroyRTCRoom(#']);
    assert.strictEqual(engine.countCalls('destroy'), 1);
  }, 'the room');
});

test('several rooms share one gate', async () => {
  engine.reset();
  const log = createEngine();
  const first = createRoom('first');
  const second = createRoom('second');
  const fire = (target, uid) => engine.fire('onUserLeave', { uid, reason: 0 }, { target });

  first.room.leaveRoom();
  second.room.leaveRoom();
  assert.deepStrictEqual(engine.calls('leaveRoom').map(({ id }) => id), ['first', 'second']);

  fire('first', 'a');
  fire('second', 'b');
  await Promise.all([first.waitFor('onUserLeave'), second.waitFor('onUserLeave')]);
  assert.deepStrictEqual([first.of('onUserLeave')[0].uid, second.of('onUserLeave')[0].uid], ['a', 'b']);

  // Destroying one silences the other until a room is created again.
  first.room.destroy();
  fire('second', 'lost');
  const third = createRoom('third');
  fire('second', 'c');
  fire('third', 'd');
  await Promise.all([second.waitFor(() => second.events.length === 2), third.waitFor('onUserLeave')]);
  assert.deepStrictEqual(second.of('onUserLeave').map(({ uid }) => uid), ['b', 'c']);
  assert.deepStrictEqual(first.of('onUserLeave').map(({ uid }) => uid), ['a']);
  const statuses = log.log().filter((text) => text.startsWith('onUserLeave('));
  assert.deepStrictEqual(
    statuses.map((text) => Number(/status: (\d+)$/.exec(text)[1])),
    [0, 0, 11, 0, 0],
  );

  // A construction that fails opens nothing.
  second.room.destroy();
  new sdk.xoRTCRoom(1, ignore);
  fire('third', 'lost too');
  const last = log.log().filter((text) => text.startsWith('onUserLeave(')).at(-1);
  assert.match(last, /status: 11$/);
  third.room.destroy();
  log.destroy();
});

test('events of several rooms from several threads arrive whole and in order', async () => {
  engine.reset();
  const log = createEngine({ logLevel: 3 });
  const rooms = Array.from({ length: 4 }, (_, i) => createRoom(`room${i}`));
  rooms.forEach((_, i) => {
    engine.fire('onAVSyncStateChange', { state: i }, { target: `room${i}`, thread: i, repeat: 200, wait: false });
  });
  engine.settle();
  await Promise.all(rooms.map((made) => made.waitFor(() => made.events.length === 200)));
  rooms.forEach((made, i) => assert.ok(made.of('onAVSyncStateChange').every(({ state }) => state === i)));
  for (const { room: target } of rooms) target.destroy();
  log.destroy();
});

test('destroying a room while its events arrive', async () => {
  engine.reset();
  const log = createEngine({ logLevel: 3 });
  for (let i = 0; i < 20; ++i) {
    const { room: target } = createRoom('busy');
    engine.fire('onUserLeave', { uid: 'a', reason: 0 }, { target: 'busy', threads: 3, repeat: 50, wait: false });
    target.destroy();
    engine.settle();
  }
  log.destroy();
});

test('the engine destroyed first leaves rooms that refuse and can be destroyed', () => {
  engine.reset();
  const log = createEngine();
  const { room: target } = createRoom('orphan');
  log.destroy();
  assert.strictEqual(target.isRoomCreated(), true);
  assert.ok(target.leaveRoom() < 0);
  assert.ok(target.sendRoomMessage('m') < 0);
  assert.strictEqual(target.enableRangeAudio(true) < 0, true);
  assert.strictEqual(target.destroy(), 0);
  assert.strictEqual(target.destroy(), -1);
});

test('a collected room is destroyed, a destroyed one just goes', async () => {
  engine.reset();
  const log = createEngine();
  const count = (line) => log.log().filter((text) => text === line).length;
  (() => {
    createRoom('left alone');
    createRoom('destroyed').room.destroy();
  })();
  assert.strictEqual(engine.countCalls('IRTCRoom.destroy'), 1);
  await collectUntil(() => count('KavRTCRoom destructure') >= 2 && engine.countCalls('IRTCRoom.destroy') === 2);
  assert.deepStrictEqual(engine.calls('IRTCRoom.destroy').map(({ id }) => id), ['destroyed', 'left alone']);
  assert.deepStrictEqual(engine.attached('IRTCRoomEventHandler'), []);
  log.destroy();
});

test('calls in turns find their own room, also after the one called last was collected', async () => {
  engine.reset();
  const log = createEngine();
  const { room: first } = createRoom('first');
  const { room: second } = createRoom('second');
  const ids = () => [first, second, second, first].map((each) => each.getRoomId());
  assert.deepStrictEqual(ids(), ['first', 'second', 'second', 'first']);
  (() => assert.strictEqual(createRoom('short-lived').room.getRoomId(), 'short-lived'))();
  await collectUntil(() => log.log().includes('KavRTCRoom destructure'));
  assert.deepStrictEqual(ids(), ['first', 'second', 'second', 'first']);
  for (const stranger of [{}, log.video, null]) {
    assert.throws(() => first.getRoomId.call(stranger), { name: 'TypeError', message: 'Illegal invocation' });
  }
  log.destroy();
});

// The host's own workers race as the thread checker sees it.
const skip = process.env.CORVANE_SANITIZER === 'tsan';

test('when an environment ends its rooms are destroyed and their channels say goodbye', { skip }, () => {
  const worker = `
    const { createEngine, createRoom } = require(${support});
    createEngine();
    globalThis.rooms = [createRoom('one'), createRoom('two')];
    rooms[0].room.destroy();
    require('node:worker_threads').parentPort.postMessage('ready');`;
  const script = `
    const { Worker } = require('node:worker_threads');
    const { engine } = require(${support});
    const worker = new Worker(${JSON.stringify(worker)}, { eval: true });
    worker.on('error', (error) => { throw error; });
    worker.on('message', async () => {
      await worker.terminate();
      console.log('destroyed: ' + engine.calls('IRTCRoom.destroy').map(({ id }) => id));
      process.exit(0);
    });`;
  const lines = runScript(script);
  assert.strictEqual(lines.filter((line) => line === 'KavRTCRoom tsfn Finalizer. ').length, 2, lines.join('\n'));
  assert.ok(lines.includes('destroyed: one,two'), lines.join('\n'));
});
