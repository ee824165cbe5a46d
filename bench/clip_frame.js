'use strict';
// A process of its own for the embedded engine, as the benchmarks' own module stands on the scripted one:
// clip_frame.js CLIP FILE writes one frame of the clip, bytes R, G, B, A, and reports { width, height }.

const fs = require('node:fs');
const sdk = require('..');

const [clip, file] = process.argv.slice(2);
const rgba = 5;
// Past what a clip may fade in with.
const wanted = 30;

let frames = 0;
const video = new sdk.xoRTCVideo();

function onMessage({ type, group, Type, Object: payload }) {
  if (Type === 'onLocalVideoSizeChanged') {
    // Local pictures come only once there is a buffer for their planes, though the colours come in one of their own.
    const { width, height } = payload.info;
    const plane_y = Buffer.alloc(width * height * 2);
    video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width, height, plane_y });
  }
  if (type !== 'GroupVideoFrame') return;
  for (const { Type: source, Object: frame } of group) {
    if (source !== 'onLocalVideoFrame' || ++frames !== wanted) continue;
    fs.writeFileSync(file, frame.rgba);
    process.send({ width: frame.width, height: frame.height }, () => process.exit(0));
  }
}

sdk.setLogConfig({ log_path: '', log_level: 3, log_file_size: 10, log_filename_prefix: '' });
const steps = [
  () => video.createRTCVideo('bench', onMessage, '{}'),
  () => video.setLocalVideoSink(0, rgba),
  () => video.setVideoCaptureDevice(`file:${clip}`),
  () => video.startVideoCapture(),
];
for (const step of steps) {
  const result = step();
  if (result !== 0) throw new Error(`${step} answered ${result}`);
}
setTimeout(() => {
  console.error(`no frame ${wanted} of ${clip} within 20 seconds`);
  process.exit(1);
}, 20_000);
