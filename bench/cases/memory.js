'use strict';
// Resident memory while 1080p frames arrive in a registered buffer for ten minutes.

const { engineCommand, createEngine, sleep } = require('../harness');

const minutes = Number(process.env.CORVANE_BENCH_MEMORY_MINUTES ?? 10);
const width = 1920;
const height = 1080;
const allowed = 2;

module.exports = async function memory() {
  let frames = 0;
  let buffer;
  const video = createEngine((message) => {
    if (message.type === 'GroupVideoFrame') frames += message.group.length;
    else if (message.Type === 'onLocalVideoSizeChanged') {
      const { info } = message.Object;
      buffer = Buffer.alloc(info.width * info.height * 1.5);
      video.setLocalVideoBuffer({
        stream_type: 'onLocalVideoFrame', width: info.width, height: info.height, plane_y: buffer,
      });
    }
  });
  video.setLocalVideoSink(0, 1);
  engineCommand({
    do: 'startStreams', fps: 30, streams: [{ sink: 'local:0', frame: { width, height } }], buffers: 8, maxBuffers: 8,
  });
  await sleep(60_000);
  const resident = [];
  for (let second = 60; second < minutes * 60; second += 2) {
    await sleep(2000);
    resident.push(process.memoryUsage().rss / (1 << 20));
  }
  engineCommand({ do: 'stopStreams' });
  video.destroyRTCVideo();
  if (frames < minutes * 60 * 29) throw new Error(`only ${frames} frames arrived`);
  const growth = Math.max(...resident) - resident[0];
  return [{
    name: `resident memory's rise over ${minutes} minutes of 1080p30`, value: growth, unit: 'MB', limit: allowed,
    ratio: growth / allowed, goal: { kind: 'most', ratio: 1 },
  }];
};
