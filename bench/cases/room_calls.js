'use strict';
// Calls between two processes over the private service: joining until the first remote picture is decoded; then pictures
// of a clip that JavaScript pushes, 30 a second, with the time drawn into each: how many arrive, how late, and at what
// cost. The limit of the rate is what was pushed; those of times and processors are fixed: what a call is not to go beyond.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { holdCall } = require('../../demo/call');
const { sampleClip } = require('../../demo/samples');
const { joinOverAndOver } = require('../joins');
const { median } = require('../rounds');

const joins = 50;
const joinLimit = 200;
const joinsTimeout = 120_000;
// The camera's half, and the pushed pictures'.
const seconds = 20;
const rate = 30;
const sizes = [
  { width: 640, height: 360, latency: 25 },
  { width: 1280, height: 720, latency: 60, sender: 60, receiver: 20, stall: 10 },
];

const most = { kind: 'most', ratio: 1 };
const atMost = (name, value, limit, unit) => ({ name, value, unit, limit, ratio: value / limit, goal: most });

const figure = (name, value, unit) => ({ name, value, unit, limit: null, ratio: null, goal: null });

module.exports = async function roomCalls() {
  const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  process.on('exit', () => fs.rmSync(logFolder, { recursive: true, force: true }));
  const camera = `file:${await sampleClip((text) => console.error(text))}`;
  const joining = { joins, camera: 'test:ball?width=640&height=360&fps=30', logFolder, timeout: joinsTimeout };
  const { times, early, late } = await joinOverAndOver(joining);
  const rows = [
    atMost(`joining to the first picture, median of ${joins}`, median(times), joinLimit, 'ms'),
    figure(`joining to the first picture, slowest of ${joins}`, Math.max(...times), 'ms'),
    atMost(`descriptors after ${joins} joins`, late.descriptors, early.descriptors, ''),
    atMost(`threads after ${joins} joins`, late.threads, early.threads, ''),
    figure(`memory that ${joins - 5} joins took`, late.resident_mb - early.resident_mb, 'MB'),
  ];
  for (const { width, height, latency, sender, receiver, stall } of sizes) {
    const { call } = await holdCall({
      camera, rate, seconds, logFolder, size: { width, height, frame_rate: rate },
      sheet: { count: 0, width: 16, height: 9 },
    });
    if (call.remote_width !== width || call.remote_height !== height) {
      throw new Error(`pictures of ${width}x${height} came as ${call.remote_width}x${call.remote_height}`);
    }
    const kind = `call at ${width}x${height}`;
    rows.push({
      name: `${kind}, pictures received`, value: call.stamped_fps, unit: 'fps', limit: call.pushed_fps,
      ratio: call.stamped_fps / call.pushed_fps, goal: { kind: 'least', ratio: 0.967 },
    });
    const row = (what, value, limit, unit) => {
      const name = `${kind}, ${what}`;
      rows.push(limit ? atMost(name, value, limit, unit) : figure(name, value, unit));
    };
    row('latency, 50 % below', call.latency_p50_ms, undefined, 'ms');
    row('latency, 95 % below', call.latency_p95_ms, latency, 'ms');
    row('sender, of a core', call.sender_cpu_percent, sender, '%');
    row('receiver, of a core', call.receiver_cpu_percent, receiver, '%');
    row('longest stall of JavaScript, sender', call.sender_stall_ms, undefined, 'ms');
    row('longest stall of JavaScript, receiver', call.receiver_stall_ms, stall, 'ms');
  }
  return rows;
};
