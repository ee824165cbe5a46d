'use strict';

// The bytes that the scripted engine puts into frames, computed from a frame's description; the engine's side is
// tests/scripted_engine/frames/pattern.h.

const I420 = 1;
const RGBA = 5;
const ARGB = 6;
/** What lies between rows and planes. */
const GAP_BYTE = 0xee;

function patternByte(seed, plane, row, column) {
  let bits =
    Math.imul(seed, 0x9e3779b1) + Math.imul(plane, 0x85ebca77) + Math.imul(row, 0xc2b2ae3d) + Math.imul(column, 0x27d4eb2f);
  bits |= 0;
  bits ^= bits >>> 15;
  return Math.imul(bits, 0x2c1b3c6d) >>> 24;
}

const withDefaults = (frame) => ({ width: 64, height: 48, pixelFormat: I420, seed: 0, strides: [], gaps: [], ...frame });

/** Bytes of a row's pixels and number of rows, for each plane. */
function planeSizes(frame) {
  const { width, height, pixelFormat } = withDefaults(frame);
  if (pixelFormat === RGBA || pixelFormat === ARGB) {
    return [{ rowBytes: width * 4, rows: height }];
  }
  const chroma = { rowBytes: (width + 1) >> 1, rows: (height + 1) >> 1 };
  return [{ rowBytes: width, rows: height }, chroma, chroma];
}

/** The pixels of each plane, without what lies between its rows. */
function planes(frame) {
  const { seed } = withDefaults(frame);
  return planeSizes(frame).map(({ rowBytes, rows }, plane) => {
    const bytes = Buffer.alloc(rowBytes * rows);
    let at = 0;
    for (let row = 0; row < rows; row += 1) {
      for (let column = 0; column < rowBytes; column += 1) {
        bytes[at] = patternByte(seed, plane, row, column);
        at += 1;
      }
    }
    return bytes;
  });
}

/** The frame's memory from the first plane's first byte to the end of its last row, gaps included. */
function memory(frame) {
  const { strides, gaps } = withDefaults(frame);
  const parts = [];
  planeSizes(frame).forEach(({ rowBytes, rows }, plane) => {
    const stride = Math.max(strides[plane] ?? 0, rowBytes);
    if (plane > 0) {
      parts.push(Buffer.alloc(gaps[plane] ?? 0, GAP_BYTE));
    }
    const bytes = Buffer.alloc(stride * rows, GAP_BYTE);
    const pixels = planes(frame)[plane];
    for (let row = 0; row < rows; row += 1) {
      pixels.copy(bytes, row * stride, row * rowBytes, (row + 1) * rowBytes);
    }
    parts.push(bytes);
  });
  return Buffer.concat(parts);
}

/** The bytes of an audio frame's samples. */
function samples({ samples: count = 480, channels = 2, seed = 0 } = {}) {
  return Buffer.from(Array.from({ length: count * channels * 2 }, (_, i) => patternByte(seed, 0, 0, i)));
}

module.exports = { I420, RGBA, ARGB, GAP_BYTE, planeSizes, planes, memory, samples };
