'use strict';
// Events of rooms, against the engine's of the same shape and against a thread-safe function that carries one number;
// and of many rooms from many threads.

const { sdk, native, engineCommand, createEngine, compare, logLevel } = require('../harness');

const count = 200_000;
const rooms = 8;
const threads = 4;

const rateOf = async (work) => {
  const start = process.hrtime.bigint();
  await work();
  return (count / Number(process.hrtime.bigint() - start)) * 1e6;
};

/** Resolves when `count` events have come; `listen` sets the callback that counts them. */
const receive = (listen, ...requests) => new Promise((resolve) => {
  let seen = 0;
  listen(() => {
    if (++seen === count) resolve();
  });
  for (const request of requests) engineCommand({ do: 'fire', repeat: count / requests.length, wait: false, ...request });
});

const receiveNumbers = () => new Promise((resolve) => {
  let seen = 0;
  native.postNumbers(count, () => {
    if (++seen === count) resolve();
  });
});

module.exports = async function roomEvents() {
  let onEngineEvent = () => {};
  let onRoomEvent = () => {};
  const video = createEngine((message) => onEngineEvent(message), logLevel.warnings);
  const made = Array.from({ length: rooms }, (_, number) =>
    new sdk.xoRTCRoom(`room-${number}`, (message) => onRoomEvent(number, message)));
  const toEngine = (listener) => {
    onEngineEvent = listener;
  };
  const toRooms = (listener) => {
    onRoomEvent = listener;
  };
  const rows = [];

  const message = { uid: 'user-0815', message: 'a message of some words' };
  const ofRoom = () => receive(toRooms, { event: 'onUserMessageReceived', args: message, target: 'room-0' });
  const ofEngine = () => receive(toEngine, { event: 'onUserMessageReceivedOutsideRoom', args: message });
  await ofRoom();
  await ofEngine();
  rows.push(await compare({
    name: 'room event of two texts, and the engine\'s', unit: 'per ms', goal: { kind: 'least', ratio: 0.9 }, rounds: 9,
    value: () => rateOf(ofRoom), limit: () => rateOf(ofEngine),
  }));

  const state = { room_id: 'room-0', uid: 'user-0815', state: -3, extra_info: '{"join_type":0}' };
  const stateOfRoom = () => receive(toRooms, { event: 'onRoomStateChanged', args: state, target: 'room-0' });
  await stateOfRoom();
  rows.push(await compare({
    name: 'room event of three texts and a number', unit: 'per ms', goal: { kind: 'least', ratio: 0.5 },
    value: () => rateOf(stateOfRoom), limit: () => rateOf(receiveNumbers),
  }));

  // Every thread goes through the rooms in an order of its own, so that a room is called by several at once and several
  // rooms are called at once. The number of the thread and of its call tell what is missing.
  const requests = [];
  for (let turn = 0; turn < rooms; ++turn) {
    for (let thread = 0; thread < threads; ++thread) {
      const target = `room-${(turn + thread * 2) % rooms}`;
      const args = { msgid: { $index: 0 }, error: thread };
      requests.push({ event: 'onUserMessageSendResult', args, target, thread });
    }
  }
  let fired = 0;
  let inOrder = 0;
  const ofAllRooms = () => {
    const next = Array.from({ length: rooms }, () => new Array(threads).fill(0));
    fired += count;
    const listen = (counted) => toRooms((room, { Object: { msgid, error: thread } }) => {
      if (next[room][thread] === msgid) ++inOrder;
      next[room][thread] = msgid + 1;
      counted();
    });
    return receive(listen, ...requests);
  };
  const ofOneRoom = () => receive(toRooms, { ...requests[0], target: 'room-0', thread: 0 });
  await ofOneRoom();
  await ofAllRooms();
  rows.push(await compare({
    name: 'events of 8 rooms from 4 threads, and of one from one', unit: 'per ms', goal: { kind: 'least', ratio: 0.9 },
    value: () => rateOf(ofAllRooms), limit: () => rateOf(ofOneRoom),
  }));
  rows.push({
    name: 'events of 8 rooms from 4 threads, lost or displaced', value: fired - inOrder, unit: 'events', limit: fired,
    ratio: (fired - inOrder) / fired, goal: { kind: 'most', ratio: 0 },
  });

  for (const room of made) room.destroy();
  video.destroyRTCVideo();
  return rows;
};
