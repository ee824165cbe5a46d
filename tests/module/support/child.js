'use strict';

// Scripts in a process of their own, for what is seen from outside only: standard output, collection, the end.

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

const { temporaryFolder } = require('./index');

/** For scripts: the support folder as a literal, with slashes that survive any number of quotations. */
const support = JSON.stringify(__dirname.replaceAll('\\', '/'));

/** Runs the script and answers its output line by line; throws with the output when it fails. */
function runScript(script) {
  // A file, as Windows programs under Wine cannot use pipes.
  const output = path.join(temporaryFolder(), 'output.txt');
  const file = fs.openSync(output, 'w');
  try {
    execFileSync(process.execPath, ['--expose-gc', '-e', script], { stdio: ['ignore', file, file], timeout: 120_000 });
  } catch (error) {
    throw new Error(fs.readFileSync(output, 'utf8'), { cause: error });
  } finally {
    fs.closeSync(file);
  }
  return fs.readFileSync(output, 'utf8').split(/\r?\n/);
}

module.exports = { runScript, support };
