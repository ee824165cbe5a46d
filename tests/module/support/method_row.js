'use strict';

// How the tables of the engine class's methods are written: families of rows with arguments that name their kinds.
// Beyond what every row has (see method_table.js):
//   managers  the sub-managers the method works on: what withholds them, and the line that misses them
//   missing   the lines that miss the engine
//   exit      a line in which # stands for the result and {0} for the first argument, 0 when it was never read

const { Row } = require('./method_table.js');

const argument = (letter) => (value) => ({ letter, value });

/** Arguments by the type that the method tests; `untested` for those it converts without a test. */
const args = {
  number: argument('n'),
  boolean: argument('b'),
  string: argument('s'),
  object: argument('o'),
  array: argument('a'),
  bytes: argument('t'),
  untested: argument('?'),
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
  missing: ['@, pRtcVideo is nullptr'],
  exit: '-@, ret: #',
};

/**
 * Rows that share something: each is [name, arguments, the engine's arguments, what else is different]. Without engine
 * arguments (`gets` is undefined) the successful call has a case of its own elsewhere.
 */
function family(shared, rows) {
  return rows.map(([name, given = [], gets, different = {}], index) => {
    const { owner, exit, ...rest } = { ...shape, ...shared, ...different };
    // A result of its own for every method, so that none can stand in for another.
    const gives = rest.gives ?? 100 + index;
    const first = given[0]?.value;
    return new Row({
      result: gives,
      call: `${owner}.${name}`,
      ...rest,
      name,
      kinds: given.map(({ letter }) => letter).join(''),
      args: given.map(({ value }) => value),
      gets,
      gives,
      exit: (result, read) => exit.replace('#', result).replace('{0}', read ? first : 0),
    });
  });
}

const streamKey = { room_id: 'räum', user_id: 'usér', stream_index: 1 };

module.exports = { args, family, managers, streamKey };
