'use strict';
// Resident memory while 1080p frames arrive in a registered buffer for ten minutes.

const fs = require('node:fs');
const { engineCommand, createEngine, sleep } = require('../harness');

const minutes = Number(process.env.CORVANE_BENCH_MEMORY_MINUTES ?? 10);
const width = 1920;
const height = 1080;
const allowed = 2;

// The host reads 4 MB of its own program, the optimising compiler, when a function has run some thousand times: of its
// own accord that would be in the second minute.
function wakeCompiler() {
  const message = (index) => ({ Type: 'frame', Object: { index, half: index / 2 } });
  let sum = 0;
  for (let i = 0; i < 1_000_000; ++i) sum += message(i).Object.half;
  return sum;
}

/** Megabytes in memory: all, and without what is mapped from files. */
function residentMemory() {
  const kilobytes = (name) => Number(new RegExp(`^${name}:\\s+(\\d+) kB$`, 'm').exec(status)[1]);
  const status = fs.readFileSync('/proc/self/status', 'latin1');
  return { all: kilobytes('VmRSS') / 1024, own: kilobytes('RssAnon') / 1024 };
}

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
  wakeCompiler();
  const resident = [];
  for (let second = 0; second < minutes * 60; second += 2) {
    await sleep(2000);
    const now = residentMemory();
    if (second >= 60) resident.push(now);
  }
  engineCommand({ do: 'stopStreams' });
  video.destroyRTCVideo();
  if (frames < minutes * 60 * 29) throw new Error(`only ${frames} frames arrived`);
  const row = (name, kind, goal) => {
    const value = Math.max(...resident.map((each) => each[kind])) - resident[0][kind];
    return { name, value, unit: 'MB', limit: allowed, ratio: value / allowed, goal };
  };
  return [
    row(`resident memory's rise over ${minutes} minutes of 1080p30`, 'all', { kind: 'most', ratio: 1 }),
    row('  of it the process\'s own, not mapped from files', 'own', null),
  ];
};
