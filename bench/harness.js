'use strict';
// What most benchmarks share: the module over the scripted engine. rounds.js has what needs no engine.

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { native, compare, median, sleep } = require('./rounds');

const build = path.join(__dirname, '..', 'build', 'release');
const sdk = require(path.join(build, 'scripted', 'corvane_meeting_sdk.node'));
const driver = require(path.join(build, 'scripted', 'scripted_driver.node'));

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

module.exports = { sdk, native, engineCommand, createEngine, compare, median, sleep, logLevel, logFolder };
