'use strict';
// Pictures that an application pushes come back to it through the embedded engine, as they were or as it has them changed.

const assert = require('node:assert');
const path = require('node:path');
const { test } = require('node:test');

const sdk = require('../..');
const { endProcessAfterTests } = require('../module/support/process_end.js');

const blurPlugin = path.join(__dirname, '../../build/release/plugins/privacy_blur.so');
const width = 320;
const height = 240;
const luma = width * height;
const shown = Buffer.alloc(width * height * 2);
const video = new sdk.xoRTCVideo();
let onPicture = () => {};

function onMessage({ Type, Object: event, group }) {
  if (Type === 'onLocalVideoSizeChanged') {
    const { info } = event;
    video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: info.width, height: info.height, plane_y: shown });
  }
  for (const { Object: frame } of group ?? []) onPicture(frame);
}

/** Stripes, eight pixels wide. */
const planes = [Buffer.alloc(luma), Buffer.alloc(luma / 4, 100), Buffer.alloc(luma / 4, 150)];
for (let at = 0; at < luma; ++at) planes[0][at] = (at % width) & 8 ? 200 : 50;
const picture = {
  ...{ pixel_fmt: 1, color_space: 1, timestamp_ms: 1, width, height, rotation: 90, data: planes },
  ...{ linesize: [width, width / 2, width / 2], extra_data: Buffer.alloc(0), supplementary_info: Buffer.alloc(0) },
};

/** Pushes until what comes back is as wanted, and answers the frame. */
function pushUntil(wanted) {
  return new Promise((resolve) => {
    const timer = setInterval(() => assert.strictEqual(video.pushExternalVideoFrame(picture), 0), 20);
    onPicture = (frame) => {
      if (!wanted(frame)) return;
      clearInterval(timer);
      resolve(frame);
    };
  });
}

/** The difference between stripes, in the middle row. */
function contrast() {
  const row = shown.subarray(width * (height / 2), width * (height / 2 + 1));
  return Math.max(...row) - Math.min(...row);
}

endProcessAfterTests(() => video.destroyRTCVideo());

test('a pushed picture comes back with its bytes, its time and its rotation', async () => {
  assert.strictEqual(video.createRTCVideo('app-id', onMessage, '{}'), 0);
  assert.strictEqual(video.setLocalVideoSink(0, 1), 0);
  assert.strictEqual(video.pushExternalVideoFrame(picture), -3);
  assert.strictEqual(video.setVideoSourceType(0, 0), 0);
  const frame = await pushUntil(() => true);
  assert.deepStrictEqual(
    [frame.width, frame.height, frame.rotation, frame.timestamp, frame.plane_size_y, frame.plane_size_u],
    [width, height, 90, 1000, width, width / 2],
  );
  assert.ok(shown.subarray(0, luma * 1.5).equals(Buffer.concat(planes)));
});

test('a picture without all its pixels is refused', () => {
  assert.strictEqual(video.pushExternalVideoFrame({ ...picture, pixel_fmt: 2 }), -1);
  assert.strictEqual(video.pushExternalVideoFrame({ ...picture, linesize: [width - 1, 160, 160] }), -1);
  assert.strictEqual(video.pushExternalVideoFrame({ ...picture, width: 0 }), -1);
  assert.strictEqual(video.pushExternalVideoFrame({ ...picture, rotation: 1 }), -1);
});

test('a plug-in softens the picture while it is on, and no longer', async () => {
  assert.strictEqual(contrast(), 150);
  assert.strictEqual(video.registerPlugin({ path: blurPlugin }), 0);
  assert.strictEqual(video.setPluginParameter('strength 100'), 0);
  assert.strictEqual(video.enableVideoPlugin(true), 0);
  await pushUntil(() => contrast() < 60);
  assert.strictEqual(video.enableVideoPlugin(false), 0);
  await pushUntil(() => contrast() === 150);
  assert.strictEqual(video.enableVideoPlugin(true), 0);
  await pushUntil(() => contrast() < 60);
  assert.strictEqual(video.unregisterPlugin(), 0);
  await pushUntil(() => contrast() === 150);
});
