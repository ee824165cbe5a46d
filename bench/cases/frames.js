'use strict';
// What a frame costs the JavaScript thread, against one copy or conversion of it from cold memory.

const { native, engineCommand, createEngine, compare, sleep } = require('../harness');

const rounds = 5;
const framesPerRound = 120;
// Their memory is never given back, so there are not too many of them.
const rgbaFrames = 40;
const i420 = 1;
const rgba = 5;

let wantBuffer = false;
let deliver = () => {};

/** Processor time of the JavaScript thread per frame while `count` frames of one stream arrive at 60 a second. */
async function costOfFrames(sink, width, height, count) {
  let frames = 0;
  let start;
  let from;
  const finished = new Promise((resolve) => {
    deliver = (group) => {
      // The first frames pay for the size notice and for the stream's start.
      if (start === undefined && (frames += group.length) >= 10) {
        start = native.threadCpuNs();
        from = frames;
      } else if (start !== undefined && (frames += group.length) >= count) {
        resolve((native.threadCpuNs() - start) / (frames - from));
        start = undefined;
        deliver = () => {};
      }
    };
  });
  // More frames than any cache holds, so that each one's pixels are cold.
  const buffers = Math.ceil((256 << 20) / (width * height * 1.5));
  engineCommand({
    do: 'startStreams', fps: 0, threads: 1, buffers, maxBuffers: buffers,
    streams: [{ sink, frame: { width, height } }],
  });
  const cost = await finished;
  engineCommand({ do: 'stopStreams' });
  await sleep(100);
  return cost;
}

module.exports = async function frames() {
  const video = createEngine((message) => {
    if (message.type === 'GroupVideoFrame') deliver(message.group);
    else if (message.Type === 'onLocalVideoSizeChanged' && wantBuffer) {
      const { width, height } = message.Object.info;
      video.setLocalVideoBuffer({
        stream_type: 'onLocalVideoFrame', width, height, plane_y: (video.kept = Buffer.alloc(width * height * 1.5)),
      });
    }
  });
  const rows = [];
  const sizes = [['1080p', 1920, 1080], ['720p', 1280, 720]];

  wantBuffer = true;
  video.setLocalVideoSink(0, i420);
  for (const [label, width, height] of sizes) {
    rows.push(await compare({
      name: `frame into a registered buffer, ${label}`, unit: 'us', goal: { kind: 'most', ratio: 1.4 }, rounds,
      value: async () => (await costOfFrames('local:0', width, height, framesPerRound)) / 1e3,
      limit: () => native.copyCold(width * height * 1.5, 100) / 1e3,
    }));
  }
  video.unsetLocalVideoSink(0);

  video.setPublicStreamVideoSink('plain', i420);
  for (const [label, width, height] of sizes) {
    rows.push(await compare({
      name: `frame as a new Buffer, ${label}`, unit: 'us', goal: { kind: 'most', ratio: 2.5 }, rounds,
      value: async () => (await costOfFrames('public:plain', width, height, framesPerRound)) / 1e3,
      limit: () => native.copyCold(width * height * 1.5, 100) / 1e3,
    }));
  }

  video.setPublicStreamVideoSink('colour', rgba);
  for (const [label, width, height] of sizes) {
    rows.push(await compare({
      name: `frame as RGBA, ${label}`, unit: 'us', goal: { kind: 'most', ratio: 1.2 }, rounds: 3,
      value: async () => (await costOfFrames('public:colour', width, height, rgbaFrames)) / 1e3,
      limit: () => native.convertCold(width, height, rgbaFrames, true) / 1e3,
    }));
    rows.push(await compare({
      name: `  of it the page faults of the new buffer, ${label}`, unit: 'us', goal: null, rounds: 3,
      value: () => {
        const converting = native.convertCold(width, height, rgbaFrames, false);
        return (native.convertCold(width, height, rgbaFrames, true) - converting) / 1e3;
      },
      limit: () => native.convertCold(width, height, rgbaFrames, true) / 1e3,
    }));
  }
  video.destroyRTCVideo();
  return rows;
};
