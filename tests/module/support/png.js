'use strict';

// Decodes PNG files without a library of pictures: 8 bits a channel, grey, RGB or RGBA, not interlaced.

const assert = require('node:assert/strict');
const zlib = require('node:zlib');

const signature = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);
const channelsOf = { 0: 1, 2: 3, 6: 4 };

const crcTable = Uint32Array.from({ length: 256 }, (_, byte) => {
  let crc = byte;
  for (let bit = 0; bit < 8; ++bit) crc = crc & 1 ? (crc >>> 1) ^ 0xedb88320 : crc >>> 1;
  return crc;
});

function crc32(bytes) {
  let crc = 0xffffffff;
  for (const byte of bytes) crc = crcTable[(crc ^ byte) & 0xff] ^ (crc >>> 8);
  return (crc ^ 0xffffffff) >>> 0;
}

/** The file's chunks as [type, content]; checks that each is whole and that the last one ends the file. */
function readChunks(file) {
  assert.ok(file.subarray(0, 8).equals(signature), 'the signature of a PNG file');
  const chunks = [];
  for (let at = 8; chunks.at(-1)?.[0] !== 'IEND'; ) {
    assert.ok(at + 12 <= file.length, 'a file that goes on to its end chunk');
    const length = file.readUInt32BE(at);
    assert.ok(at + 12 + length <= file.length, 'a whole chunk');
    const type = file.toString('latin1', at + 4, at + 8);
    const checksum = file.readUInt32BE(at + 8 + length);
    assert.equal(checksum, crc32(file.subarray(at + 4, at + 8 + length)), `${type}: checksum`);
    chunks.push([type, file.subarray(at + 8, at + 8 + length)]);
    at += 12 + length;
  }
  return chunks;
}

function paeth(left, above, corner) {
  const guess = left + above - corner;
  const [a, b, c] = [Math.abs(guess - left), Math.abs(guess - above), Math.abs(guess - corner)];
  if (a <= b && a <= c) return left;
  return b <= c ? above : corner;
}

const predictors = [
  () => 0,
  (left) => left,
  (_, above) => above,
  (left, above) => (left + above) >> 1,
  paeth,
];

/** Undoes the filters of all rows, in place; answers the rows without their filter bytes. */
function unfilter(data, height, rowSize, channels) {
  const pixels = Buffer.alloc(height * rowSize);
  for (let y = 0; y < height; ++y) {
    const predict = predictors[data[y * (rowSize + 1)]];
    assert.ok(predict, 'a known filter');
    const row = pixels.subarray(y * rowSize, (y + 1) * rowSize);
    const above = y > 0 ? pixels.subarray((y - 1) * rowSize, y * rowSize) : Buffer.alloc(rowSize);
    for (let i = 0; i < rowSize; ++i) {
      const left = i >= channels ? row[i - channels] : 0;
      const corner = i >= channels ? above[i - channels] : 0;
      row[i] = data[y * (rowSize + 1) + 1 + i] + predict(left, above[i], corner);
    }
  }
  return pixels;
}

function toRgba(pixels, channels) {
  const rgba = Buffer.alloc((pixels.length / channels) * 4, 255);
  for (let from = 0, to = 0; from < pixels.length; from += channels, to += 4) {
    for (let i = 0; i < 3; ++i) rgba[to + i] = pixels[from + (channels === 1 ? 0 : i)];
    if (channels === 4) rgba[to + 3] = pixels[from + 3];
  }
  return rgba;
}

/** { width, height, rgba } of a file: 4 bytes for each pixel, the colours not multiplied by the fourth. */
function decodePng(file) {
  const chunks = readChunks(file);
  assert.equal(chunks[0][0], 'IHDR');
  const header = chunks[0][1];
  const width = header.readUInt32BE(0);
  const height = header.readUInt32BE(4);
  const [depth, colorType, compression, filter, interlace] = header.subarray(8);
  assert.deepEqual({ depth, compression, filter, interlace }, { depth: 8, compression: 0, filter: 0, interlace: 0 });
  const channels = channelsOf[colorType];
  assert.ok(channels, `colour type ${colorType}`);

  const compressed = Buffer.concat(chunks.filter(([type]) => type === 'IDAT').map(([, content]) => content));
  const data = zlib.inflateSync(compressed);
  const rowSize = width * channels;
  assert.equal(data.length, height * (rowSize + 1), 'as much data as the size asks for');
  return { width, height, rgba: toRgba(unfilter(data, height, rowSize, channels), channels) };
}

/** The same of base64 text, which has to be exactly what standard base64 is. */
function decodePngText(text) {
  const file = Buffer.from(text, 'base64');
  assert.equal(file.toString('base64'), text, 'standard base64, padded, in one line');
  return decodePng(file);
}

module.exports = { decodePng, decodePngText };
