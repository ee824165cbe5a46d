'use strict';
// Faces are found where they are, at the interval that was asked for, until nobody asks any more.

const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');

const sdk = require('../..');
const { samplePhoto } = require('../../demo/samples');
const { endProcessAfterTests } = require('../module/support/process_end.js');

const video = new sdk.xoRTCVideo();
let onResult = () => {};

/** The first result that is as wanted. */
const result = (wanted) => new Promise((resolve) => {
  onResult = (found) => wanted(found) && resolve(found);
});

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-faces-'));
endProcessAfterTests(() => {
  video.destroyRTCVideo();
  fs.rmSync(folder, { recursive: true, force: true });
});

test('a face is found where it is, and none where there is none', async () => {
  const photo = await samplePhoto(() => {});
  const onMessage = ({ Type, Object: event }) => Type === 'onFaceDetectResult' && onResult(event);
  assert.strictEqual(video.createRTCVideo('app-id', onMessage, '{}'), 0);
  assert.strictEqual(video.setDummyCaptureImagePath(photo), 0);
  assert.strictEqual(video.enableFaceDetection(50, ''), 0);
  const found = await result(({ image_width }) => image_width === 512);
  assert.strictEqual(found.detect_result, 0);
  assert.strictEqual(found.image_height, 512);
  assert.strictEqual(found.face_count, 1);
  const [{ x, y, width, heigth }] = found.rect;
  // The middle of the face, and about its size.
  assert.ok(Math.abs(x + width / 2 - 224) < 25 && Math.abs(y + heigth / 2 - 120) < 30, JSON.stringify(found.rect));
  assert.ok(width > 70 && width < 180, JSON.stringify(found.rect));

  assert.strictEqual(video.setVideoCaptureDevice('test:smpte?width=1280&height=720'), 0);
  assert.strictEqual(video.startVideoCapture(), 0);
  const { face_count: none, rect } = await result(({ image_width }) => image_width === 1280);
  assert.strictEqual(none, 0);
  assert.deepStrictEqual(rect, []);

  // The longer interval counts from now on.
  assert.strictEqual(video.enableFaceDetection(100_000, ''), 0);
  await result(() => true);
  assert.strictEqual(video.disableFaceDetection(), 0);
});

test('what cannot look for faces is refused', () => {
  const wrong = path.join(folder, 'wrong.xml');
  assert.strictEqual(video.enableFaceDetection(0, ''), -2);
  assert.strictEqual(video.enableFaceDetection(50, path.join(folder, 'none.xml')), -4);
  const usual = fs.readFileSync('/usr/share/opencv4/lbpcascades/lbpcascade_frontalface.xml', 'utf8');
  const texts = ['', 'no XML at all', usual.slice(0, usual.length >> 1), usual.replaceAll('<rect>', '<rect>100 '),
    usual.replaceAll('LBP', 'HAAR'), usual.replace(/<height>\d+</, '<height>-5<'), '<cascade><internalNodes>1</internalNodes></cascade>'];
  for (const text of texts) {
    fs.writeFileSync(wrong, text);
    assert.strictEqual(video.enableFaceDetection(50, wrong), -2, text.slice(0, 80));
  }
  assert.strictEqual(video.disableFaceDetection(), 0);
});
