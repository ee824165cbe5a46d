'use strict';
// Pictures to encode, 1280x720, bytes R, G, B, A: a photograph and a screen.

const { fork } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { sampleClip } = require('../demo/samples');

const size = { width: 1280, height: 720 };

/** A frame of the demo's sample clip. `folder` is for what is passed between processes. */
async function photograph(folder) {
  const clip = await sampleClip((text) => console.error(text));
  const file = path.join(folder, 'frame.rgba');
  const frame = await new Promise((resolve, reject) => {
    const child = fork(path.join(__dirname, 'clip_frame.js'), [clip, file], {
      stdio: ['ignore', 'ignore', 'inherit', 'ipc'],
    });
    child.on('message', resolve);
    child.on('exit', (code) => reject(new Error(`the clip's frame ended with ${code}`)));
  });
  if (frame.width !== size.width || frame.height !== size.height) throw new Error('the clip has another size');
  return fs.readFileSync(file);
}

/** The same numbers from 0 to `limit` - 1 on every run. */
function generator(seed) {
  let state = seed;
  return (limit) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor((state / 2 ** 32) * limit);
  };
}

/** A desktop: a sloping background and windows full of text whose letters have soft edges. */
function screen() {
  const { width, height } = size;
  const pixels = Buffer.alloc(width * height * 4, 255);
  const random = generator(7);
  const fill = (left, top, right, bottom, colour) => {
    for (let y = top; y < bottom; ++y) {
      for (let x = left; x < right; ++x) pixels.set(colour, (y * width + x) * 4);
    }
  };
  // 0 leaves the paper, 255 is full ink.
  const letters = Array.from({ length: 60 }, () => Array.from({ length: 7 * 10 }, (_, i) => {
    const edge = i % 7 === 6 || i < 7;
    return edge || random(5) < 2 ? 0 : [90, 170, 255, 255][random(4)];
  }));
  const write = (left, top, ink, paper) => {
    const letter = letters[random(letters.length)];
    for (let i = 0; i < letter.length; ++i) {
      const at = ((top + Math.floor(i / 7)) * width + left + (i % 7)) * 4;
      for (let c = 0; c < 3; ++c) pixels[at + c] = paper[c] + Math.round(((ink[c] - paper[c]) * letter[i]) / 255);
    }
  };

  for (let y = 0; y < height; ++y) fill(0, y, width, y + 1, [40 + (y >> 4), 70 + (y >> 3), 120 + (y >> 3)]);
  const windows = [
    [40, 30, 700, 460, [255, 255, 255], [30, 30, 30]],
    [520, 200, 1240, 660, [30, 32, 38], [200, 210, 190]],
    [90, 400, 480, 690, [246, 246, 240], [20, 60, 140]],
  ];
  for (const [left, top, right, bottom, paper, ink] of windows) {
    fill(left - 1, top - 25, right + 1, bottom + 1, [90, 90, 96]);
    fill(left, top - 24, right, top, [214, 216, 220]);
    fill(left, top, right, bottom, paper);
    for (let line = top + 8; line < bottom - 14; line += 16) {
      const indent = random(4) * 21;
      const end = left + 12 + indent + random(right - left - 40 - indent);
      for (let x = left + 12 + indent; x < end; x += 7) if (random(6) > 0) write(x, line, ink, paper);
    }
  }
  return pixels;
}

module.exports = { size, photograph, screen };
