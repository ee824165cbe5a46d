'use strict';
// A screen on its way to JavaScript: what can be shared, its thumbnail, frames, a snapshot.

const assert = require('node:assert');
const { test } = require('node:test');

const { startDisplay, windowWithIcon } = require('./support/display.js');
const { endProcessAfterTests } = require('../module/support/process_end.js');

const display = startDisplay('320x200');
const sdk = require('../..');

const messages = [];
let wake = () => {};
const video = new sdk.xoRTCVideo();
video.createRTCVideo('app', (message) => {
  messages.push(message);
  wake();
}, '{}');
const [monitor] = video.getScreenCaptureSourceList();

endProcessAfterTests(() => {
  video.destroyRTCVideo();
  display.stop();
});

async function until(find) {
  for (;;) {
    const found = messages.find(find);
    if (found) return found;
    await new Promise((resolve) => {
      wake = resolve;
    });
  }
}

/** Width and height of a PNG file in base64. */
function sizeOf(text) {
  const file = Buffer.from(text, 'base64');
  assert.strictEqual(file.toString('latin1', 1, 4), 'PNG');
  return [file.readUInt32BE(16), file.readUInt32BE(20)];
}

test('a monitor is listed and shown small, a window by its icon', () => {
  assert.strictEqual(monitor.type, 2);
  assert.deepStrictEqual(monitor.region_rect, { x: 0, y: 0, width: 320, height: 200 });
  const thumbnail = video.getThumbnail(monitor.type, monitor.source_id, 80, 80);
  assert.deepStrictEqual([thumbnail.width, thumbnail.height], [80, 50]);
  assert.deepStrictEqual(sizeOf(thumbnail.data), [80, 50]);
  const icon = video.getWindowAppIcon(windowWithIcon(), 32, 32);
  assert.deepStrictEqual(sizeOf(icon.data), [2, 2]);
  assert.deepStrictEqual(video.getThumbnail(1, 0x7ffffff, 80, 80), {});
});

test('frames of the screen and its snapshot come as those of stream 1', async () => {
  const [width, height] = [64, 48];
  const buffer = Buffer.alloc((width * height * 3) / 2, 1);
  video.setLocalVideoSink(1, 1);
  video.setLocalVideoBuffer({ stream_type: 'onLocalScreenFrame', width, height, plane_y: buffer });
  const started = video.startScreenVideoCapture(monitor, {
    region_rect: { x: 16, y: 16, width, height },
    capture_mouse_cursor: 1,
    filter_config: [],
    highlight_config: { enable_highlight: false, border_color: 0, border_width: 0 },
  });
  assert.strictEqual(started, 0);
  const first = await until(({ Type }) => Type === 'onFirstLocalVideoFrameCaptured');
  assert.deepStrictEqual(first.Object, { index: 1, info: { width, height, rotation: 0 } });
  await until(({ type }) => type === 'GroupVideoFrame');
  // Black, in the limited range: it was written into the buffer.
  assert.deepStrictEqual([buffer[0], buffer.at(-1)], [16, 128]);

  const task = video.takeLocalSnapshot(1);
  const { Object: taken } = await until(({ Type }) => Type === 'onTakeLocalSnapshotResult');
  assert.deepStrictEqual([taken.task_id, taken.stream_index, taken.error_code], [task, 1, 0]);
  assert.deepStrictEqual(sizeOf(taken.image), [width, height]);
  assert.strictEqual(video.stopScreenVideoCapture(), 0);
  await until(({ Type, Object: event }) => Type === 'onLocalVideoStateChanged' && event.state === 0);
});
