'use strict';

const { after } = require('node:test');

/**
 * Ends the process when the file's tests have run. The module's channels keep the event loop alive until the process
 * ends, so the runner alone would wait for ever. `last` runs first and may throw to fail the file.
 */
function endProcessAfterTests(last) {
  after(() => {
    try {
      last();
    } finally {
      setImmediate(finish);
    }
  });
}

function finish() {
  // The runner reports and sets the exit code when the loop has nothing left to do.
  process.emit('beforeExit', process.exitCode ?? 0);
  let quietTurns = 0;
  const leave = () => {
    quietTurns = process.stdout.writableLength === 0 && process.stderr.writableLength === 0 ? quietTurns + 1 : 0;
    if (quietTurns > 20) {
      process.exit();
    }
    setImmediate(leave);
  };
  leave();
}

module.exports = { endProcessAfterTests };
