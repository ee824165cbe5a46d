'use strict';
// The demo as a person starts it, on synthetic pictures; and the stamps that its latency is read from.

const assert = require('node:assert');
const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test, before, after } = require('node:test');

const { drawStamp, readStamp } = require('../../demo/stamp.js');
const { startDisplay } = require('./support/display.js');
const { makeWorkplace } = require('./support/participant.js');

const demo = path.join(__dirname, '../../demo/index.js');
const camera = 'test:ball?width=640&height=360&fps=30';
const kept = ['clip', 'frames', 'width', 'height', 'seconds', 'fps', 'clip_fps', 'ok', 'microphone', 'contact_sheet', 'log'];

let workplace;
let display;
before(() => {
  workplace = makeWorkplace();
  display = startDisplay('320x200');
});
after(() => {
  display.stop();
  fs.rmSync(workplace, { recursive: true, force: true });
});

function run(args, environment = {}) {
  const env = { ...process.env, XDG_RUNTIME_DIR: workplace, ...environment };
  const { status, stdout, stderr } = spawnSync(process.execPath, [demo, ...args], { env, encoding: 'utf8' });
  return { status, stdout, stderr };
}

test('a call is held and told in one object', () => {
  const { status, stdout, stderr } = run([camera, '--seconds', '5', '--json']);
  // 1 is for pictures that a busy machine could not deliver in time.
  assert.ok(status === 0 || status === 1, stderr);
  const summary = JSON.parse(stdout);
  for (const name of kept) assert.ok(name in summary, name);
  assert.strictEqual(summary.ok, status === 0);
  assert.deepStrictEqual([summary.remote_width, summary.remote_height], [640, 360]);
  assert.ok(summary.join_ms > 0 && summary.first_frame_ms >= summary.join_ms);
  assert.ok(summary.remote_fps > 0 && summary.latency_samples > 0);
  assert.ok(summary.latency_p50_ms > 0 && summary.latency_p95_ms >= summary.latency_p50_ms);
  assert.ok(summary.remote_audio_kbps > 0 && summary.remote_audio_peak_db > -60);
  assert.deepStrictEqual([summary.effect.problem, summary.effect.seconds > 0.5], [undefined, true]);
  assert.ok(summary.recording.bytes > 10_000, JSON.stringify(summary.recording));
  assert.strictEqual(fs.readFileSync(summary.recording.file).toString('latin1', 4, 8), 'ftyp');
  assert.deepStrictEqual([summary.snapshot.width, summary.snapshot.height], [640, 360]);
  assert.ok(fs.existsSync(summary.snapshot.file));
  assert.deepStrictEqual([summary.screen.width, summary.screen.height, summary.screen_frames > 0], [320, 200, true]);
  assert.ok(summary.messages_sent >= 2);
  assert.strictEqual(summary.messages_received, summary.messages_sent);
  // Five rows of four pictures: three of the camera's, two of what came over the call.
  const sheet = fs.readFileSync(summary.contact_sheet);
  assert.deepStrictEqual([sheet.readUInt32BE(16), sheet.readUInt32BE(20)], [4 * 324 + 4, 5 * 184 + 4]);
});

test('without a service the camera is shown, and what is missing said', () => {
  const bare = run([camera, '--seconds', '1', '--json'], { PATH: workplace });
  assert.strictEqual(bare.status, 3);
  assert.match(bare.stderr, /no call: .*janus.*install the package "janus"/);
  const summary = JSON.parse(bare.stdout);
  assert.ok(summary.frames > 0);
  assert.deepStrictEqual([summary.join_ms, summary.latency_p50_ms, summary.ok], [null, null, false]);

  const astray = run([camera, '--seconds', '1', '--service', 'ws://127.0.0.1:1']);
  assert.strictEqual(astray.status, 3);
  assert.match(astray.stderr, /no call: .*refused/);
});

test('wrong arguments are refused', () => {
  for (const args of [['--service', 'http://host'], ['--seconds', '0'], ['no-such-clip.mp4'], ['--nonsense']]) {
    const { status, stderr } = run(args);
    assert.strictEqual(status, 2, args.join(' '));
    assert.match(stderr, /^demo: /);
  }
});

test('stamps survive noise and scaling, and nothing else is taken for one', () => {
  const [width, height, stride] = [640, 360, 672];
  const values = [0, 1, 0x80000000, 0xffffffff, 0x12345678];
  for (const value of values) {
    const luma = Buffer.from({ length: stride * height }, (_, at) => (at * 7) & 255);
    assert.ok(drawStamp(luma, stride, width, height, value));
    for (let at = 0; at < luma.length; at++) luma[at] = Math.min(255, Math.max(0, luma[at] + ((at * 31) % 81) - 40));
    assert.strictEqual(readStamp(luma, stride, width, height), value);
    const half = Buffer.alloc(320 * 180);
    for (let at = 0; at < half.length; at++) half[at] = luma[Math.floor(at / 320) * 2 * stride + (at % 320) * 2];
    assert.strictEqual(readStamp(half, 320, 320, 180), value);
    // One block turned over.
    for (let row = 0; row < 16; row++) for (let at = row * stride; at < row * stride + 16; at++) luma[at] = 255 - luma[at];
    assert.strictEqual(readStamp(luma, stride, width, height), undefined);
  }
  for (const shade of [0, 128, 255]) assert.strictEqual(readStamp(Buffer.alloc(640 * 360, shade), 640, 640, 360), undefined);
  assert.strictEqual(drawStamp(Buffer.alloc(100 * 100), 100, 100, 100, 1), false);
});
