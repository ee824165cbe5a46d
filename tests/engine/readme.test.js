'use strict';
// The README's examples do what it says, as they stand there, in a folder of an application's own.

const assert = require('node:assert');
const { spawn } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test, describe, after } = require('node:test');

const root = path.join(__dirname, '../..');
const app = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-readme-'));
after(() => fs.rmSync(app, { recursive: true, force: true }));
fs.mkdirSync(path.join(app, 'node_modules'));
fs.symlinkSync(root, path.join(app, 'node_modules/corvane-meeting-sdk'));

const readme = fs.readFileSync(path.join(root, 'README.md'), 'utf8');
const examples = [...readme.matchAll(/^```js\n(.*?)^```$/gms)].map(([, source]) => source);

/** Each example by something in it, what stands for a clip of the reader's, and the line that shows it worked. */
const expected = [
  // Colour bars are not black, so luma that arrived is not what the buffer was made with.
  ["'file:clip.mp4'", "'test:smpte'", /^onLocalVideoFrame [1-9]\d*$/m],
  ['getErrorDescription', undefined, /^-4 What was asked for does not exist\.$/m],
  ['setLogConfig', undefined, /'\d{4}-\d\d-\d\d-node\.log'[^]*'my-app_corvane_rtc_[^]*\.log'/],
];

/** Runs the source until its output matches; an example that keeps its engine would run for ever. */
function runUntil(source, pattern) {
  return new Promise((resolve, reject) => {
    const child = spawn(process.execPath, ['-e', source], { cwd: app, stdio: ['ignore', 'pipe', 'inherit'] });
    let output = '';
    const timer = setTimeout(() => child.kill('SIGKILL'), 20_000);
    child.stdout.setEncoding('utf8').on('data', (text) => {
      output += text;
      if (pattern.test(output)) child.kill('SIGKILL');
    });
    child.on('error', reject);
    child.on('close', () => {
      clearTimeout(timer);
      resolve(output);
    });
  });
}

describe('examples of the README', () => {
  test('are the three that are known, none longer than eight lines', () => {
    assert.strictEqual(examples.length, expected.length);
    for (const source of examples) assert.ok(source.trimEnd().split('\n').length <= 8, source);
  });

  expected.forEach(([mark, replacement, pattern], index) => {
    test(mark, async () => {
      assert.ok(examples[index].includes(mark));
      const source = replacement === undefined ? examples[index] : examples[index].replace(mark, replacement);
      assert.match(await runUntil(source, pattern), pattern);
    });
  });
});
