'use strict';
// Sound files that tests write for themselves.

const fs = require('node:fs');

const kFramesOfMs = 48;

/** Writes 16-bit sound of two channels at 48 kHz. sample(ms, channel) holds for a millisecond. */
function writeWave(file, ms, sample) {
  const frames = ms * kFramesOfMs;
  const data = Buffer.alloc(44 + frames * 4);
  data.write('RIFF', 0);
  data.writeUInt32LE(36 + frames * 4, 4);
  data.write('WAVEfmt ', 8);
  data.writeUInt32LE(16, 16);
  data.writeUInt16LE(1, 20);
  data.writeUInt16LE(2, 22);
  data.writeUInt32LE(48000, 24);
  data.writeUInt32LE(48000 * 4, 28);
  data.writeUInt16LE(4, 32);
  data.writeUInt16LE(16, 34);
  data.write('data', 36);
  data.writeUInt32LE(frames * 4, 40);
  for (let frame = 0; frame < frames; ++frame) {
    for (const channel of [0, 1]) data.writeInt16LE(sample(Math.floor(frame / kFramesOfMs), channel), 44 + frame * 4 + channel * 2);
  }
  fs.writeFileSync(file, data);
}

module.exports = { writeWave };
