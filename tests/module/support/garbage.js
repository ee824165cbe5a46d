'use strict';

const assert = require('node:assert');
const v8 = require('node:v8');
const vm = require('node:vm');

const { sdk, engine, createEngine, readLog, temporaryFolder } = require('./index');

// A channel keeps its callback, and this everything around it, for ever.
const ignore = () => {};

v8.setFlagsFromString('--expose_gc');
const gc = vm.runInNewContext('gc');

/** Collects garbage until `condition` holds; the host runs the finalisers of what it collected between two tries. */
async function collectUntil(condition) {
  for (let i = 0; i < 200; ++i) {
    gc();
    await new Promise((resolve) => setTimeout(resolve, 5));
    if (condition()) return;
  }
  assert.fail('nothing was collected');
}

/**
 * `run` while the module has no engine object at all but its log is open. `noticed` is asked, with the log, whether
 * that has come about.
 */
async function withoutEngineObject(noticed, run) {
  const logPath = temporaryFolder();
  const log = { entries: () => readLog(logPath) };
  engine.reset();
  engine.withhold('createRTCVideo');
  sdk.setLogConfig({ log_path: logPath, log_level: 0, log_file_size: 10, log_filename_prefix: 'test' });
  (() => new sdk.xoRTCVideo().createRTCVideo('app-id', ignore, ''))();
  try {
    await collectUntil(() => noticed(log));
    run(log);
  } finally {
    // Destroying an engine closes the log.
    engine.reset();
    createEngine({ logPath }).destroy();
  }
}

module.exports = { gc, collectUntil, withoutEngineObject };
