'use strict';

const assert = require('node:assert');
const { test } = require('node:test');

const {
  ROOM_ROWS,
  RANGE_ROWS,
  SPATIAL_ROWS,
  SPATIAL_ROWS_ARGUMENTS_FIRST,
  SPATIAL_ALL,
  SYNC_ROW,
  ROWS,
  OTHER_METHODS,
  ORIENTATION,
} = require('./method_tables/room');
const { sdk, engine } = require('./support');
const { inRoom } = require('./support/in_room');
const { checkRight, checkWrong, checkMissing, textsOf } = require('./support/method_table');

test('every method of the class is in a table', () => {
  const names = Object.getOwnPropertyNames(sdk.xoRTCRoom.prototype).filter((name) => name !== 'constructor');
  assert.deepStrictEqual(names.sort(), [...ROWS.map(({ name }) => name), ...OTHER_METHODS].sort());
});

test('right arguments reach the engine and its answer comes back', () => {
  inRoom((target, log) => {
    for (const row of [...ROWS, SYNC_ROW]) checkRight(row, target, log);
    // Failures of the engine are results like any other.
    for (const row of ROWS.filter(({ result }) => result === 7)) {
      engine.answer(row.call, -104);
      assert.strictEqual(target[row.name](...row.args), -104, row.name);
    }
  });
});

test('wrong arguments are refused and reach no engine', () => {
  inRoom((target, log) => {
    for (const row of [...ROWS, SYNC_ROW]) checkWrong(row, target, log);
  });
});

test('without a room every method refuses, whatever its arguments', () => {
  inRoom((target, log) => {
    target.destroy();
    for (const row of ROWS) checkMissing(row, target, log, '@, m_pRtcRoom is nullptr');

    const lines = textsOf(log, () => {
      assert.strictEqual(target.setMultiDeviceAVSync('bob'), -1);
      assert.strictEqual(target.setMultiDeviceAVSync(1), -1);
    });
    assert.deepStrictEqual(lines, [
      ...SYNC_ROW.refused('@, m_pRtcRoom is nullptr'),
      ...SYNC_ROW.refused('@, Param Invalid'),
    ]);
    assert.strictEqual(engine.countCalls('setMultiDeviceAVSync'), 0);
  });
});

test('without range or spatial audio their methods refuse', () => {
  inRoom((target, log) => {
    engine.withhold('getRangeAudio');
    engine.withhold('getSpatialAudio');
    for (const row of RANGE_ROWS) checkMissing(row, target, log, '@, iRangeAudioPtr is nullptr');
    for (const row of SPATIAL_ROWS) checkMissing(row, target, log, '@, iSpatialAudio is nullptr');
    for (const row of SPATIAL_ROWS_ARGUMENTS_FIRST) {
      checkWrong(row, target, log);
      const found = textsOf(log, () => assert.strictEqual(target[row.name](...row.args), -1));
      assert.deepStrictEqual(found, row.refused('@, iSpatialAudio is nullptr'));
    }
    // Nothing is cached: what is offered again is used again.
    engine.withhold('getRangeAudio', false);
    engine.withhold('getSpatialAudio', false);
    for (const row of [...RANGE_ROWS, ...SPATIAL_ALL]) checkRight(row, target, log);
  });
});

test('a refused argument keeps the interface from being fetched only where arguments come first', () => {
  inRoom((target) => {
    engine.clear();
    for (const { name } of SPATIAL_ROWS_ARGUMENTS_FIRST) target[name]();
    assert.strictEqual(engine.countCalls('getSpatialAudio'), 0);
    target.updateSpatialPosition();
    assert.strictEqual(engine.countCalls('getSpatialAudio'), 1);
    target.updateReceiveRange();
    assert.strictEqual(engine.countCalls('getRangeAudio'), 1);
    target.updateReceiveRange({ min: 1, max: 2 });
    assert.strictEqual(engine.countCalls('getRangeAudio'), 2);
  });
});

test('a fraction is kept with the precision of a float', () => {
  inRoom((target) => {
    target.setAttenuationModel(1, 0.1);
    assert.strictEqual(engine.lastArgs('setAttenuationModel').coefficient, Math.fround(0.1));
  });
});

test('joinRoom calls the engine with zeros for missing and mistyped keys, then throws', () => {
  const nothing = {
    room_profile_type: 0,
    is_auto_publish: false,
    is_auto_subscribe_audio: false,
    is_auto_subscribe_video: false,
    remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 },
  };
  const mistyped = {
    room_profile_type: '1',
    is_auto_publish: 1,
    is_auto_subscribe_audio: 'true',
    is_auto_subscribe_video: null,
    remote_video_config: { framerate: {}, resolution_width: [], resolution_height: () => {} },
  };
  inRoom((target, log) => {
    for (const [user, config] of [
      [{}, {}],
      [{ uid: 1, extra_info: null }, mistyped],
      [() => {}, () => {}],
      [[], { ...mistyped, remote_video_config: 5 }],
    ]) {
      engine.clear();
      const lines = textsOf(log, () => {
        assert.throws(() => target.joinRoom('t', user, config), { name: 'TypeError', message: /expected/ });
      });
      assert.deepStrictEqual(engine.calls('joinRoom').map(({ args }) => args), [
        { token: 't', user_info: { uid: '', extra_info: '' }, room_config: nothing },
      ]);
      assert.deepStrictEqual(lines, [
        '+joinRoom(#)',
        'joinRoom(#), token: t, uid:  extraInfo:  room profile =0 is_auto_subscribe_audio = 0 ' +
          'is_auto_subscribe_video=0 is_auto_publish = 0 framerate=0 resolution_height=0 resolution_width=0',
        '-joinRoom(#), ret: 0',
      ]);
    }

    // The keys are read in a fixed order, and what the first getter throws is what the caller sees.
    const read = [];
    const noting = (name, rest = {}) =>
      new Proxy(rest, {
        get(object, key) {
          read.push(`${name}.${key}`);
          if (key === 'is_auto_publish' || key === 'uid') throw new RangeError(key);
          return object[key];
        },
      });
    engine.clear();
    const config = { room_profile_type: 1, remote_video_config: noting('remote', { framerate: 9 }) };
    assert.throws(() => target.joinRoom('t', noting('user'), noting('config', config)), TypeError);
    assert.deepStrictEqual(read, [
      'config.room_profile_type',
      'config.is_auto_subscribe_audio',
      'config.is_auto_subscribe_video',
      'config.is_auto_publish',
      'config.remote_video_config',
      'remote.framerate',
      'remote.resolution_width',
      'remote.resolution_height',
      'user.uid',
      'user.extra_info',
    ]);
    const { room_config } = engine.lastArgs('joinRoom');
    assert.strictEqual(room_config.room_profile_type, 1);
    assert.strictEqual(room_config.remote_video_config.framerate, 9);

    const throwing = { ...ROOM_ROWS[0].args[2] };
    Object.defineProperty(throwing, 'room_profile_type', {
      get() {
        throw new RangeError('mine');
      },
    });
    assert.throws(() => target.joinRoom('t', { uid: 'a', extra_info: '' }, throwing), { message: 'mine' });
    assert.strictEqual(engine.lastArgs('joinRoom').room_config.is_auto_publish, true);
  });
});

test('setRemoteVideoConfig takes only numbers and misses nothing else', () => {
  inRoom((target) => {
    const zero = { framerate: 0, resolution_width: 0, resolution_height: 0 };
    for (const [given, got] of [
      [{ framerate: '15' }, zero],
      [{ framerate: '15', resolution_width: 640, resolution_height: null }, { ...zero, resolution_width: 640 }],
      [{ resolution_height: 7.9 }, { ...zero, resolution_height: 7 }],
      [() => {}, zero],
    ]) {
      engine.clear();
      assert.strictEqual(target.setRemoteVideoConfig('u', given), 0);
      assert.deepStrictEqual(engine.lastArgs('setRemoteVideoConfig'), { user_id: 'u', config: got });
    }
    const throwing = {
      get framerate() {
        throw new RangeError('mine');
      },
      resolution_width: 5,
    };
    assert.throws(() => target.setRemoteVideoConfig('u', throwing), { message: 'mine' });
    assert.strictEqual(engine.lastArgs('setRemoteVideoConfig').config.resolution_width, 5);
  });
});

test('binary senders take their count from the argument and never beyond the array', () => {
  inRoom((target, log) => {
    const bytes = Buffer.from('a\0cd');
    const lines = textsOf(log, () => {
      assert.ok(target.sendUserBinaryMessage('bob', 4, bytes, 1) > 0);
      assert.ok(target.sendRoomBinaryMessage(3, bytes) > 0);
      assert.ok(target.sendRoomBinaryMessage(0, new Uint8Array(0)) > 0);
      assert.ok(target.sendRoomBinaryMessage(8, new Float64Array([1])) > 0);
      assert.ok(target.sendRoomBinaryMessage(2, new Uint8Array(new SharedArrayBuffer(2))) > 0);
    });
    assert.deepStrictEqual(
      engine.calls('sendRoomBinaryMessage').map(({ args }) => [args.size, [...(args.message ?? [])]]),
      [
        [3, [97, 0, 99]],
        [0, []],
        [8, [0, 0, 0, 0, 0, 0, 240, 63]],
        [2, [0, 0]],
      ],
    );
    assert.deepStrictEqual([...engine.lastArgs('sendUserBinaryMessage').message], [97, 0, 99, 100]);
    assert.strictEqual(lines[0], '+sendUserBinaryMessage(#) uid=bob length=4 message=a config=1');
    assert.strictEqual(lines[2], '+sendRoomBinaryMessage(#) size=3 message=a ');
    assert.strictEqual(lines[4], '+sendRoomBinaryMessage(#) size=0 message= ');

    // A view in the middle of its buffer starts at its own first byte.
    target.sendRoomBinaryMessage(2, new Uint8Array([1, 2, 3, 4]).subarray(1, 3));
    assert.deepStrictEqual([...engine.lastArgs('sendRoomBinaryMessage').message], [2, 3]);

    engine.clear();
    const detached = new Uint8Array(4);
    structuredClone(detached.buffer, { transfer: [detached.buffer] });
    for (const [size, array] of [
      [5, bytes],
      [-1, bytes],
      [-(2 ** 31), bytes],
      [2 ** 31 - 1, bytes],
      [9, new Float64Array([1])],
      [1, new Uint8Array(0)],
      [1, detached],
    ]) {
      const refused = textsOf(log, () => {
        assert.strictEqual(target.sendRoomBinaryMessage(size, array), -1, `${size}`);
        assert.strictEqual(target.sendUserBinaryMessage('bob', size, array, 0), -1, `${size}`);
      });
      assert.deepStrictEqual(refused, [
        'sendRoomBinaryMessage(#), Param Invalid',
        '-sendRoomBinaryMessage(#),  res: -1',
        'sendUserBinaryMessage(#), Param Invalid',
        '-sendUserBinaryMessage(#) res: -1',
      ]);
    }
    assert.strictEqual(engine.countCalls(), 0);
  });
});

test('message ids', () => {
  inRoom((target, log) => {
    engine.answer('sendUserMessage', -3);
    const lines = textsOf(log, () => assert.strictEqual(target.sendUserMessage('u', 'm', 0), 0));
    assert.deepStrictEqual(lines.slice(1), ['-sendUserMessage(#), res: -3 ', '-sendUserMessage(#),  ret: 0 ']);
    engine.answer('sendRoomMessage', -3);
    assert.strictEqual(target.sendRoomMessage('m'), -3);
    engine.answer('sendRoomMessage', 2n ** 53n + 1n);
    const ids = textsOf(log, () => assert.strictEqual(target.sendRoomMessage('m'), 2 ** 53));
    assert.strictEqual(ids.at(-1), '-sendRoomMessage(#) res: 9007199254740993');
  });
});

test('forward lists: texts of any length, holes, wrong kinds, no list', () => {
  const configuration = (...dests) => ({ forward_stream_dests: dests, count: dests.length });
  inRoom((target, log) => {
    for (const method of ['startForwardStreamToRooms', 'updateForwardStreamToRooms']) {
      const given = (config) => {
        engine.clear();
        target[method](config);
        return engine.lastArgs(method).configuration;
      };
      const throws = (config, ...dests) => {
        engine.clear();
        assert.throws(() => target[method](config), TypeError);
        assert.deepStrictEqual(engine.lastArgs(method).configuration, configuration(...dests));
      };

      // Short texts, texts that do not fit the reader's own space, and many of both.
      const many = Array.from({ length: 300 }, (_, i) => ({ room_id: `r${i}`, token: `${i}`.padStart(i * 3, 'ü') }));
      assert.deepStrictEqual(given({ forward_stream_dests: many }), configuration(...many));
      assert.strictEqual(given({ forward_stream_dests: [] }).count, 0);

      const right = { room_id: 'r', token: 't' };
      const empty = { room_id: '', token: '' };
      // eslint-disable-next-line no-sparse-arrays
      throws({ forward_stream_dests: [right, , right] }, right, empty, right);
      throws({ forward_stream_dests: [null, right, 5] }, empty, right, { ...empty });
      throws({ forward_stream_dests: [{ room_id: 5, token: 't' }] }, { room_id: '', token: 't' });
      throws({ forward_stream_dests: [{ room_id: 'r' }] }, { room_id: 'r', token: '' });
      for (const list of [undefined, null, 'list', { length: 2 }, 3]) {
        engine.clear();
        assert.throws(() => target[method]({ forward_stream_dests: list }), Error);
        assert.strictEqual(engine.lastArgs(method).configuration.count, 0);
      }

      // A list that claims more rooms than memory holds.
      engine.clear();
      const lines = textsOf(log, () => {
        assert.strictEqual(target[method]({ forward_stream_dests: new Array(2 ** 32 - 1) }), -1);
      });
      assert.strictEqual(lines[1], `${method}(#) param is not valid`);
      assert.strictEqual(engine.countCalls(method), 0);
    }
  });
});

test('flags: texts of any length, holes and wrong kinds', () => {
  inRoom((target, log) => {
    const long = 'x'.repeat(3000);
    target.setNoAttenuationFlags([long, '', 'b']);
    assert.deepStrictEqual(engine.lastArgs('setNoAttenuationFlags'), { flags: [long, '', 'b'], count: 3 });
    assert.strictEqual(target.setNoAttenuationFlags([]), 0);
    assert.strictEqual(engine.lastArgs('setNoAttenuationFlags').count, 0);

    const lines = textsOf(log, () => {
      // eslint-disable-next-line no-sparse-arrays
      assert.throws(() => target.setNoAttenuationFlags(['a', , 5]), TypeError);
    });
    assert.deepStrictEqual(engine.lastArgs('setNoAttenuationFlags'), { flags: ['a', '', ''], count: 3 });
    assert.deepStrictEqual(lines, [
      '+setNoAttenuationFlags(#)',
      '+setNoAttenuationFlags(#), i: 0, flag: a',
      '+setNoAttenuationFlags(#), i: 1, flag: ',
      '+setNoAttenuationFlags(#), i: 2, flag: ',
      '-setNoAttenuationFlags(#), ret: 0',
    ]);
    assert.strictEqual(target.setNoAttenuationFlags(new Array(2 ** 32 - 1)), -1);
  });
});

test('positions and orientations: coordinates that no log field holds, missing and mistyped keys', () => {
  inRoom((target, log) => {
    const lines = textsOf(log, () => {
      target.updateSpatialPosition({ x: NaN, y: 1e30, z: -Infinity });
      target.updateSelfOrientation({ ...ORIENTATION, up: { x: NaN, y: 3e9, z: -3e9 } });
    });
    assert.strictEqual(
      lines[1],
      'ParsePostion(#) param is not valid x: 0 y: 2147483647 z: -2147483648',
    );
    assert.ok(lines[4].endsWith('up: {x: 0, y: 2147483647, z: -2147483648}'), lines[4]);
    assert.deepStrictEqual(engine.lastArgs('updatePosition').position, {
      x: NaN,
      y: Math.fround(1e30),
      z: -Infinity,
    });

    const zero = { x: 0, y: 0, z: 0 };
    assert.throws(() => target.updateSpatialPosition({ x: '1', y: 2 }), TypeError);
    assert.deepStrictEqual(engine.lastArgs('updatePosition').position, { ...zero, y: 2 });
    assert.throws(() => target.updateSelfPosition({}), TypeError);
    assert.deepStrictEqual(engine.lastArgs('updateSelfPosition').info, {
      position: zero,
      orientation: { forward: zero, right: zero, up: zero },
    });
    assert.throws(() => target.updateRangePosition({ x: 1, z: 3 }), TypeError);
    assert.deepStrictEqual(engine.lastArgs('IRangeAudio.updatePosition').position, { x: 1, y: 0, z: 3 });
    assert.throws(() => target.updateReceiveRange({ min: 1 }), TypeError);
    assert.deepStrictEqual(engine.lastArgs('updateReceiveRange').range, { min: 1, max: 0 });
    assert.throws(() => target.startSubtitle({}), TypeError);
    assert.deepStrictEqual(engine.lastArgs('startSubtitle').config, { mode: 0, target_language: '' });
  });
});
