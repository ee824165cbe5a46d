'use strict';
// Sixteen streams at once: frames lost on the way, and how evenly deliveries come.

const { engineCommand, createEngine, median } = require('../harness');

const seconds = 20;
const fps = 30;
const width = 640;
const height = 360;
const period = 16.666666;

module.exports = async function streams() {
  const buffers = [];
  const seen = new Map();
  const errors = [];
  let last;
  const register = (method, extra, { width: stride, height: rows }) => {
    const plane = Buffer.alloc(stride * rows * 2);
    buffers.push(plane);
    video[method]({ ...extra, width: stride, height: rows, plane_y: plane });
  };
  const video = createEngine((message) => {
    if (message.Type === 'onLocalVideoSizeChanged') {
      const stream_type = message.Object.index === 0 ? 'onLocalVideoFrame' : 'onLocalScreenFrame';
      register('setLocalVideoBuffer', { stream_type }, message.Object.info);
    } else if (message.Type === 'onRemoteVideoSizeChanged') {
      const { user_id } = message.Object.key;
      register('setRemoteVideoBuffer', { stream_type: 'onRemoteVideoFrame', user_id }, message.Object.info);
    } else if (message.type === 'GroupVideoFrame') {
      const now = performance.now();
      if (last !== undefined) errors.push(Math.abs(now - last - period));
      last = now;
      for (const { Type, Object: frame } of message.group) {
        const id = `${Type}/${frame.user_id}/${frame.task_id}`;
        seen.set(id, (seen.get(id) ?? 0) + 1);
      }
    }
  });

  const sinks = ['local:0', 'local:1'];
  video.setLocalVideoSink(0, 1);
  video.setLocalVideoSink(1, 1);
  for (let i = 0; i < 7; ++i) {
    video.setRemoteVideoSink({ room_id: 'room', user_id: `user${i}`, stream_index: 0 }, 1);
    video.setPublicStreamVideoSink(`public${i}`, 1);
    sinks.push(`remote:room/user${i}/0`, `public:public${i}`);
  }
  const start = (count) => engineCommand({
    do: 'startStreams', fps, count, streams: sinks.map((sink) => ({ sink, frame: { width, height } })),
  });
  const finished = async () => {
    while (!engineCommand({ do: 'streams' }).finished) await new Promise((resolve) => setTimeout(resolve, 100));
    await new Promise((resolve) => setTimeout(resolve, 300));
  };
  // The size notices are answered first: frames before the answer are not delivered.
  start(10);
  await finished();
  engineCommand({ do: 'stopStreams' });
  seen.clear();
  errors.length = 0;
  last = undefined;
  start(seconds * fps);
  await finished();
  engineCommand({ do: 'stopStreams' });
  const expected = sinks.length * seconds * fps;
  const delivered = [...seen.values()].reduce((sum, each) => sum + each, 0);
  video.destroyRTCVideo();
  return [
    {
      name: 'frames lost of 16 streams, 640x360 at 30', value: expected - delivered, unit: 'frames', limit: expected,
      ratio: (expected - delivered) / expected, goal: { kind: 'most', ratio: 0 },
    },
    {
      name: 'pacing error of 16 streams, median', value: median(errors), unit: 'ms', limit: 1, ratio: median(errors),
      goal: { kind: 'most', ratio: 1 },
    },
  ];
};
