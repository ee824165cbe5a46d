'use strict';
// What joining and leaving leaves behind: nothing that adds up. `npm run bench -- room_calls` does the same for longer.

const assert = require('node:assert');
const fs = require('node:fs');
const { test, after } = require('node:test');

const { joinOverAndOver } = require('../../bench/joins.js');
const { makeWorkplace } = require('./support/participant.js');

const workplace = makeWorkplace();
after(() => fs.rmSync(workplace, { recursive: true, force: true }));

test('joining and leaving over and over takes no descriptors, threads or memory', async () => {
  process.env.XDG_RUNTIME_DIR = workplace;
  const camera = 'test:ball?width=320&height=240&fps=30';
  // What was freed is kept for each thread that allocates, unless they all share: of no interest here.
  const environment = { MALLOC_ARENA_MAX: '1' };
  const joining = { joins: 50, camera, logFolder: workplace, timeout: 90_000, environment };
  const { early, late } = await joinOverAndOver(joining);
  const told = JSON.stringify({ early, late });
  // The last picture may still be on its way to JavaScript, and its pool has two. One kept by each join is more.
  assert.ok(late.descriptors - early.descriptors < 10, told);
  assert.ok(late.threads <= early.threads, told);
  // Feeds that are kept would be more. A sanitizer keeps what was freed for a while.
  if (process.env.CORVANE_SANITIZER) return;
  assert.ok(late.resident_mb - early.resident_mb < 8, told);
});
