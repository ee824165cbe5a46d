'use strict';
// Small pictures of frames side by side in one PNG.

const fs = require('node:fs');
const zlib = require('node:zlib');

const margin = 4;

/** Clamps to a byte. */
const byte = (value) => (value < 0 ? 0 : value > 255 ? 255 : value);

/**
 * One frame as RGB, made smaller by taking the nearest pixel. `planes` are the I420 planes back to back, as delivered into
 * a registered buffer; `frame` carries the frame's size and strides.
 */
function shrink(planes, frame, width, height) {
  const { plane_size_y: strideY, plane_size_u: strideU, plane_size_v: strideV } = frame;
  const startU = strideY * frame.height;
  const startV = startU + ((strideU * frame.height) >> 1);
  const pixels = Buffer.alloc(width * height * 3);
  for (let row = 0; row < height; ++row) {
    const fromRow = Math.floor((row * frame.height) / height);
    for (let column = 0; column < width; ++column) {
      const fromColumn = Math.floor((column * frame.width) / width);
      const y = 1.164 * (planes[fromRow * strideY + fromColumn] - 16);
      const u = planes[startU + (fromRow >> 1) * strideU + (fromColumn >> 1)] - 128;
      const v = planes[startV + (fromRow >> 1) * strideV + (fromColumn >> 1)] - 128;
      const at = (row * width + column) * 3;
      pixels[at] = byte(y + 1.596 * v);
      pixels[at + 1] = byte(y - 0.392 * u - 0.813 * v);
      pixels[at + 2] = byte(y + 2.017 * u);
    }
  }
  return pixels;
}

function chunk(type, data) {
  const body = Buffer.concat([Buffer.from(type, 'latin1'), data]);
  const framed = Buffer.alloc(body.length + 8);
  framed.writeUInt32BE(data.length, 0);
  body.copy(framed, 4);
  framed.writeUInt32BE(crc32(body), body.length + 4);
  return framed;
}

/** Node's own came with a later 20.x than the oldest that runs here. */
function crc32(bytes) {
  let crc = ~0;
  for (const value of bytes) {
    crc ^= value;
    for (let bit = 0; bit < 8; ++bit) crc = (crc >>> 1) ^ (crc & 1 ? 0xedb88320 : 0);
  }
  return ~crc >>> 0;
}

/** An RGB picture as a PNG file's bytes. */
function encodePng(pixels, width, height) {
  const rows = Buffer.alloc((width * 3 + 1) * height);
  for (let row = 0; row < height; ++row) {
    pixels.copy(rows, row * (width * 3 + 1) + 1, row * width * 3, (row + 1) * width * 3);
  }
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header.set([8, 2, 0, 0, 0], 8);
  const signature = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);
  return Buffer.concat([
    signature, chunk('IHDR', header), chunk('IDAT', zlib.deflateSync(rows)), chunk('IEND', Buffer.alloc(0)),
  ]);
}

class ContactSheet {
  #columns;
  #width;
  #height;
  #pictures = [];

  /** Sizes in pixels of one picture. */
  constructor(columns, width, height) {
    this.#columns = columns;
    this.#width = width;
    this.#height = height;
  }

  get count() {
    return this.#pictures.length;
  }

  /** A picture of the sheet's size, as from shrink(). */
  add(picture) {
    this.#pictures.push(picture);
  }

  /** Writes the sheet and returns the file's path. */
  write(file) {
    const rows = Math.max(1, Math.ceil(this.count / this.#columns));
    const width = this.#columns * (this.#width + margin) + margin;
    const height = rows * (this.#height + margin) + margin;
    const sheet = Buffer.alloc(width * height * 3, 0x20);
    this.#pictures.forEach((bytes, index) => {
      // Another process's bytes come as a plain array.
      const picture = Buffer.from(bytes.buffer, bytes.byteOffset, bytes.length);
      const left = margin + (index % this.#columns) * (this.#width + margin);
      const top = margin + Math.floor(index / this.#columns) * (this.#height + margin);
      for (let row = 0; row < this.#height; ++row) {
        picture.copy(sheet, ((top + row) * width + left) * 3, row * this.#width * 3, (row + 1) * this.#width * 3);
      }
    });
    fs.writeFileSync(file, encodePng(sheet, width, height));
    return file;
  }
}

module.exports = { ContactSheet, shrink };
