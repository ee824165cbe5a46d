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

/** Each example by something in it, what stands for a name of the reader's, the line that shows it worked, how many run. */
const expected = [
  // Colour bars are not black, so luma that arrived is not what the buffer was made with.
  ["'file:clip.mp4'", "'test:smpte'", /^onLocalVideoFrame [1-9]\d*$/m],
  ["'lobby'", `'lobby-${process.pid}'`, /^onFirstRemoteVideoFrameDecoded /m, 2],
  ['setLogConfig', undefined, /'\d{4}-\d\d-\d\d-node\.log'[^]*'my-app_corvane_rtc_[^]*\.log'/],
];

/** Runs copies of the source until the output of each matches; examples that keep their engine would run for ever. */
async function runUntil(source, pattern, copies) {
  const outputs = Array(copies).fill('');
  const children = outputs.map(() => spawn(process.execPath, ['-e', source], { cwd: app, stdio: ['ignore', 'pipe', 'inherit'] }));
  const end = () => children.forEach((child) => child.kill('SIGKILL'));
  const timer = setTimeout(end, 30_000);
  await Promise.all(children.map((child, index) => new Promise((resolve, reject) => {
    child.stdout.setEncoding('utf8').on('data', (text) => {
      outputs[index] += text;
      // None goes before all have what they wait for: copies of an example may wait for each other.
      if (outputs.every((output) => pattern.test(output))) end();
    });
    child.on('error', reject);
    child.on('close', resolve);
  })));
  clearTimeout(timer);
  return outputs;
}

describe('examples of the README', () => {
  test('are the three that are known, none longer than eight lines', () => {
    assert.strictEqual(examples.length, expected.length);
    for (const source of examples) assert.ok(source.trimEnd().split('\n').length <= 8, source);
  });

  expected.forEach(([mark, replacement, pattern, copies = 1], index) => {
    test(mark, async () => {
      assert.ok(examples[index].includes(mark));
      const source = replacement === undefined ? examples[index] : examples[index].replace(mark, replacement);
      for (const output of await runUntil(source, pattern, copies)) assert.match(output, pattern);
    });
  });
});
