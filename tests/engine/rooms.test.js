'use strict';
// Real calls between processes over the private service: presence, pictures, messages.

const assert = require('node:assert');
const { test } = require('node:test');

const { setUpParticipants } = require('./support/participant.js');

const { participant } = setUpParticipants();

test('processes see each other, exchange messages and leave', async () => {
  const ann = participant('ann');
  const bob = participant('Bób');
  const joined = await ann.join('räume 1');
  assert.deepStrictEqual([joined.room_id, joined.uid, joined.state], ['räume 1', 'ann', 0]);
  assert.ok(JSON.parse(joined.extra_info).elapsed >= 0);
  await bob.join('räume 1');
  assert.deepStrictEqual((await ann.waitFor('onUserJoined')).user_info, { uid: 'Bób', extra_info: 'extra of Bób' });
  assert.deepStrictEqual((await bob.waitFor('onUserJoined')).user_info, { uid: 'ann', extra_info: 'extra of ann' });

  const cy = participant('cy');
  await cy.join('räume 1');
  for (const user of [ann, bob]) await user.waitFor('onUserJoined', ({ user_info }) => user_info.uid === 'cy');

  const long = 'ä'.repeat(32_000);
  assert.strictEqual(await ann.call('räume 1', 'sendRoomMessage', 'to all'), 1);
  assert.strictEqual(await ann.call('räume 1', 'sendRoomMessage', long), 2);
  assert.strictEqual(await ann.call('räume 1', 'sendUserMessage', 'Bób', 'to one', 0), 0);
  assert.strictEqual(await ann.call('räume 1', 'sendUserMessage', 'nobody', 'to none', 0), 0);
  await bob.waitFor('onUserMessageReceived');
  // A third gets what is for all, and nothing else.
  assert.strictEqual(await ann.call('räume 1', 'sendRoomMessage', 'the last'), 5);
  await cy.waitFor('onRoomMessageReceived', ({ message }) => message === 'the last');
  await bob.waitFor('onRoomMessageReceived', ({ message }) => message === 'the last');
  assert.deepStrictEqual(cy.of('onUserMessageReceived'), []);
  const toAll = ['to all', long, 'the last'].map((message) => ({ message, uid: 'ann' }));
  for (const user of [bob, cy]) assert.deepStrictEqual(user.of('onRoomMessageReceived'), toAll);
  assert.deepStrictEqual(bob.of('onUserMessageReceived'), [{ uid: 'ann', message: 'to one' }]);
  await ann.waitFor('onUserMessageSendResult', ({ msgid }) => msgid === 3);
  const results = (type) => ann.of(type).map(({ msgid, error }) => [msgid, error]).sort();
  await ann.waitFor('onRoomMessageSendResult', ({ msgid }) => msgid === 5);
  assert.deepStrictEqual(results('onRoomMessageSendResult'), [[1, 0], [2, 0], [5, 0]]);
  assert.deepStrictEqual(results('onUserMessageSendResult'), [[3, 0], [4, 3]]);
  assert.deepStrictEqual(ann.of('onRoomMessageReceived'), []);

  // The largest there are, of what has to be escaped on its way.
  for (const large of ['"'.repeat(65_536), '\u0001\\'.repeat(32_768)]) {
    await ann.call('räume 1', 'sendRoomMessage', large);
    await ann.call('räume 1', 'sendUserMessage', 'Bób', large, 0);
    for (const type of ['onRoomMessageReceived', 'onUserMessageReceived']) await bob.waitFor(type, ({ message }) => message === large);
  }
  const bytes = new Uint8Array(65_536).fill('ä'.charCodeAt());
  const binary = ({ uid, message }) => uid === 'ann' && message.length === bytes.length;
  assert.strictEqual(await ann.call('räume 1', 'sendRoomBinaryMessage', bytes.length, bytes), 10);
  assert.strictEqual(await ann.call('räume 1', 'sendUserBinaryMessage', 'Bób', bytes.length, bytes, 0), 11);
  for (const type of ['onRoomBinaryMessageReceived', 'onUserBinaryMessageReceived']) await bob.waitFor(type, binary);
  await ann.waitFor('onUserMessageSendResult', ({ msgid, error }) => msgid === 11 && error === 0);
  for (const [method, ...message] of [['sendRoomMessage', '"'.repeat(65_537)], ['sendRoomBinaryMessage', 65_537, new Uint8Array(65_537)]]) {
    assert.strictEqual(await ann.call('räume 1', method, ...message), -2, method);
  }

  assert.strictEqual(await bob.call('räume 1', 'leaveRoom'), 0);
  assert.ok((await bob.waitFor('onLeaveRoom')).duration >= 0);
  assert.deepStrictEqual(await ann.waitFor('onUserLeave'), { uid: 'Bób', reason: 0 });
  assert.strictEqual(await bob.call('räume 1', 'sendRoomMessage', 'too late'), -3);
});

test("a camera's pictures arrive with their size and content, also for who comes later", async () => {
  const [sender, first, late] = ['sender', 'first', 'late'].map((name) => participant(name));
  await first.join('pictures');
  await sender.capture('test:white?width=320&height=240&fps=30');
  await sender.join('pictures');
  assert.strictEqual(await sender.call('pictures', 'publishStream', 2), 0);
  assert.deepStrictEqual(await first.waitFor('onUserPublishStream'), { uid: 'sender', type: 2 });
  for (const receiver of [first, late]) {
    if (receiver === late) await late.join('pictures');
    const got = await receiver.frames('pictures', 'sender');
    assert.deepStrictEqual([got.frames, got.width, got.height], [10, 320, 240]);
    // White is 235 in limited range; the encoder may be off by a little.
    for (const luma of got.luma) assert.ok(Math.abs(luma - 235) <= 4, `${got.luma}`);
    const decoded = await receiver.waitFor('onFirstRemoteVideoFrameDecoded');
    assert.deepStrictEqual(decoded.info, { width: 320, height: 240, rotation: 0 });
    const { state_code, info } = await receiver.waitFor('onStreamSubscribed');
    assert.deepStrictEqual([state_code, info.sub_video], [0, true]);
  }

  assert.strictEqual(await sender.call('pictures', 'unpublishStream', 2), 0);
  assert.deepStrictEqual(await late.waitFor('onUserUnpublishStream'), { uid: 'sender', type: 2, reason: 0 });
});

test('a killed participant is missed; its name can be used again', async () => {
  const watcher = participant('watcher');
  const victim = participant('victim');
  await watcher.join('loss');
  await victim.join('loss');
  await watcher.waitFor('onUserJoined');
  await victim.kill();
  assert.deepStrictEqual(await watcher.waitFor('onUserLeave'), { uid: 'victim', reason: 1 });

  const again = participant('victim');
  assert.strictEqual((await again.join('loss')).state, 0);
  const double = participant('double');
  const refused = await double.join('loss', { uid: 'victim' });
  assert.strictEqual(refused.state, -4);
  assert.match(JSON.parse(refused.extra_info).reason, /already exists/);
  assert.strictEqual((await double.join('loss', { uid: 'double' })).state, 0);
  await watcher.waitFor('onUserJoined', ({ user_info }) => user_info.uid === 'double');
});
