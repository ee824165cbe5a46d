'use strict';
// What a room tells of itself and its users: sound and pictures turned on and off, statistics, visibility, extra
// information that stays with the room.

const assert = require('node:assert');
const { test } = require('node:test');

const { setUpParticipants } = require('./support/participant.js');

const { participant } = setUpParticipants();

test('sound and pictures are counted while they come, and can be paused', async () => {
  const [sender, receiver] = ['sender', 'receiver'].map((name) => participant(name));
  await receiver.join('media');
  await sender.capture('test:ball?width=320&height=240');
  await sender.call('video', 'setAudioCaptureDevice', 'test:sine');
  await sender.call('video', 'startAudioCapture');
  const wanted = { width: 160, height: 120, frame_rate: 15, max_bitrate: 200, min_bitrate: 0, encoder_preference: 0 };
  assert.strictEqual(await sender.call('video', 'setVideoEncoderConfig', [wanted]), 0);
  await sender.join('media');
  await sender.call('media', 'publishStream', 3);
  const published = await receiver.waitFor('onUserPublishStream');
  assert.deepStrictEqual(published, { uid: 'sender', type: 3 });
  await receiver.waitFor('onFirstRemoteAudioFrame');
  const frames = await receiver.frames('media', 'sender');
  assert.deepStrictEqual([frames.width, frames.height], [160, 120]);

  const hears = ({ audio_stats }) => audio_stats.received_kbitrate > 10 && audio_stats.received_sample_rate === 48000;
  const sees = ({ video_stats }) => video_stats.received_kbitrate > 10 && video_stats.renderer_output_frame_rate > 5;
  const stats = await receiver.waitFor('onRemoteStreamStats', (each) => hears(each) && sees(each));
  assert.deepStrictEqual([stats.uid, stats.video_stats.width, stats.video_stats.height], ['sender', 160, 120]);
  assert.ok(stats.video_stats.video_loss_rate <= 0.1, 'loopback loses next to nothing');
  const sent = await sender.waitFor('onLocalStreamStats', ({ audio_stats, video_stats }) =>
    audio_stats.send_kbitrate > 10 && video_stats.sent_kbitrate > 10 && video_stats.sent_frame_rate > 5);
  assert.deepStrictEqual([sent.video_stats.encoded_frame_width, sent.video_stats.encoded_frame_height], [160, 120]);
  const room = await receiver.waitFor('onRoomStats', ({ rx_bytes }) => rx_bytes > 0);
  assert.ok(room.user_count === 2 && room.cpu_total_usage > 0 && room.cpu_total_usage <= 1, JSON.stringify(room));
  const quality = await receiver.waitFor('onNetworkQuality', ({ remoteQualities }) => remoteQualities.length === 1);
  assert.ok(quality.localQuality.uid === 'receiver' && quality.remoteQualities[0].rx_quality >= 1, JSON.stringify(quality));

  assert.strictEqual(await receiver.call('media', 'pauseAllSubscribedStream', 2), 0);
  const from = receiver.events.length;
  await receiver.waitFor('onRemoteStreamStats', (each) => hears(each) && each.video_stats.decoder_output_frame_rate === 0, from);
  assert.strictEqual(await receiver.call('media', 'resumeAllSubscribedStream', 2), 0);
  assert.strictEqual((await receiver.frames('media', 'sender')).frames, 10);
  // A busy machine freezes pictures, too, and they recover.
  const steady = ({ state, reason }) => state !== 3 && reason !== 2;
  const reasons = receiver.of('onRemoteVideoStateChanged', steady).map(({ state, reason }) => [state, reason]);
  assert.deepStrictEqual(reasons, [[2, 0], [0, 3], [2, 4]], 'stopped and resumed here');

  // A sender that is held up freezes, and recovers; one whose camera is off does neither.
  const held = receiver.events.length;
  sender.signal('SIGSTOP');
  const frozen = ({ state }) => state === 3;
  await receiver.waitFor('onRemoteVideoStateChanged', frozen, held);
  sender.signal('SIGCONT');
  await receiver.waitFor('onRemoteVideoStateChanged', ({ state, reason }) => state === 2 && reason === 2, held);
  const freezes = () => receiver.of('onRemoteVideoStateChanged', frozen).length;
  const before = freezes();
  await sender.call('video', 'stopVideoCapture');
  assert.deepStrictEqual(await receiver.waitFor('onUserStopVideoCapture'), { user_id: 'sender', room_id: 'media' });
  await sender.call('video', 'stopAudioCapture');
  await receiver.waitFor('onUserStopAudioCapture');
  const dark = receiver.events.length;
  await receiver.waitFor('onRemoteStreamStats', ({ video_stats }) => video_stats.decoder_output_frame_rate === 0, dark);
  assert.strictEqual(freezes(), before);

  const load = await receiver.waitFor('onSysStats');
  const { full_memory, free_memory, total_memory_usage, memory_usage, memory_ratio } = load;
  assert.ok(full_memory > 100 && full_memory === free_memory + total_memory_usage, JSON.stringify(load));
  assert.ok(memory_usage > 10 && Math.abs(memory_ratio - memory_usage / full_memory) < 0.01, JSON.stringify(load));
  assert.ok(load.cpu_cores >= 1 && load.cpu_total_usage > 0 && load.cpu_total_usage <= 1, JSON.stringify(load));
  assert.strictEqual(receiver.of('onNetworkTypeChanged').length, 1);
});

test('extra information stays with the room when its setter leaves', async () => {
  const [setter, witness, late] = ['setter', 'witness', 'late'].map((name) => participant(name));
  await setter.join('info');
  await witness.join('info');
  assert.strictEqual(await setter.call('info', 'setRoomExtraInfo', 'x'.repeat(11), 'v'), -2);
  assert.strictEqual(await setter.call('info', 'setRoomExtraInfo', 'topic', 'tests'), 0);
  assert.deepStrictEqual(await setter.waitFor('onSetRoomExtraInfoResult'), { task_id: 0, error_code: 0 });
  const told = await witness.waitFor('onRoomExtraInfoUpdate');
  assert.deepStrictEqual([told.key, told.value, told.last_update_user_id], ['topic', 'tests', 'setter']);
  await witness.waitFor('onUserJoined');
  await setter.kill();
  await witness.waitFor('onUserLeave');
  await late.join('info');
  assert.deepStrictEqual(await late.waitFor('onRoomExtraInfoUpdate'), told);
  for (let key = 1; key <= 10; key++) await late.call('info', 'setRoomExtraInfo', `key ${key}`, 'v');
  const tenth = await late.waitFor('onSetRoomExtraInfoResult', ({ task_id }) => task_id === 9);
  assert.strictEqual(tenth.error_code, 4, 'ten pairs are what a room keeps');
});

test('an invisible user hears and sees but is not announced', async () => {
  const [seen, hidden] = ['seen', 'hidden'].map((name) => participant(name));
  await seen.join('veil');
  await hidden.join('veil');
  await seen.waitFor('onUserJoined');
  assert.strictEqual(await hidden.call('veil', 'setUserVisibility', false), 0);
  assert.deepStrictEqual(await hidden.waitFor('onUserVisibilityChanged'), { current_user_visibility: false, error_code: 0 });
  assert.deepStrictEqual(await seen.waitFor('onUserLeave'), { uid: 'hidden', reason: 2 });
  await hidden.call('veil', 'publishStream', 2);
  assert.strictEqual((await hidden.waitFor('onStreamStateChanged')).state, -3);
  // Who is announced late may not be reached yet: what is for one user waits for that.
  await seen.call('veil', 'sendUserMessage', 'hidden', 'are you there', 0);
  assert.strictEqual((await seen.waitFor('onUserMessageSendResult')).error, 0);
  await seen.call('veil', 'sendRoomMessage', 'to whom it may concern');
  assert.strictEqual((await hidden.waitFor('onRoomMessageReceived')).message, 'to whom it may concern');
  const from = seen.events.length;
  await hidden.call('veil', 'setUserVisibility', true);
  assert.strictEqual((await seen.waitFor('onUserJoined', () => true, from)).user_info.uid, 'hidden');
});
