'use strict';
// Rooms end on their service with their last member, and never under one who is just coming.

const assert = require('node:assert');
const { test } = require('node:test');

const { administrate } = require('./support/administrator.js');
const { setUpParticipants } = require('./support/participant.js');

const { workplace, participant } = setUpParticipants();

async function until(what, condition) {
  for (const end = Date.now() + 10_000; Date.now() < end; ) {
    if (condition()) return;
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
  assert.fail(`in vain: ${what}`);
}

const exists = (room, plugin) => administrate(workplace, { request: 'exists', room }, { plugin }).exists;

/** The description that a room has on its service, as who joins is told. */
function describe(room) {
  return administrate(workplace, { request: 'join', ptype: 'publisher', room, id: 'administrator' }).description;
}

/** Sends a message to a user until it has arrived: beside other work one may be reached later than messages wait. */
async function reach(sender, room, uid) {
  for (let error = -1, tries = 0; error !== 0; tries++) {
    assert.ok(tries < 5, `${uid} is not reached`);
    const from = sender.events.length;
    await sender.call(room, 'sendUserMessage', uid, 'all here?', 0);
    ({ error } = await sender.waitFor('onUserMessageSendResult', () => true, from));
  }
}

test('a room ends with its last member, its messages with it', async () => {
  const [first, last] = ['first', 'last'].map((name) => participant(name));
  for (const user of [first, last]) await user.join('brief');
  await last.waitFor('onUserJoined');
  const messages = describe('brief').slice(8, 32);
  await first.call('brief', 'sendRoomMessage', 'hello');
  await last.waitFor('onRoomMessageReceived');
  assert.deepStrictEqual([exists('brief'), exists(messages, 'textroom')], [true, true]);

  await first.call('brief', 'leaveRoom');
  await last.waitFor('onUserLeave', ({ uid }) => uid === 'first');
  assert.strictEqual(exists('brief'), true);
  await last.call('brief', 'leaveRoom');
  await until('the room ends', () => !exists('brief'));
  await until('its messages end', () => !exists(messages, 'textroom'));
  // Of who leaves before having joined, and of an engine that ends, nothing stays either; an administrator's room does.
  administrate(workplace, { request: 'create', room: 'hall' });
  await first.join('hall');
  await first.call('hall', 'leaveRoom');
  await first.call('actions', 'room', 'hasty');
  const config = { room_profile_type: 0, is_auto_publish: false, is_auto_subscribe_audio: false, is_auto_subscribe_video: false, remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 } };
  first.call('hasty', 'joinRoom', '', { uid: 'first', extra_info: '' }, config);
  first.call('hasty', 'leaveRoom');
  await last.join('ending');
  await first.join('other'); // the service stays
  await last.end();
  for (const room of ['hasty', 'ending']) await until(`${room} ends`, () => !exists(room));
  assert.strictEqual(exists('hall'), true);
});

test('who comes while the last one leaves is in a room that stays', async () => {
  const users = ['ann', 'bob', 'cy'].map((name) => participant(name));
  await Promise.all(users.map(async (user, place) => {
    for (let turn = 0; turn < 40; turn++) {
      const { state } = await user.join('door');
      assert.strictEqual(state, 0);
      // Longer and shorter stays, so that leaving meets joining at every moment of it.
      await new Promise((resolve) => setTimeout(resolve, (turn * (place + 3)) % 7));
      await user.call('door', 'leaveRoom');
    }
    await user.join('door');
  }));
  for (const { name } of users.slice(1)) await reach(users[0], 'door', name);
  for (const user of users.slice(1)) await user.waitFor('onUserMessageReceived');
  for (const user of users) assert.deepStrictEqual(user.of('onRoomStateChanged', ({ state }) => state !== 0), []);
  for (const user of users) await user.call('door', 'leaveRoom');
  await until('the room ends', () => !exists('door'));
});
