'use strict';
// A time drawn into a picture, as black and white blocks that survive scaling and encoding: 24 by 2 of them, each a
// fortieth of the picture's width, from the top left corner on. 32 bits of time, 16 that tell a stamp from a picture.

const columns = 24;
const rows = 2;
const perWidth = 40;
const bits = columns * rows;
const black = 24;
const white = 228;
const threshold = 126;

/** Microseconds of the machine's clock, the same in all its processes, cut to 32 bits. */
const clock = () => Number((process.hrtime.bigint() / 1000n) & 0xffffffffn);

/** 16 bits that follow from 32. */
const check = (value) => ((Math.imul(value, 0x9e3779b1) >>> 16) ^ 0x5a3c) & 0xffff;

const bitAt = (value, sum, at) => (at < 32 ? value >>> at : sum >>> (at - 32)) & 1;

/** Side of a block in pixels; 0 where the picture is too small for stamps. */
function blockOf(width, height) {
  const block = Math.floor(width / perWidth);
  return block >= 4 && block * rows <= height ? block : 0;
}

/** Draws `value`, 32 bits, into a plane of brightness. False when the picture is too small. */
function drawStamp(luma, stride, width, height, value) {
  const block = blockOf(width, height);
  const sum = check(value);
  for (let at = 0; block > 0 && at < bits; ++at) {
    const shade = bitAt(value, sum, at) === 1 ? white : black;
    const left = (at % columns) * block;
    const top = Math.floor(at / columns) * block;
    for (let row = top; row < top + block; ++row) luma.fill(shade, row * stride + left, row * stride + left + block);
  }
  return block > 0;
}

/** The value drawn into a picture, whose size may have changed since; undefined when there is none. */
function readStamp(luma, stride, width, height) {
  const block = width / perWidth;
  if (block < 3 || Math.ceil(block * rows) > height) return undefined;
  const inner = Math.max(1, Math.floor(block / 2));
  let value = 0;
  let sum = 0;
  for (let at = 0; at < bits; ++at) {
    const left = Math.floor(((at % columns) + 0.25) * block);
    const top = Math.floor((Math.floor(at / columns) + 0.25) * block);
    let total = 0;
    for (let row = top; row < top + inner; ++row) {
      for (let from = row * stride + left, end = from + inner; from < end; ++from) total += luma[from];
    }
    const bit = total > threshold * inner * inner ? 1 : 0;
    if (at < 32) value |= bit << at;
    else sum |= bit << (at - 32);
  }
  return sum === check(value) ? value >>> 0 : undefined;
}

module.exports = { clock, drawStamp, readStamp };
