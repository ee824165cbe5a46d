'use strict';

const { engine, createEngine, createRoom } = require('./index');

/** An engine with one room; both are gone after `run`. */
function inRoom(run, roomId = 'room') {
  engine.reset();
  const log = createEngine();
  const made = createRoom(roomId);
  const end = () => {
    made.room.destroy();
    log.destroy();
    engine.reset();
  };
  let result;
  try {
    result = run(made.room, log, made);
  } catch (error) {
    end();
    throw error;
  }
  if (result instanceof Promise) return result.finally(end);
  end();
  return result;
}

module.exports = { inRoom };
