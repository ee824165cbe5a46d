'use strict';
// Real sound from the embedded engine reaches JavaScript: its level, its samples, and what a plug-in makes of it.

const assert = require('node:assert');
const path = require('node:path');
const { test } = require('node:test');

const sdk = require('../..');
const { endProcessAfterTests } = require('../module/support/process_end.js');

const gainPlugin = path.join(__dirname, '../../build/release/plugins/audio_gain.so');
const video = new sdk.xoRTCVideo();
let waiting = [];

function onMessage(message) {
  waiting = waiting.filter(({ type, wanted, resolve }) => {
    if (message.Type !== type || !wanted(message.Object)) return true;
    resolve(message.Object);
    return false;
  });
}

/** The next event of the type that is as wanted. */
function next(type, wanted = () => true) {
  return new Promise((resolve) => {
    waiting.push({ type, wanted, resolve });
  });
}

const propertiesOf = (report) => report.audio_properties_infos[0]?.audio_properties_info;
const levelNear = (decibels) => (report) => Math.abs(propertiesOf(report)?.nonlinear_volume - decibels) <= 1;

endProcessAfterTests(() => video.destroyRTCVideo());

test('a tone is reported with its amplitude and frequency', async () => {
  assert.strictEqual(video.createRTCVideo('app-id', onMessage, '{}'), 0);
  assert.strictEqual(video.setAudioCaptureDevice('test:sine?frequency=3000&level=-12'), 0);
  const report = { interval: 100, enable_spectrum: true, enable_vad: true, enable_voice_pitch: true };
  const modes = { local_main_report_mode: 0, smooth: 1, audio_report_mode: 0 };
  const first = next('onFirstLocalAudioFrame');
  const heard = next('onLocalAudioPropertiesReport', levelNear(-12));
  assert.strictEqual(video.enableAudioPropertiesReport({ ...report, ...modes }), 0);
  assert.strictEqual(video.startAudioCapture(), 0);
  assert.deepStrictEqual(await first, { index: 0 });
  const { linear_volume, vad, spectrum } = propertiesOf(await heard);
  assert.ok(Math.abs(linear_volume - 64) <= 2, `${linear_volume}`);
  assert.strictEqual(vad, 0);
  // 93.75 Hz a value: 3000 Hz is number 32.
  assert.strictEqual(spectrum.indexOf(Math.max(...spectrum)), 32);
});

test('its samples come in the format asked for', async () => {
  const frame = next('onRecordAudioFrame');
  assert.strictEqual(video.enableAudioFrameCallback(0, { sample_rate: 16000, channel: 2, samples_per_call: 320 }), 0);
  const { audio_frame } = await frame;
  assert.strictEqual(audio_frame.sample_rate, 16000);
  assert.strictEqual(audio_frame.channels, 2);
  assert.strictEqual(audio_frame.buffer.byteLength, 320 * 2 * 2);
  assert.strictEqual(video.disableAudioFrameCallback(0), 0);
});

test('a plug-in changes what is heard, until it goes', async () => {
  assert.strictEqual(video.registerPlugin(gainPlugin), 0);
  assert.strictEqual(video.setPluginParameter('gain -20'), 0);
  assert.strictEqual(video.enableAudioPlugin(true, 0, { sample_rate: 0, channel: 0, samples_per_call: 0 }), 0);
  await next('onLocalAudioPropertiesReport', levelNear(-32));
  assert.strictEqual(video.unregisterPlugin(), 0);
  await next('onLocalAudioPropertiesReport', levelNear(-12));
});
