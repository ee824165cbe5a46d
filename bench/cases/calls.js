'use strict';
// A wrapped call with its two log lines in an open file, against writing and flushing two such lines.

const path = require('node:path');
const { native, createEngine, compare, logFolder } = require('../harness');

const count = 50_000;

module.exports = async function calls() {
  const video = createEngine(() => {});
  const header = '2026-03-01 09:15:42.007 [I] [tid: 41234] ';
  const entry = `${header}+setPlaybackVolume(36)\n`;
  const exit = `${header}-setPlaybackVolume(36), ret: 0\n`;

  const costOfCalls = () => {
    const start = native.threadCpuNs();
    for (let i = 0; i < count; ++i) video.setPlaybackVolume(50);
    return (native.threadCpuNs() - start) / count;
  };
  const costOfLines = () => {
    const file = path.join(logFolder, 'lines.log');
    return native.writeLines(file, entry, count) + native.writeLines(file, exit, count);
  };
  costOfCalls();
  const row = await compare({
    name: 'call with its two log lines', unit: 'ns', goal: { kind: 'most', ratio: 1.2 }, rounds: 15,
    value: costOfCalls, limit: costOfLines,
  });
  video.destroyRTCVideo();
  return [row];
};
