'use strict';

// Plug-ins for tests, each in a folder of its own: tests/plugins has their sources.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const { isDeepStrictEqual } = require('node:util');

const { engine, folder, temporaryFolder } = require('./index');

/** A test plug-in where the build put it. */
const builtPlugin = (name) => path.join(folder, 'plugins', `${name}.plugin`);

/** A copy of the plug-in that does as it is told: { file, folder, journal(), go() }. */
function placePlugin(name = 'test_plugin') {
  const place = temporaryFolder();
  const file = path.join(place, 'copy.plugin');
  fs.copyFileSync(builtPlugin(name), file);
  const journal = path.join(place, 'journal.txt');
  return {
    file,
    /** As init() is told it: with the separator at its end. */
    folder: place + path.sep,
    /** What the plug-in was asked, in order; those that begin with `kind`. */
    journal: (kind = '') =>
      (fs.existsSync(journal) ? fs.readFileSync(journal, 'utf8').split('\n').slice(0, -1) : [])
        .filter((line) => line.startsWith(kind)),
    /** Lets one picture go that "hold" keeps. */
    go: () => fs.writeFileSync(path.join(place, 'go'), ''),
  };
}

/** Has the engine process one picture: what became of it, and its pixels plane by plane. */
function processPicture(frame = {}) {
  const [{ result, frames }] = engine.fire('processVideoFrame', { frame }, { detailed: true }).answers;
  return { dropped: result === null, same: result === 'same', planes: frames[0].planes };
}

/**
 * The same, until it comes as `expected`: a busy machine may take more than the 40 ms that a picture has, and what is
 * late shows in the next one.
 */
function processUntil(frame, expected) {
  for (let tries = 0; tries < 50; ++tries) {
    if (isDeepStrictEqual(processPicture(frame), expected)) return;
  }
  assert.deepStrictEqual(processPicture(frame), expected);
}

/** Has the engine process one stretch of sound; its bytes afterwards. */
function processSound(hook, audio_frame = {}, stream = {}) {
  const [{ result, frames }] = engine.fire(hook, { audio_frame, ...stream }, { detailed: true }).answers;
  return { result, data: frames[0].data };
}

module.exports = { builtPlugin, placePlugin, processPicture, processUntil, processSound };
