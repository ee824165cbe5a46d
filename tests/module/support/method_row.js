'use strict';

// How a table of methods is written. One row is one method: what JavaScript passes, what the engine must be asked, and
// every line that must stand in the log.
//
// In lines "@" stands for the method's name with its source line in parentheses, "#" for the result, and "{0}" for an
// argument, which is 0 in the lines of calls whose arguments were never read.

/** @typedef {'number'|'boolean'|'string'|'object'|'array'|'bytes'} Kind */

const argument = (kind) => (value, more = {}) => ({ kind, value, ...more });

/** Arguments by the type that the method tests; `{ untested: true }` for those it converts without a test. */
const args = {
  number: argument('number'),
  boolean: argument('boolean'),
  string: argument('string'),
  object: argument('object'),
  array: argument('array'),
  bytes: argument('bytes'),
};

const managers = {
  audioDevices: { withheld: 'getAudioDeviceManager', line: '@, audioDeviceManager is nullptr' },
  videoDevices: { withheld: 'getVideoDeviceManager', line: '@, videoDeviceManager is nullptr' },
  mixing: { withheld: 'getAudioMixingManager', line: '@, pManager is nullptr' },
  allMixing: { withheld: 'getAudioMixingManager', line: '@, audioMixingManager is nullptr' },
  effects: { withheld: 'getVideoEffectInterface', line: '@, videoEffectInterface is nullptr' },
  library: { withheld: 'getKTVManager', line: '@, iKTVManagerPtr is nullptr' },
  player: { withheld: 'getKTVPlayer', line: '@, iKTVPlayerPtr is nullptr' },
  scoring: { withheld: 'getSingScoringManager', line: '@, iSingScoreManager is nullptr' },
};

const shape = {
  owner: 'IRTCVideo',
  managers: [],
  entry: '+@',
  exit: '-@, ret: #',
  lines: [],
  missing: ['@, pRtcVideo is nullptr'],
  refusal: '@, Param Invalid',
  refusalLevel: 'I',
  /** What a call without a result answers. */
  empty: -1,
};

/**
 * Rows that share something: each is [name, arguments, the engine's arguments, what else is different]. Without engine
 * arguments the successful call has a case of its own elsewhere.
 */
function family(shared, rows) {
  return rows.map(([name, given = [], engine, different = {}], index) => {
    // A result of its own for every method, so that none can stand in for another.
    const answer = different.answer ?? 100 + index;
    return { ...shape, ...shared, name, args: given, engine, result: answer, ...different, answer };
  });
}

const streamKey = { room_id: 'räum', user_id: 'usér', stream_index: 1 };

module.exports = { args, family, managers, streamKey };
