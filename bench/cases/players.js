'use strict';
// Effects of the embedded engine: from the call to the first sample in the mix that a speaker takes, and what 32 of them
// at once cost, mixed for the speaker and for rooms.

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const { writeWave } = require('../../tests/engine/support/waves');

const limitMs = 30;
const limitPercent = 20;

module.exports = async function players() {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  const files = [60_000, 2000].map((ms) => {
    const file = path.join(folder, `${ms}.wav`);
    writeWave(file, ms, (at) => 500 + (at % 500));
    return file;
  });
  try {
    const program = path.join(__dirname, '..', '..', 'build', 'release', 'bench', 'players_bench');
    const found = JSON.parse(execFileSync(program, files, { encoding: 'utf8' }));
    const row = (name, unit, value, limit, isGoal = true) => ({
      ...{ name, unit, value, limit, ratio: value / limit },
      goal: isGoal ? { kind: 'most', ratio: 1 } : null,
    });
    return [
      row('effect in memory, start to mix', 'ms', found.memory_ms, limitMs),
      row('  the longest', 'ms', found.memory_most_ms, limitMs, false),
      row('effect of a file, start to mix', 'ms', found.file_ms, limitMs),
      row('  the longest', 'ms', found.file_most_ms, limitMs, false),
      row('32 effects in memory, of one core', '%', found.memory_load, limitPercent),
      row('32 effects of files, of one core', '%', found.file_load, limitPercent),
    ];
  } finally {
    fs.rmSync(folder, { recursive: true, force: true });
  }
};
