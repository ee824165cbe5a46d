'use strict';
// Pictures of 1920x1080 that the application pushes to the embedded engine, 60 a second and as fast as it can: what one
// costs the JavaScript thread, against one memcpy of its bytes. They come back to a buffer of the application's meanwhile.

const sdk = require('../..');
const { native, compare, sleep } = require('../rounds');

const width = 1920;
const height = 1080;
const bytes = width * height * 1.5;
const perRound = 60;
const mostOverCopy = 1.3;

/** Pictures that, taken in turn, no cache holds. The first byte of each is its number. */
function coldPictures() {
  const count = Math.ceil((256 << 20) / bytes);
  return Array.from({ length: count }, (_, number) => {
    const all = Buffer.alloc(bytes, number + 1);
    all[0] = number;
    const luma = width * height;
    return [all.subarray(0, luma), all.subarray(luma, luma * 1.25), all.subarray(luma * 1.25)];
  });
}

module.exports = async function pushedFrames() {
  const shown = Buffer.alloc(width * height * 2);
  let arrived = 0;
  let wrong = 0;
  const onMessage = (message) => {
    if (message.Type === 'onLocalVideoSizeChanged') {
      video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width, height, plane_y: shown });
    }
    for (const { Object: frame } of message.group ?? []) {
      arrived += 1;
      // Of several pictures in a batch the buffer holds the last. The time is the picture's number in milliseconds.
      if (shown[1] !== shown[0] + 1 || shown[bytes - 1] !== shown[1] || frame.rotation !== 0) wrong += 1;
    }
  };
  sdk.setLogConfig({ log_path: '', log_level: 3, log_file_size: 10, log_filename_prefix: '' });
  const video = new sdk.xoRTCVideo();
  const check = (result) => {
    if (result !== 0) throw new Error(`the engine answered ${result}`);
  };
  check(video.createRTCVideo('bench', onMessage, '{}'));
  check(video.setLocalVideoSink(0, 1));
  check(video.setVideoSourceType(0, 0));

  const pictures = coldPictures();
  const none = Buffer.alloc(0);
  let pushed = 0;
  function push() {
    const frame = {
      pixel_fmt: 1, color_space: 1, timestamp_ms: pushed, data: pictures[pushed % pictures.length],
      linesize: [width, width / 2, width / 2], extra_data: none, supplementary_info: none, width, height, rotation: 0,
    };
    pushed += 1;
    const start = native.threadCpuNs();
    const result = video.pushExternalVideoFrame(frame);
    const spent = native.threadCpuNs() - start;
    check(result);
    return spent;
  }
  /** Microseconds of one push, with so many milliseconds between two. */
  async function round(pause) {
    let spent = 0;
    for (let i = 0; i < perRound; ++i) {
      spent += push();
      await sleep(pause);
    }
    return spent / perRound / 1e3;
  }
  // The first ones find no memory that has been used before.
  await round(16);
  const target = Buffer.alloc(bytes);
  /** Microseconds of one memcpy of each plane, at the same pace, into memory that stays the same. */
  async function copy(pause) {
    let spent = 0;
    for (let i = 0; i < perRound; ++i) {
      spent += native.copyPieces(pictures[(pushed + i) % pictures.length], target);
      await sleep(pause);
    }
    return spent / perRound / 1e3;
  }
  const goal = { kind: 'most', ratio: mostOverCopy };
  const rows = [
    await compare({ name: 'pushed 1080p frame, 60 a second', unit: 'us', goal, value: () => round(16), limit: () => copy(16) }),
    await compare({ name: 'pushed 1080p frame, one after another', unit: 'us', goal, value: () => round(0), limit: () => copy(0) }),
  ];
  await sleep(200);
  video.destroyRTCVideo();
  if (arrived < pushed / 4) throw new Error(`only ${arrived} of ${pushed} frames arrived`);
  rows.push({
    name: '  frames that came back with other pixels', value: wrong, unit: 'frames', limit: arrived,
    ratio: wrong / arrived, goal: { kind: 'most', ratio: 0 },
  });
  return rows;
};
