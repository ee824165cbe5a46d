'use strict';
// Streams of one room in others: who is in those sees and hears a user who is not there.

const assert = require('node:assert');
const { test } = require('node:test');

const { setUpParticipants } = require('./support/participant.js');

const { participant } = setUpParticipants();

const to = (...rooms) => ({ forward_stream_dests: rooms.map((room_id) => ({ room_id, token: '' })) });
const holds = (room_id, state, error) => ({ infos }) =>
  infos.some((info) => info.room_id === room_id && info.state === state && info.error === error);

test('a published camera arrives in other rooms until forwarding ends', async () => {
  const [sender, east, west] = ['sender', 'east', 'west'].map((name) => participant(name));
  await east.join('east');
  await west.join('west');
  const rival = participant('rival');
  await rival.join('taken', { uid: 'sender' });
  await sender.capture('test:white?width=160&height=120');
  assert.strictEqual(await sender.call('actions', 'room', 'home'), true);
  assert.strictEqual(await sender.call('home', 'startForwardStreamToRooms', to('east')), -3);
  await sender.join('home');
  for (const wrong of [to(), to('home'), to(''), to('east', 'east')]) {
    assert.strictEqual(await sender.call('home', 'startForwardStreamToRooms', wrong), -2, JSON.stringify(wrong));
  }
  for (const early of ['stopForwardStreamToRooms', 'pauseForwardStreamToAllRooms', 'resumeForwardStreamToAllRooms']) {
    assert.strictEqual(await sender.call('home', early), -3, early);
  }
  await sender.call('home', 'publishStream', 2);
  assert.strictEqual(await sender.call('home', 'startForwardStreamToRooms', to('east', 'taken')), 0);
  assert.strictEqual(await sender.call('home', 'startForwardStreamToRooms', to('east')), -3);
  await sender.waitFor('onForwardStreamStateChanged', holds('east', 1, 0));
  await sender.waitFor('onForwardStreamStateChanged', holds('taken', 2, 3));
  await sender.waitFor('onForwardStreamEvent', ({ infos: [info] }) => info.room_id === 'east' && info.event === 1);
  const { user_info } = await east.waitFor('onUserJoined');
  assert.deepStrictEqual(user_info, { uid: 'sender', extra_info: 'extra of sender' });
  const frames = await east.frames('east', 'sender');
  assert.deepStrictEqual([frames.frames, frames.width], [10, 160]);

  assert.strictEqual(await sender.call('home', 'pauseForwardStreamToAllRooms'), 0);
  assert.deepStrictEqual(await east.waitFor('onUserUnpublishStream'), { uid: 'sender', type: 2, reason: 0 });
  const from = east.events.length;
  assert.strictEqual(await sender.call('home', 'resumeForwardStreamToAllRooms'), 0);
  await east.waitFor('onUserPublishStream', () => true, from);
  assert.strictEqual((await east.frames('east', 'sender')).frames, 10);

  assert.strictEqual(await sender.call('home', 'updateForwardStreamToRooms', to('west')), 0);
  assert.deepStrictEqual(await east.waitFor('onUserLeave'), { uid: 'sender', reason: 0 });
  assert.strictEqual((await west.frames('west', 'sender')).frames, 10);
  assert.strictEqual(await sender.call('home', 'leaveRoom'), 0);
  assert.deepStrictEqual(await west.waitFor('onUserLeave'), { uid: 'sender', reason: 0 });
  await sender.waitFor('onForwardStreamStateChanged', holds('west', 0, 0));
  assert.strictEqual(await sender.call('home', 'stopForwardStreamToRooms'), -3);
});
