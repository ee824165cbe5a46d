'use strict';
// What it costs the sender to send its camera in three layers instead of one: the processor time of its process while it
// publishes a clip of 1280x720 in one way and in the other, in turn. Nobody receives it: layers are encoded all the same.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { randomUUID } = require('node:crypto');
const sdk = require('../..');
const { sampleClip } = require('../../demo/samples');
const { compare, sleep } = require('../rounds');

const rate = 30;
const layers = [[1280, 720], [640, 360], [320, 180]].map(([width, height]) => ({
  width, height, frame_rate: rate, max_bitrate: -1, min_bitrate: 0, encoder_preference: 0,
}));
const settlingMs = 1500;
const measuredMs = 5000;
const pictures = 2;
const timeout = 15_000;

module.exports = async function layersBench() {
  const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  process.on('exit', () => fs.rmSync(logFolder, { recursive: true, force: true }));
  sdk.setLogConfig({ log_path: logFolder, log_level: 0, log_file_size: 10, log_filename_prefix: 'layers' });
  const listeners = new Map();
  const take = ({ Type, Object: event }) => listeners.get(Type)?.(event);
  const next = (type) => new Promise((resolve, reject) => {
    const timer = setTimeout(() => reject(new Error(`no ${type} within ${timeout / 1000} s`)), timeout);
    listeners.set(type, (event) => {
      clearTimeout(timer);
      resolve(event);
    });
  });
  const check = (what, result) => {
    if (result !== 0) throw new Error(`${what}: ${result}`);
  };

  const video = new sdk.xoRTCVideo();
  check('createRTCVideo', video.createRTCVideo('bench', take, '{}'));
  const room = new sdk.xoRTCRoom(`bench ${randomUUID()}`, take);
  check('setVideoCaptureDevice', video.setVideoCaptureDevice(`file:${await sampleClip((text) => console.error(text))}`));
  check('startVideoCapture', video.startVideoCapture());
  check('setVideoEncoderConfig', video.setVideoEncoderConfig(layers));
  const joined = next('onRoomStateChanged');
  check('joinRoom', room.joinRoom('', { uid: 'sender', extra_info: '' }, {
    room_profile_type: 0, is_auto_publish: false, is_auto_subscribe_audio: false, is_auto_subscribe_video: false,
    remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 },
  }));
  check('joining', (await joined).state);

  const sent = [];
  /** Per cent of a core. */
  const costOf = (layered) => async () => {
    check('enableSimulcastMode', video.enableSimulcastMode(layered));
    const published = next('onStreamStateChanged');
    check('publishStream', room.publishStream(pictures));
    check('publishing', (await published).state);
    await sleep(settlingMs);
    const before = process.cpuUsage();
    const start = performance.now();
    await sleep(measuredMs);
    const { user, system } = process.cpuUsage(before);
    const elapsed = performance.now() - start;
    sent.push((await next('onLocalStreamStats')).video_stats.sent_frame_rate);
    return (user + system) / 10 / elapsed;
  };
  const row = await compare({
    name: 'sending three layers, beside one', unit: '% of a core', goal: { kind: 'most', ratio: 1.7 }, rounds: 3,
    value: costOf(true), limit: costOf(false),
  });
  // Fewer pictures would cost less, too.
  if (Math.min(...sent) < 0.9 * Math.max(...sent)) throw new Error(`unlike rates of pictures were sent: ${sent}`);
  room.destroy();
  video.destroyRTCVideo();
  return [row];
};
