'use strict';
// Rooms when things go wrong: calls in the wrong order, wrong tokens, a service that is lost or was never there.

const assert = require('node:assert');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');

const { administrate, readService, serviceFile } = require('./support/administrator.js');
const { setUpParticipants } = require('./support/participant.js');

const { participant, participants, workplace } = setUpParticipants();

/** The private service's process: it was started with a folder of the workplace. */
function servicePid() {
  const found = fs.readdirSync('/proc').filter((pid) => {
    if (!/^\d+$/.test(pid)) return false;
    try {
      return fs.readFileSync(`/proc/${pid}/cmdline`, 'utf8').startsWith(`janus\0-F\0${workplace}/`);
    } catch {
      return false; // ended meanwhile
    }
  });
  assert.ok(found.length <= 1, `${found.length} services`);
  return found.length === 1 ? Number(found[0]) : undefined;
}

async function until(what, condition) {
  for (const end = Date.now() + 10_000; Date.now() < end; ) {
    if (condition()) return;
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
  assert.fail(`in vain: ${what}`);
}

test('calls in the wrong order and wrong arguments are refused', async () => {
  const user = participant('user');
  assert.strictEqual(await user.call('actions', 'room', ''), false);
  assert.strictEqual(await user.call('actions', 'room', 'x'.repeat(129)), false);
  assert.strictEqual(await user.call('actions', 'room', 'order'), true);
  const refusedOutside = [
    ['publishStream', 3], ['unpublishStream', 3], ['subscribeStream', 'other', 3], ['subscribeAllStreams', 1],
    ['pauseAllSubscribedStream', 1], ['sendRoomMessage', 'too early'], ['leaveRoom'],
  ];
  for (const [method, ...args] of refusedOutside) assert.strictEqual(await user.call('order', method, ...args), -3, method);
  for (const uid of ['', 'ü'.repeat(65)]) assert.deepStrictEqual(await user.join('order', { uid }), { result: -2 });
  assert.strictEqual((await user.join('order', { uid: 'ü'.repeat(64) })).state, 0);
  assert.deepStrictEqual(await user.join('order'), { result: -3 });
  assert.strictEqual(await user.call('order', 'publishStream', 4), -2);
  assert.strictEqual(await user.call('order', 'subscribeStream', '', 1), -2);
  assert.strictEqual(await user.call('order', 'sendRoomMessage', 'x'.repeat(64 * 1024 + 1)), -2);
  for (const [method, ofScreen] of [['subscribeStream', false], ['unsubscribeScreen', true]]) {
    assert.strictEqual(await user.call('order', method, 'nobody', 1), 0);
    assert.strictEqual((await user.waitFor('onStreamSubscribed', ({ info }) => info.is_screen === ofScreen)).state_code, 2);
  }
  // Joining again after leaving, and a room of the same id after destroying the first.
  assert.strictEqual(await user.call('order', 'leaveRoom'), 0);
  assert.strictEqual((await user.join('order')).state, 0);
  assert.strictEqual(await user.call('actions', 'forgetRoom', 'order'), 0);
  assert.strictEqual((await user.join('order')).state, 0);
});

test('the service comes back with its rooms, pictures and messages when it was killed', async () => {
  const sender = participant('sender');
  const receiver = participant('receiver');
  await receiver.join('phoenix');
  await sender.capture('test:white?width=320&height=240');
  await sender.join('phoenix');
  await sender.call('phoenix', 'publishStream', 2);
  assert.strictEqual((await receiver.frames('phoenix', 'sender')).frames, 10);

  const { rx_bytes } = await receiver.waitFor('onRoomStats', (stats) => stats.rx_bytes > 0);
  const from = receiver.events.length;
  process.kill(servicePid(), 'SIGKILL');
  await receiver.waitFor('onRoomStateChanged', ({ state }) => state === -7, from);
  const back = await receiver.waitFor('onRoomStateChanged', ({ state }) => state === 0, from);
  assert.strictEqual(JSON.parse(back.extra_info).join_type, 1);
  assert.strictEqual((await receiver.frames('phoenix', 'sender')).frames, 10);
  await sender.call('phoenix', 'sendUserMessage', 'receiver', 'still there', 0);
  assert.strictEqual((await receiver.waitFor('onUserMessageReceived')).message, 'still there');
  const since = receiver.events.slice(from).map((event) => event.Type);
  assert.ok(!since.includes('onUserLeave') && !since.includes('onUserJoined'), 'who comes back has not left');
  await receiver.call('phoenix', 'leaveRoom');
  assert.ok((await receiver.waitFor('onLeaveRoom')).rx_bytes >= rx_bytes, 'it was one stay');
});

test('the service outlives who started it, and ends with the last', async () => {
  await Promise.all(participants.map((each) => each.end()));
  await until('the service ends with its last user', () => servicePid() === undefined);
  const starter = participant('starter');
  await starter.join('relay');
  const pid = servicePid();
  const heir = participant('heir');
  await heir.join('relay');
  await heir.waitFor('onUserJoined');
  await starter.kill();
  assert.strictEqual((await heir.waitFor('onUserLeave')).uid, 'starter');
  await heir.call('relay', 'sendRoomMessage', 'alone');
  assert.strictEqual((await heir.waitFor('onRoomMessageSendResult')).error, 0);
  assert.strictEqual(servicePid(), pid);
  assert.strictEqual(fs.statSync(serviceFile(workplace)).mode & 0o777, 0o600);
  const { port } = readService(workplace);
  const listening = execFileSync('cat', ['/proc/net/tcp', '/proc/net/tcp6']).toString().split('\n')
    .filter((line) => line.includes(`:${port.toString(16).toUpperCase().padStart(4, '0')} `) && / 0A /.test(line));
  assert.deepStrictEqual(listening.map((line) => line.trim().split(/\s+/)[1].split(':')[0]), ['0100007F']);
  await heir.kill();
  await until('the service ends when its last user was killed', () => servicePid() === undefined);
});

test('a room with a word to it is joined with that word, and can be ended from outside', async () => {
  const guest = participant('guest');
  await guest.join('hall');
  const room = administrate(workplace, { request: 'create', room: 'locked', pin: 'open sesame', notify_joining: true, videocodec: 'h264,vp8' });
  assert.strictEqual(room.videoroom, 'created');
  for (const secret of ['', 'guessed']) assert.match(administrate(workplace, {}, { secret }).reason, /Unauthorized/);
  const wrong = await guest.join('locked', { token: 'open barley' });
  assert.strictEqual(wrong.state, -2);
  assert.strictEqual(await guest.call('locked', 'sendRoomMessage', 'x'), -3);
  assert.strictEqual((await guest.join('locked', { token: 'open sesame' })).state, 0);
  const from = guest.events.length;

  // An administrator lets no sound of a user's through, then puts the user out.
  const rowdy = participant('rowdy');
  await rowdy.join('locked', { token: 'open sesame' });
  await rowdy.call('locked', 'publishStream', 3);
  await guest.waitFor('onUserPublishStream');
  for (const mute of [true, false]) {
    administrate(workplace, { request: 'moderate', room: 'locked', id: 'rowdy', mid: 'audio0', mute });
    for (const user of [guest, rowdy]) await user.waitFor('onAudioStreamBanned', ({ uid, banned }) => uid === 'rowdy' && banned === mute);
  }
  assert.deepStrictEqual(guest.of('onVideoStreamBanned'), []);
  administrate(workplace, { request: 'kick', room: 'locked', id: 'rowdy' });
  await rowdy.waitFor('onRoomStateChanged', ({ state }) => state === -5);
  assert.deepStrictEqual(await guest.waitFor('onUserLeave'), { uid: 'rowdy', reason: 3 });
  assert.deepStrictEqual(guest.of('onUserUnpublishStream'), [{ uid: 'rowdy', type: 3, reason: 4 }]);
  await rowdy.end();

  // A room for a codec that is not sent.
  administrate(workplace, { request: 'create', room: 'old', videocodec: 'vp8' });
  assert.strictEqual((await guest.join('old')).state, 0);
  await guest.call('old', 'publishStream', 3);
  const failed = await guest.waitFor('onStreamStateChanged', ({ room_id, state }) => room_id === 'old' && state === -1);
  assert.match(JSON.parse(failed.extra_info).reason, /takes no video of the codec/);
  // What is asked for anew is tried, and answered, anew.
  const again = guest.events.length;
  await guest.call('old', 'unpublishStream', 1);
  await guest.waitFor('onStreamStateChanged', ({ room_id, state }) => room_id === 'old' && state === -1, again);
  await guest.call('old', 'leaveRoom');

  assert.strictEqual(administrate(workplace, { request: 'destroy', room: 'locked' }).videoroom, 'destroyed');
  const { room_id } = await guest.waitFor('onRoomStateChanged', ({ state }) => state === -6, from);
  assert.strictEqual(room_id, 'locked');
  assert.strictEqual(await guest.call('hall', 'sendRoomMessage', 'unharmed'), 1);
  assert.strictEqual((await guest.waitFor('onRoomMessageSendResult')).error, 0);
  await guest.end();
  await until('the service ends', () => servicePid() === undefined);
});

test('what is missing is said', async () => {
  const empty = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-empty-'));
  const bare = participant('bare', {}, { PATH: empty });
  const missing = await bare.join('missing');
  assert.strictEqual(missing.state, -1);
  assert.match(JSON.parse(missing.extra_info).reason, /janus.*not installed: install the package "janus"/);
  fs.rmSync(empty, { recursive: true });

  const astray = participant('astray', { service: 'ws://127.0.0.1:1' });
  const unreachable = await astray.join('nowhere');
  assert.strictEqual(unreachable.state, -1);
  assert.match(JSON.parse(unreachable.extra_info).reason, /refused/);
  assert.strictEqual(await astray.call('nowhere', 'sendRoomMessage', 'x'), -3);
});
