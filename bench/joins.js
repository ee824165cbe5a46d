'use strict';
// One process joins a room over and over, in which another sends pictures.

const { randomUUID } = require('node:crypto');
const path = require('node:path');
const { Member, senderScript } = require('../demo/call');

/**
 * Resolves to { times, early, late }: milliseconds from joining to the first picture, and what the joining process holds
 * ({ descriptors, threads, resident_mb }) after the fifth join and after the last. `environment`: more of it for that one.
 */
async function joinOverAndOver({ joins, camera, logFolder, timeout, environment = {} }) {
  const roomId = `joins ${randomUUID()}`;
  const options = (name) => ({ name, roomId, sender: 'sender', logFolder: path.join(logFolder, name) });
  const sender = new Member(senderScript, options('sender'));
  const joiner = new Member(path.join(__dirname, 'room_joiner.js'), options('joiner'), undefined, environment);
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`${joins} joins took too long`)), timeout);
  });
  const or = (told) => Promise.race([told, late, sender.failure, joiner.failure]);
  try {
    await or(Promise.all([sender.told('ready'), joiner.told('ready')]));
    sender.send('join', { camera });
    await or(sender.told('published'));
    joiner.send('measure', { joins });
    return await or(joiner.told('measured'));
  } finally {
    clearTimeout(timer);
    sender.release();
    joiner.release();
  }
}

module.exports = { joinOverAndOver };
