'use strict';
// One member's camera, 640x360 at 30 pictures a second, seen by eight others, each in a process of its own; by fewer, when
// pictures do not reach all of those.

const { randomUUID } = require('node:crypto');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { Member, senderScript } = require('../../demo/call');

const camera = 'test:ball?width=640&height=360&fps=30';
const rate = 30;
const enough = 29;
const counts = [8, 6, 4, 3, 2, 1];
const seconds = 10;
const timeout = 30_000;

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Resolves to pictures a second of each of `count` receivers, from its first to its last, while others still join too. */
async function show(count, logFolder) {
  const roomId = `bench ${randomUUID()}`;
  const sheet = { count: 0, width: 16, height: 9 };
  const options = (name) => ({ name, roomId, sheet, logFolder: path.join(logFolder, name) });
  const members = [new Member(senderScript, options('sender'))];
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`${count} receivers took too long`)), timeout + seconds * 1000);
  });
  const or = (told) => Promise.race([told, late, ...members.map(({ failure }) => failure)]);
  try {
    const [sender] = members;
    await or(sender.told('ready'));
    sender.send('join', { camera });
    await or(sender.told('published'));
    for (let index = 0; index < count; ++index) {
      const receiver = new Member('call_receiver.js', options(`receiver ${index}`));
      members.push(receiver);
      await or(receiver.told('ready'));
      receiver.send('join', { sender: 'sender' });
      await or(receiver.told('receiving'));
    }
    const receivers = members.slice(1);
    await or(sleep(seconds * 1000));
    for (const receiver of receivers) receiver.send('finish');
    const summaries = await or(Promise.all(receivers.map((receiver) => receiver.told('summary'))));
    return summaries.map(({ camera_fps }) => camera_fps);
  } finally {
    clearTimeout(timer);
    for (const member of members) member.release();
  }
}

module.exports = async function roomCapacity() {
  const logFolder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  process.on('exit', () => fs.rmSync(logFolder, { recursive: true, force: true }));
  const rows = [];
  for (const count of counts) {
    const least = Math.min(...await show(count, logFolder));
    rows.push({
      name: `640x360 to ${count}, pictures of the one with fewest`, value: least, unit: 'fps', limit: rate,
      ratio: least / rate, goal: { kind: 'least', ratio: enough / rate },
    });
    if (least >= enough) break;
  }
  return rows;
};
