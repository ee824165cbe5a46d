'use strict';
// What the benchmarks share: the module over the scripted engine, and rounds that measure a value beside its limit.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const build = path.join(__dirname, '..', 'build', 'release');
const sdk = require(path.join(build, 'scripted', 'corvane_meeting_sdk.node'));
const driver = require(path.join(build, 'scripted', 'scripted_driver.node'));
const native = require(path.join(build, 'bench', 'bench_native.node'));

const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
process.on('exit', () => fs.rmSync(logFolder, { recursive: true, force: true }));

/** Log levels as setLogConfig takes them. */
const logLevel = { on: 0, warnings: 1, off: 3 };

function engineCommand(request) {
  const { value, error } = JSON.parse(driver.command(JSON.stringify(request)));
  if (error) throw new Error(error);
  return value;
}

/** An engine whose messages go to `onMessage`; calls are not recorded. */
function createEngine(onMessage, level = logLevel.on) {
  sdk.setLogConfig({ log_path: logFolder, log_level: level, log_file_size: 10, log_filename_prefix: '' });
  const video = new sdk.xoRTCVideo();
  if (video.createRTCVideo('bench', onMessage, '{}') !== 0) throw new Error('no engine');
  engineCommand({ do: 'record', on: false });
  return video;
}

const median = (values) => values.toSorted((a, b) => a - b)[values.length >> 1];

/**
 * Measures value and limit in turn, `rounds` times, and answers the row of their medians; the ratio is the median of the
 * rounds' ratios. `goal`: { kind: 'most' | 'least', ratio }.
 */
async function compare({ name, unit, goal, rounds = 5, value, limit }) {
  const values = [];
  const limits = [];
  for (let round = 0; round < rounds; ++round) {
    values.push(await value());
    limits.push(await limit());
  }
  const ratio = median(values.map((each, round) => each / limits[round]));
  return { name, value: median(values), unit, limit: median(limits), ratio, goal };
}

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

module.exports = { sdk, native, engineCommand, createEngine, compare, median, sleep, logLevel, logFolder };
