'use strict';
// A frame as PNG and base64, against the npm package sharp at its defaults, with the same pixels.

const sharp = require('sharp');
const { native, compare, logFolder } = require('../harness');
const pictures = require('../pictures');

const rgba = 5;
const argb = 6;
const rounds = 7;

/** Bytes R, G, B, A as a frame of the format holds them, so that this is the picture that JavaScript is shown. */
function frameOf(pixels, format) {
  const frame = Buffer.alloc(pixels.length);
  for (let i = 0; i < pixels.length; i += 4) {
    const [r, g, b, a] = pixels.subarray(i, i + 4);
    // The bytes of an RGBA frame move on by one place and count as B, G, R then.
    frame.set(format === argb ? [b, g, r, a] : [g, r, a, b], i);
  }
  return frame;
}

/** Milliseconds of one of `count` calls. */
async function timeOf(count, work) {
  const start = performance.now();
  for (let i = 0; i < count; ++i) await work();
  return (performance.now() - start) / count;
}

module.exports = async function images() {
  const { size } = pictures;
  const small = { width: 320, height: 180 };
  const formats = [['', argb, 4], [', without transparency', rgba, 3]];
  const rows = [];
  for (const [content, picture] of [['photograph', await pictures.photograph(logFolder)], ['screen', pictures.screen()]]) {
    const raw = { ...size, channels: 4 };
    const reduced = await sharp(picture, { raw }).resize(small.width, small.height).raw().toBuffer();
    for (const [{ width, height }, pixels, ratio, count] of [[small, reduced, 0.5, 12], [size, picture, 0.8, 3]]) {
      for (const [label, format, channels] of formats) {
        const frame = frameOf(pixels, format);
        const seen = channels === 4 ? pixels : await sharp(pixels, { raw: { width, height, channels: 4 } })
          .removeAlpha().raw().toBuffer();
        const encode = () => native.encodeImage(frame, width, height, format);
        const encodeWithSharp = async () =>
          (await sharp(seen, { raw: { width, height, channels } }).png().toBuffer()).toString('base64');

        const [text, expected] = [encode(), await encodeWithSharp()];
        const shown = await sharp(Buffer.from(text, 'base64')).raw().toBuffer();
        if (!shown.equals(seen)) throw new Error(`${content}, ${width}x${height}: another picture came out`);
        const name = `PNG of a ${content}, ${width}x${height}${label}`;
        rows.push(await compare({
          name, unit: 'ms', goal: { kind: 'most', ratio }, rounds,
          value: () => timeOf(count, encode), limit: () => timeOf(count, encodeWithSharp),
        }));
        if (format !== argb) continue;
        rows.push({
          name: `  its text, ${content}, ${width}x${height}`, unit: 'kB', value: text.length / 1e3, limit: expected.length / 1e3,
          ratio: text.length / expected.length, goal: null,
        });
      }
    }
  }
  return rows;
};
