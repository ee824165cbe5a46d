'use strict';
// A screen in a room, beside its user's camera: published, subscribed, shown and counted as stream 1.

const assert = require('node:assert');
const { test, after } = require('node:test');

const { startDisplay } = require('./support/display.js');
const { setUpParticipants } = require('./support/participant.js');

const display = startDisplay('325x203');
const { participant } = setUpParticipants();
after(() => display.stop());

/** Captures the monitor, or a region of it. */
async function share(user, region_rect = { x: 0, y: 0, width: 0, height: 0 }) {
  const [monitor] = await user.call('video', 'getScreenCaptureSourceList');
  const params = {
    region_rect,
    capture_mouse_cursor: 1,
    filter_config: [],
    highlight_config: { enable_highlight: false, border_color: 0, border_width: 0 },
  };
  assert.strictEqual(await user.call('video', 'startScreenVideoCapture', monitor, params), 0);
}

test("a user's camera and screen arrive side by side, each on its own", async () => {
  const [sender, receiver, picky] = ['sender', 'receiver', 'picky'].map((name) => participant(name));
  await receiver.join('desk');
  await picky.join('desk', { subscribe: false });
  await sender.capture('test:white?width=160&height=120');
  await share(sender);
  assert.strictEqual(await sender.call('actions', 'room', 'desk'), true);
  assert.strictEqual(await sender.call('desk', 'publishScreen', 2), -3);
  await sender.join('desk');
  assert.strictEqual(await sender.call('desk', 'publishScreen', 0), -2);
  await sender.call('desk', 'publishScreen', 2);
  await sender.call('desk', 'publishStream', 2);
  assert.deepStrictEqual(await receiver.waitFor('onUserPublishScreen'), { uid: 'sender', type: 2 });
  assert.deepStrictEqual(await receiver.waitFor('onUserPublishStream'), { uid: 'sender', type: 2 });

  // Sizes that are odd are brought to even ones, as video is coded.
  const screen = await receiver.frames('desk', 'sender', 5, 1);
  assert.deepStrictEqual([screen.frames, screen.width, screen.height], [5, 324, 202]);
  for (const luma of screen.luma) assert.ok(Math.abs(luma - 16) <= 4, `${screen.luma}`);
  const camera = await receiver.frames('desk', 'sender', 5);
  assert.deepStrictEqual([camera.width, camera.height], [160, 120]);
  for (const luma of camera.luma) assert.ok(Math.abs(luma - 235) <= 4, `${camera.luma}`);
  const ofScreen = ({ key }) => key.stream_index === 1;
  const shown = await receiver.waitFor('onFirstRemoteVideoFrameRendered', ofScreen);
  assert.deepStrictEqual(shown.info, { width: 324, height: 202, rotation: 0 });
  assert.strictEqual(receiver.of('onFirstRemoteVideoFrameDecoded', ofScreen).length, 1);

  // What is sent and shown for the first time is told of each medium, with the user's extra information.
  const states = (user, type) => user.of(type).map(({ user: { user_id, meta_data }, state }) => [user_id, meta_data, state]);
  await sender.waitFor('onScreenVideoFrameSendStateChanged', ({ state }) => state === 1);
  await sender.waitFor('onLocalVideoStateChanged', ({ streamIndex, state }) => streamIndex === 1 && state === 2);
  for (const kind of ['Screen', '']) {
    const sent = ['sender', 'extra of sender'];
    assert.deepStrictEqual(states(sender, `on${kind}VideoFrameSendStateChanged`), [[...sent, 0], [...sent, 1]]);
    assert.deepStrictEqual(states(receiver, `on${kind}VideoFramePlayStateChanged`), [[...sent, 0], [...sent, 1]]);
  }
  assert.deepStrictEqual(sender.of('onAudioFrameSendStateChanged'), []);
  assert.deepStrictEqual(receiver.of('onUserStartVideoCapture'), [{ user_id: 'sender', room_id: 'desk' }]);

  const counted = ({ is_screen, video_stats }) => is_screen && video_stats.is_screen && video_stats.codec_type !== 0;
  const received = await receiver.waitFor('onRemoteStreamStats', (each) => counted(each) && each.video_stats.width === 324);
  assert.strictEqual(received.uid, 'sender');
  await sender.waitFor('onLocalStreamStats', (each) => counted(each) && each.video_stats.encoded_frame_width === 324);
  await receiver.waitFor('onRemoteStreamStats', ({ is_screen }) => !is_screen);
  const { remoteQualities } = await receiver.waitFor('onNetworkQuality', (each) => each.remoteQualities.length > 0);
  assert.strictEqual(remoteQualities.length, 1, 'one network for both streams');

  for (const [stream_index, size] of [[0, [160, 120]], [1, [324, 202]]]) {
    const task = await receiver.call('video', 'takeRemoteSnapshot', { room_id: 'desk', user_id: 'sender', stream_index });
    const shot = await receiver.waitFor('onTakeRemoteSnapshotResult', ({ task_id }) => task_id === task);
    assert.deepStrictEqual([shot.error_code, shot.stream_key.stream_index, shot.stream_key.user_id], [0, stream_index, 'sender']);
    const png = Buffer.from(shot.image, 'base64');
    assert.deepStrictEqual([png.readUInt32BE(16), png.readUInt32BE(20)], size);
  }

  // Whoever wants nothing of its own accord asks for the screen alone.
  await picky.waitFor('onUserPublishScreen');
  assert.strictEqual(await picky.call('desk', 'subscribeScreen', 'sender', 3), 0);
  const subscribed = await picky.waitFor('onStreamSubscribed');
  assert.deepStrictEqual([subscribed.state_code, subscribed.info.is_screen, subscribed.info.sub_video], [0, true, true]);
  assert.strictEqual((await picky.frames('desk', 'sender', 3, 1)).frames, 3);
  assert.deepStrictEqual(picky.of('onFirstRemoteVideoFrameDecoded', ({ key }) => key.stream_index === 0), []);
  assert.strictEqual(await picky.call('desk', 'unsubscribeScreen', 'sender', 3), 0);
  const stopped = await picky.waitFor('onRemoteVideoStateChanged', ({ key, state }) => ofScreen({ key }) && state === 0);
  assert.strictEqual(stopped.reason, 3, 'by whom it is received');
  await picky.waitFor('onStreamSubscribed', ({ state_code, info }) => state_code === 0 && info.is_screen && !info.sub_video);
  for (const user of [receiver, picky]) {
    const names = user.of('onUserJoined').map(({ user_info }) => user_info.uid);
    assert.ok(names.every((name) => ['sender', 'receiver', 'picky'].includes(name)), 'a screen is no user');
  }

  const encoded = { width: 160, height: 100, frame_rate: 10, max_bitrate: -1, min_bitrate: 0, encoder_preference: 0 };
  assert.strictEqual(await sender.call('video', 'setScreenVideoEncoderConfig', encoded), 0);
  await receiver.waitFor('onRemoteVideoSizeChanged', ({ key, info }) => ofScreen({ key }) && info.width === 160);
  assert.strictEqual(await sender.call('desk', 'unpublishScreen', 2), 0);
  assert.deepStrictEqual(await receiver.waitFor('onUserUnpublishScreen'), { uid: 'sender', type: 2, reason: 0 });
  const ended = await receiver.waitFor('onRemoteVideoStateChanged', ({ key, state }) => ofScreen({ key }) && state === 0);
  assert.strictEqual(ended.reason, 5, 'by whom it is sent');
  assert.strictEqual((await receiver.frames('desk', 'sender')).frames, 10, 'the camera goes on');
  assert.deepStrictEqual(receiver.of('onUserUnpublishStream'), []);
});

test('the screen of a late joiner\'s neighbour is there, and goes when its user is killed', async () => {
  const [sender, late] = ['host', 'late'].map((name) => participant(name));
  await share(sender, { x: 1, y: 1, width: 64, height: 48 });
  await sender.call('actions', 'room', 'lobby');
  await sender.waitFor('onConnectionStateChanged', ({ state }) => state === 2);
  await sender.join('lobby', { meanwhile: ['publishScreen', 3] });
  await sender.waitFor('onStreamStateChanged', ({ extra_info }) => JSON.parse(extra_info).is_screen);
  await late.join('lobby');
  const got = await late.frames('lobby', 'host', 3, 1);
  assert.deepStrictEqual([got.width, got.height], [64, 48]);
  await sender.kill();
  assert.deepStrictEqual(await late.waitFor('onUserUnpublishScreen'), { uid: 'host', type: 3, reason: 2 });
  assert.deepStrictEqual(await late.waitFor('onUserLeave'), { uid: 'host', reason: 1 });
});
