'use strict';
// What recording a camera of 1280x720 at 30 with its sound costs the processor, over the embedded engine: the process
// with the recording, less the process without.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { sampleClip } = require('../../demo/samples');

const build = path.join(__dirname, '..', '..', 'build', 'release');
const seconds = 8;
const limitPercent = 60;

const sleep = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

/** Percent of one core, over some seconds. */
async function load() {
  const start = performance.now();
  const before = process.cpuUsage();
  await sleep(seconds * 1000);
  const { user, system } = process.cpuUsage(before);
  return (user + system) / 10 / (performance.now() - start);
}

module.exports = async function recordings() {
  const sdk = require(path.join(build, 'corvane_meeting_sdk.node'));
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  const video = new sdk.xoRTCVideo();
  let bytes = 0;
  let failed;
  video.createRTCVideo('bench', ({ Type, Object: event }) => {
    if (Type === 'onRecordingProgressUpdate') bytes = event.process.file_size;
    if (Type === 'onRecordingStateUpdate' && event.state === 0) failed = event.error_code;
  }, '{}');
  video.setVideoCaptureDevice(`file:${await sampleClip((text) => console.error(text))}`);
  video.setVideoCaptureConfig({ capture_preference: 1, width: 1280, height: 720, frame_rate: 30 });
  video.setAudioCaptureDevice('test:sine');
  video.setLocalVideoSink(0, 1);
  video.startVideoCapture();
  video.startAudioCapture();
  await sleep(2000);
  const without = await load();
  video.startFileRecording(0, { dir_path: folder, file_type: 1 }, 2);
  await sleep(1000);
  const value = (await load()) - without;
  video.destroyRTCVideo();
  fs.rmSync(folder, { recursive: true, force: true });
  if (failed !== undefined || bytes === 0) throw new Error(`nothing was recorded: ${failed}`);
  return [
    {
      name: 'recording 1280x720 at 30', unit: '% of a core', value, limit: limitPercent, ratio: value / limitPercent,
      goal: { kind: 'most', ratio: 1 },
    },
  ];
};
