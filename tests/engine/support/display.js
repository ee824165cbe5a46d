'use strict';

// An X server of the test's own.

const { execFileSync, spawn } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const patienceMs = 30_000;

/** The environment of programs that are not the project's: the runtime of a sanitizer is nothing for them. */
const plain = () => ({ ...process.env, LD_PRELOAD: '' });

/** Runs Xvfb and names it in DISPLAY. stop() ends it; so does this process's end, should the test crash. */
function startDisplay(size = '1280x720') {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-display-'));
  const file = path.join(folder, 'number');
  const descriptor = fs.openSync(file, 'w');
  const words = ['--pdeathsig', 'TERM', 'Xvfb', '-displayfd', '3', '-screen', '0', `${size}x24`, '-noreset', '-nolisten', 'tcp'];
  const server = spawn('setpriv', words, { env: plain(), stdio: ['ignore', 'ignore', 'ignore', descriptor] });
  fs.closeSync(descriptor);
  server.on('error', () => {}); // told below
  server.unref();

  // The number stands in the file once the server is ready.
  const pause = new Int32Array(new SharedArrayBuffer(4));
  const end = Date.now() + patienceMs;
  let number = '';
  while (!number.endsWith('\n') && server.pid !== undefined && Date.now() < end) {
    Atomics.wait(pause, 0, 0, 10);
    number = fs.readFileSync(file, 'utf8');
  }
  fs.rmSync(folder, { recursive: true });
  if (!number.endsWith('\n')) throw new Error('Xvfb does not start: scripts/setup.sh test installs it');
  process.env.DISPLAY = `:${number.trim()}`;
  return {
    stop() {
      delete process.env.DISPLAY;
      server.kill();
    },
  };
}

/** The id of a window that has an icon: the desktop's own. */
function windowWithIcon() {
  const icon = [2, 2, 0xffff0000, 0xffff0000, 0xffff0000, 0xffff0000];
  const options = { env: plain(), encoding: 'utf8' };
  execFileSync('xprop', ['-root', '-f', '_NET_WM_ICON', '32c', '-set', '_NET_WM_ICON', icon.join(',')], options);
  const described = execFileSync('xwininfo', ['-root', '-int'], options);
  return Number(/Window id: (\d+)/.exec(described)[1]);
}

module.exports = { startDisplay, windowWithIcon };
