'use strict';
// The sample plug-in that softens pictures but for their middle, and what it does to the demo's.

const path = require('node:path');

const library = path.join(__dirname, '../build/release/plugins/privacy_blur.so');
// Sharpness below which nothing is to be seen.
const plain = 0.2;

/** How much brightness changes from pixel to pixel, on average over the left quarter, which is not kept sharp. */
function sharpnessOf(planes, { plane_size_y: stride, width, height }) {
  const columns = width >> 2;
  let changes = 0;
  for (let row = 0; row < height; ++row) {
    for (let at = row * stride, end = at + columns; at < end; ++at) changes += Math.abs(planes[at + 1] - planes[at]);
  }
  return changes / (columns * height);
}

const mean = (values) => values.reduce((sum, each) => sum + each, 0) / values.length;

class BlurPlugin {
  #video;
  #check;
  #enabled = false;
  #without = [];
  #with = [];

  /** `check` takes what was done and its result. */
  constructor(video, check) {
    this.#video = video;
    this.#check = check;
  }

  load() {
    this.#check('registerPlugin', this.#video.registerPlugin({ path: library }));
    this.#check('setPluginParameter', this.#video.setPluginParameter('strength 60'));
    this.#check('setPluginParameter', this.#video.setPluginParameter('keep 30 10 40 90'));
  }

  enable() {
    this.#check('enableVideoPlugin', this.#video.enableVideoPlugin(true));
    this.#enabled = true;
  }

  /** `planes` as delivered into a registered buffer. */
  onPicture(planes, frame) {
    (this.#enabled ? this.#with : this.#without).push(sharpnessOf(planes, frame));
  }

  summarize() {
    // A clip that is plain at its left has nothing to soften there.
    const [sharpness, without] = [mean(this.#with), mean(this.#without)];
    return { name: 'blur', sharpness, sharpness_without: without, softens: without < plain || sharpness < without / 2 };
  }
}

module.exports = { BlurPlugin };
