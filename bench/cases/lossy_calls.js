'use strict';
// Calls of sound and pictures between two processes whose links to the service lose packets, each way and each member's,
// hold them up, or are narrow: how many of the pushed pictures arrive, and the longest time without a new one. The limits
// of the latter are fixed.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { holdCall } = require('../../demo/call');
const { sampleClip } = require('../../demo/samples');

const preload = path.join(__dirname, '../../build/release/bench/liblossy_link.so');
const rate = 30;
const seconds = 30;
const size = { width: 640, height: 360, frame_rate: rate };
/** `words`: those of lossy_link.cpp; `gap`: milliseconds without a picture, at most; `fps`: pictures a second, at least. */
const links = [
  { name: '2 % lost each way', words: 'loss=2', fps: 25, gap: 400 },
  { name: '2 % lost each way, 40 ms longer', words: 'loss=2 delay=40', fps: 25, gap: 400 },
  { name: '5 % lost each way', words: 'loss=5', gap: 1000 },
  { name: 'up to 15 ms of jitter', words: 'delay=10 jitter=15', fps: 25, gap: 400 },
  { name: '400 kbit/s', words: 'rate=400', of: 'sender' },
];

module.exports = async function lossyCalls() {
  const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  process.on('exit', () => fs.rmSync(logFolder, { recursive: true, force: true }));
  const camera = `file:${await sampleClip((text) => console.error(text))}`;
  const rows = [];
  for (const { name, words, of, fps, gap } of links) {
    const environment = { LD_PRELOAD: preload, CORVANE_BENCH_LINK: words };
    const environments = of ? { [of]: environment } : { sender: environment, receiver: environment };
    const { call } = await holdCall({
      camera, rate, seconds, sound: true, logFolder, size, sheet: { count: 0, width: 16, height: 9 }, environments,
    });
    const add = (what, value, unit, limit, kind) => rows.push({
      name: `${name}: ${what}`, value, unit, limit: limit ?? null, ratio: limit ? value / limit : null,
      goal: limit ? { kind, ratio: 1 } : null,
    });
    add('pictures received', call.stamped_fps, 'fps', fps, 'least');
    add('longest time without one', call.longest_gap_ms, 'ms', gap, 'most');
    add('latency, 95 % below', call.latency_p95_ms, 'ms');
    if (of) add('pictures sent', call.sent_kbps, 'kbit/s');
  }
  return rows;
};
