'use strict';
// One video in several layers: each receiver is sent the one that fits what it wants, and changes while it runs.

const assert = require('node:assert');
const fs = require('node:fs');
const { test, after } = require('node:test');

const { Participant, makeWorkplace } = require('./support/participant.js');

const workplace = makeWorkplace();
const participants = [];
const participant = (name) => {
  participants.push(new Participant(name, workplace));
  return participants.at(-1);
};
after(async () => {
  await Promise.all(participants.map((each) => each.end()));
  fs.rmSync(workplace, { recursive: true, force: true });
});

const layer = (width, height, frame_rate, max_bitrate) =>
  ({ width, height, frame_rate, max_bitrate, min_bitrate: 0, encoder_preference: 0 });
const layers = [layer(640, 360, 30, 800), layer(320, 180, 30, 300), layer(160, 90, 15, 100)];
const wants = (resolution_width, resolution_height, framerate = 0) => ({ resolution_width, resolution_height, framerate });

/** Wants another size of the sender's video from now on, and waits for it. */
async function choose(receiver, config, width, height) {
  const from = receiver.events.length;
  assert.strictEqual(await receiver.call('layers', 'setRemoteVideoConfig', 'sender', config), 0);
  await receiver.waitFor('onRemoteVideoSizeChanged', ({ info }) => info.width === width && info.height === height, from);
  const { frames } = await receiver.frames('layers', 'sender');
  assert.strictEqual(frames, 10);
}

test('receivers choose among the layers of a video, and change while it comes', async () => {
  const [sender, large, small] = ['sender', 'large', 'small'].map((name) => participant(name));
  await sender.capture('test:ball?width=640&height=360');
  assert.strictEqual(await sender.call('video', 'enableSimulcastMode', true), 0);
  assert.strictEqual(await sender.call('video', 'setVideoEncoderConfig', layers), 0);
  await sender.join('layers');
  await sender.call('layers', 'publishStream', 2);

  // Before the user is there, for a user, and before the room is joined; sizes between two layers take the larger.
  assert.strictEqual(await large.call('actions', 'room', 'layers'), true);
  assert.strictEqual(await large.call('layers', 'setRemoteVideoConfig', 'sender', wants(-1, 0)), -2);
  assert.strictEqual(await large.call('layers', 'setRemoteVideoConfig', 'sender', wants(500, 180)), 0);
  await small.call('actions', 'room', 'layers');
  assert.strictEqual(await small.call('layers', 'setRemoteVideoConfig', 'sender', wants(100, 90)), 0);
  await Promise.all([large, small].map((each) => each.join('layers')));
  assert.strictEqual((await small.frames('layers', 'sender')).width, 160);
  assert.strictEqual((await large.frames('layers', 'sender')).width, 640);
  const subscribed = await large.waitFor('onStreamSubscribed');
  const { sub_width, sub_height, sub_video_index } = subscribed.info;
  assert.deepStrictEqual([sub_width, sub_height, sub_video_index], [500, 180, 0]);
  await choose(large, wants(0, 100), 320, 180);
  await choose(small, wants(0, 0), 640, 360);
  await choose(large, wants(1920, 1080), 640, 360);
  await choose(small, wants(320, 180, 10), 320, 180);
  const shows = (width, video_index, slowest, fastest) => ({ video_stats: stats }) =>
    stats.width === width && stats.video_index === video_index && stats.decoder_output_frame_rate > 20 &&
    stats.renderer_output_frame_rate > slowest && stats.renderer_output_frame_rate < fastest;
  await small.waitFor('onRemoteStreamStats', shows(320, 1, 5, 15));
  await large.waitFor('onRemoteStreamStats', shows(640, 0, 20, 40));
  for (const receiver of [large, small]) {
    assert.deepStrictEqual(receiver.of('onRemoteVideoStateChanged', ({ state }) => state !== 2), [], 'nothing froze');
    assert.deepStrictEqual(receiver.of('onSimulcastSubscribeFallback'), [], 'what is asked for is no fallback');
  }
  const sent = await sender.waitFor('onLocalStreamStats', ({ video_stats }) => video_stats.sent_kbitrate > 0);
  assert.strictEqual(sent.video_stats.encoded_frame_width, 640);

  // One layer again: everyone gets it, whatever is wanted.
  const from = small.events.length;
  assert.strictEqual(await sender.call('video', 'enableSimulcastMode', false), 0);
  await small.waitFor('onFirstRemoteVideoFrameDecoded', ({ info }) => info.width === 640, from);
  assert.strictEqual((await large.frames('layers', 'sender')).width, 640);
  const again = small.events.length;
  assert.strictEqual(await sender.call('video', 'enableSimulcastMode', true), 0);
  await small.waitFor('onFirstRemoteVideoFrameDecoded', () => true, again);
  assert.deepStrictEqual(sender.of('onStreamStateChanged', ({ state }) => state !== 0), [], 'publishing went on');
});
