'use strict';

// What every test of the module against the scripted engine starts with; tests/README.md shows how.

const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const { Collector } = require('./collector');
const { ScriptedEngine } = require('./engine');
const { logFile, readLog } = require('./log_file');
const pixels = require('./pixels');
const { endProcessAfterTests } = require('./process_end');

const folder =
  process.env.CORVANE_MEETING_SDK_DIR ?? path.join(__dirname, '..', '..', '..', 'build', 'release', 'scripted');

const sdk = require(path.join(folder, 'corvane_meeting_sdk.node'));
const engine = new ScriptedEngine(require(path.join(folder, 'scripted_driver.node')));

const temporaryFolders = [];

/** Engines that a test has not destroyed: collecting one would end whichever engine lives by then. */
const undestroyed = new Set();

/** A new folder, removed when the process ends. */
function temporaryFolder() {
  const made = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-test-'));
  temporaryFolders.push(made);
  return made;
}

/** What must be so at any time: no frame or object misused. Forgotten by engine.clear(). */
function assertClean() {
  const { violations, ...counts } = engine.frames();
  assert.strictEqual(violations, 0, `frames misused: ${JSON.stringify(counts)}`);
  const { releasedTwice, endedCalls } = engine.objects();
  assert.deepStrictEqual({ releasedTwice, endedCalls }, { releasedTwice: 0, endedCalls: 0 });
}

/**
 * A created engine with a log file of its own.
 * logLevel: as in setLogConfig; -1 writes everything. create: false leaves createRTCVideo() to the test.
 */
function createEngine({ appId = 'app-id', params = '{}', logLevel = -1, logPath, create = true } = {}) {
  const log_path = logPath ?? temporaryFolder();
  sdk.setLogConfig({ log_path, log_level: logLevel, log_file_size: 10, log_filename_prefix: 'test' });
  const video = new sdk.xoRTCVideo();
  undestroyed.add(video);
  const collector = new Collector();
  const result = create ? video.createRTCVideo(appId, collector.callback, params) : undefined;
  return {
    video,
    collector,
    result,
    logPath: log_path,
    events: collector.events,
    frames: collector.frames,
    of: (type) => collector.of(type),
    waitFor: (condition, options) => collector.waitFor(condition, options),
    /** Lines as { level, tid, text }. */
    entries: () => readLog(log_path),
    /** Texts of all lines, without their headers. */
    log: () => readLog(log_path).map(({ text }) => text),
    levels: () => readLog(log_path).map(({ level }) => level),
    logFile: () => logFile(log_path),
    destroy: () => {
      undestroyed.delete(video);
      return video.destroyRTCVideo();
    },
  };
}

/** A room of the engine that was created last: { room, events, of, waitFor, collector }. */
function createRoom(roomId = 'room') {
  const collector = new Collector();
  const room = new sdk.xoRTCRoom(roomId, collector.callback);
  return {
    room,
    collector,
    events: collector.events,
    of: (type) => collector.of(type),
    waitFor: (condition, options) => collector.waitFor(condition, options),
  };
}

endProcessAfterTests(() => {
  engine.settle();
  for (const video of undestroyed) {
    video.destroyRTCVideo();
  }
  engine.shutDown();
  for (const made of temporaryFolders) {
    try {
      fs.rmSync(made, { recursive: true, force: true });
    } catch {
      // Windows keeps an open log file's folder.
    }
  }
  assertClean();
});

module.exports = { folder, sdk, engine, createEngine, createRoom, Collector, pixels, readLog, temporaryFolder, assertClean };
