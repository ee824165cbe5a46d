'use strict';
// What all benchmarks share: native helpers, and rounds that measure a value beside its limit.

const path = require('node:path');

const native = require(path.join(__dirname, '..', 'build', 'release', 'bench', 'bench_native.node'));

const median = (values) => values.toSorted((a, b) => a - b)[values.length >> 1];

/**
 * Measures value and limit in turn, `rounds` times, and answers the row of their medians; the ratio is the median of the
 * rounds' ratios. `goal`: { kind: 'most' | 'least', ratio }.
 */
async function compare({ name, unit, goal, rounds = 5, value, limit }) {
  const values = [];
  const limits = [];
  for (let round = 0; round < rounds; ++round) {
    values.push(await value());
    limits.push(await limit());
  }
  const ratio = median(values.map((each, round) => each / limits[round]));
  return { name, value: median(values), unit, limit: median(limits), ratio, goal };
}

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

module.exports = { native, compare, median, sleep };
