'use strict';
// A call of ten minutes with all that a meeting has: camera, screen, microphone, two players and a recording on one side,
// the other side watching and listening. What both processes hold is to stay as it was after the first minute; the sound
// that is received is to have no gap. The limits are fixed.

const { randomUUID } = require('node:crypto');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { Member } = require('../../demo/call');
const { startDisplay } = require('../../tests/engine/support/display');
const { writeWave } = require('../../tests/engine/support/waves');

const minutes = Number(process.env.CORVANE_BENCH_CALL_MINUTES ?? 10);
const settling = Math.min(60, minutes * 15);
const stepTimeout = 30_000;
const camera = 'test:ball?width=1280&height=720&fps=30';
const allowed = { memory: 5, descriptors: 0, threads: 0 };
const allowedGapMs = 20;

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** A tone as a file; `period`: milliseconds, an even number. */
function writeTone(file, seconds, period) {
  writeWave(file, seconds * 1000, (ms) => (ms % period < period / 2 ? 2000 : -2000));
  return file;
}

module.exports = async function longCall() {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  process.on('exit', () => fs.rmSync(folder, { recursive: true, force: true }));
  const display = startDisplay('1280x720');
  const roomId = `bench ${randomUUID()}`;
  const script = path.join(__dirname, '../long_call_member.js');
  const held = { sender: [], receiver: [] };
  const make = (name) => new Member(script, { name, roomId, logFolder: path.join(folder, name) },
    (message) => message.held && held[name].push(message.held));
  const sender = make('sender');
  const receiver = make('receiver');
  const or = (told, milliseconds = stepTimeout) => {
    let timer;
    const late = new Promise((_, reject) => {
      timer = setTimeout(() => reject(new Error('a side of the call does not answer')), milliseconds);
    });
    return Promise.race([told, late, sender.failure, receiver.failure]).finally(() => clearTimeout(timer));
  };
  try {
    await or(Promise.all([sender.told('ready'), receiver.told('ready')]));
    const effect = writeTone(path.join(folder, 'effect.wav'), 1, 2);
    const music = writeTone(path.join(folder, 'music.wav'), 30, 4);
    sender.send('share', { camera, folder, effect, music });
    await or(sender.told('sharing'));
    receiver.send('watch', { sender: 'sender' });
    await or(receiver.told('watching'));
    await or(sleep(settling * 1000), settling * 2000);
    receiver.send('listen');
    const counts = () => ({ sender: held.sender.length, receiver: held.receiver.length });
    const [before, started] = [counts(), performance.now()];
    const rest = minutes * 60 - settling;
    await or(sleep(rest * 1000), rest * 2000);
    const seconds = (performance.now() - started) / 1000;
    const after = counts();
    receiver.send('finish');
    sender.send('finish');
    const [seen, sent] = await or(Promise.all([receiver.told('summary'), sender.told('summary')]));
    const problems = [...seen.problems, ...sent.problems];
    if (problems.length > 0) throw new Error(problems.join('; '));
    if (!(sent.recordedMs > (seconds - 5) * 1000)) throw new Error(`only ${sent.recordedMs} ms were recorded`);
    if (seen.soundMs < seconds * 950) throw new Error(`only ${seen.soundMs} ms of sound in ${seconds} s`);
    if (seen.screenFrames === 0) throw new Error('no picture of the screen arrived');

    const rows = [];
    for (const [name, list] of Object.entries(held)) {
      const kept = list.slice(before[name], after[name]);
      for (const [what, limit] of Object.entries(allowed)) {
        // The least of the first ten seconds and of the last: what swings is not what stays.
        const least = (part) => Math.min(...part.map((each) => each[what]));
        const value = least(kept.slice(-10)) - least(kept.slice(0, 10));
        rows.push({
          name: `call of ${minutes} minutes, ${name}: rise of ${what}`, value, unit: what === 'memory' ? 'MB' : '', limit,
          ratio: limit > 0 ? value / limit : 1 + value, goal: { kind: 'most', ratio: 1 },
        });
      }
    }
    rows.push({
      name: `call of ${minutes} minutes, longest gap in sound`, value: seen.longestGapMs, unit: 'ms', limit: allowedGapMs,
      ratio: seen.longestGapMs / allowedGapMs, goal: { kind: 'most', ratio: 1 },
    });
    rows.push({
      name: `call of ${minutes} minutes, pictures received`, value: seen.frames / (seconds + settling), unit: 'fps',
      limit: null, ratio: null, goal: null,
    });
    return rows;
  } finally {
    sender.release();
    receiver.release();
    display.stop();
  }
};
