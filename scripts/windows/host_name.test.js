'use strict';
// The module binds to the program that loads it, so it has to load where that program is not called node.exe.

const assert = require('node:assert');
const path = require('node:path');
const test = require('node:test');

test('loads in a host whose file is not called node.exe', () => {
  assert.notStrictEqual(path.basename(process.execPath).toLowerCase(), 'node.exe');
  const sdk = require(path.join(process.env.CORVANE_MEETING_SDK_DIR, 'corvane_meeting_sdk.node'));
  assert.strictEqual(sdk.getCurrentProcessId(), String(process.pid));
  assert.ok(Math.abs(sdk.getTimestampMs() - Date.now()) < 60000);
  assert.strictEqual(typeof sdk.getSDKVersion(), 'string');
});
