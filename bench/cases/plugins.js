'use strict';
// Pictures of 1280x720 at 30 through a plug-in that takes 5 ms: what that adds to each, and what it costs the engine's
// thread, against two copies of a picture with a thread's work between them.

const fs = require('node:fs');
const path = require('node:path');

const { native, engineCommand, createEngine, sleep, logFolder } = require('../harness');

const seconds = 10;
const fps = 30;
const width = 1280;
const height = 720;
const bytes = width * height * 1.5;
const mostAddedMs = 8;

/** Pictures that the plug-in has had, by the module's own lines: 50 each. */
function processedByLog() {
  const [file] = fs.readdirSync(logFolder).filter((name) => name.endsWith('-node.log'));
  const lines = fs.readFileSync(path.join(logFolder, file), 'utf8').match(/timeLog\(\d+\) \[[\d,]+\], average:5ms/g);
  return (lines ?? []).length * 50;
}

module.exports = async function plugins() {
  const video = createEngine(() => {});
  const plugin = path.join(__dirname, '../../build/release/scripted/plugins/test_plugin.plugin');
  if (video.registerPlugin(plugin) !== 0) throw new Error('no plug-in');
  for (const parameter of ['quiet 1', 'mask 0', 'wait 5']) video.setPluginParameter(parameter);
  video.enableVideoPlugin(true);
  const copyTwice = () => native.copyThroughThread(bytes, 60, 1000 / fps);
  const copies = [copyTwice()];
  engineCommand({
    // More buffers than any cache holds, so that each picture's pixels are cold, as those of a camera are.
    do: 'startStreams', fps, count: seconds * fps, buffers: 64, maxBuffers: 64,
    streams: [{ sink: 'processor', frame: { width, height } }],
  });
  while (!engineCommand({ do: 'streams' }).finished) await sleep(100);
  const { streams: [stream] } = engineCommand({ do: 'stopStreams' });
  copies.push(copyTwice());
  const processed = processedByLog();
  video.destroyRTCVideo();
  if (processed < seconds * fps - 100) throw new Error(`only ${processed} pictures were processed in 5 ms`);

  const added = stream.medianNs / 1e6;
  const wrong = stream.reordered + stream.oldPixels;
  const twoCopies = (copies[0] + copies[1]) / 2;
  const cost = stream.sinkCpuNs / stream.pushed;
  return [
    {
      name: 'plug-in of 5 ms, 720p at 30: added, median', value: added, unit: 'ms', limit: mostAddedMs,
      ratio: added / mostAddedMs, goal: { kind: 'most', ratio: 1 },
    },
    {
      name: '  pictures out of order or with old pixels', value: wrong, unit: 'frames', limit: stream.pushed,
      ratio: wrong / stream.pushed, goal: { kind: 'most', ratio: 0 },
    },
    {
      name: '  of the engine\'s thread, against two copies', value: cost / 1e3, unit: 'us', limit: twoCopies / 1e3,
      ratio: cost / twoCopies, goal: { kind: 'most', ratio: 1.7 },
    },
  ];
};
