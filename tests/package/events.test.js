'use strict';
// The typed events against the published headers, which name them, and against the payloads that the module's own
// tests expect of each.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const { test, describe } = require('node:test');

const { root } = require('./support/native.js');
const { typeNamed, propertiesOf, mismatches } = require('./support/typings.js');

const maps = ['EngineEventMap', 'RoomEventMap', 'AudioEffectPlayerEventMap', 'MediaPlayerEventMap'];
const mapOf = {
  IRTCRoomEventHandler: 'RoomEventMap',
  IAudioEffectPlayerEventHandler: 'AudioEffectPlayerEventMap',
  IMediaPlayerEventHandler: 'MediaPlayerEventMap',
};
/** Its frames travel in batches, with those of the sinks. */
const inBatches = ['onMixingVideoFrame'];

const read = (file) => fs.readFileSync(path.join(root, file), 'utf8');
const filesIn = (folder) => fs.readdirSync(path.join(root, folder)).map((file) => path.join(folder, file));
const payloads = (map) => new Map(propertiesOf(typeNamed(map)).map(({ name, type }) => [name, type]));

/** The callbacks of the published headers, by the map of the channel that carries them. */
function publishedEvents() {
  const found = Object.fromEntries(maps.map((map) => [map, new Set()]));
  for (const file of filesIn('include/corvane_rtc')) {
    for (const [, owner, body] of read(file).matchAll(/^class (I\w+) \{\n(.*?)^\};/gms)) {
      for (const [, event] of body.matchAll(/virtual void (on[A-Z]\w*)\(/g)) {
        if (!inBatches.includes(event)) found[mapOf[owner] ?? 'EngineEventMap'].add(event);
      }
    }
  }
  return found;
}

/** Rows of [name, ..., payload, ...], with or without an interface before the name. */
function expectedPayloads(table) {
  const rows = require(`../module/event_tables/${table}.js`);
  return (rows.events ?? rows).map((row) => ({ name: row.find((cell) => /^on[A-Z]/.test(cell)), payload: row[3] }));
}

const audio_frame = {
  ...{ render_time_ms: 1, sample_rate: 48000, channels: 2, frame_type: 0 },
  buffer: Buffer.alloc(4),
  mute: false,
};
const stream_info = { room_id: 'r', user_id: 'u', stream_index: 0 };
const mediaPayloads = [
  { name: 'onRecordAudioFrame', payload: { audio_frame } },
  { name: 'onPlaybackAudioFrame', payload: { audio_frame } },
  { name: 'onMixedAudioFrame', payload: { audio_frame } },
  { name: 'onRecordScreenAudioFrame', payload: { audio_frame } },
  { name: 'onRemoteUserAudioFrame', payload: { stream_info, audio_frame } },
  { name: 'onMixingAudioFrame', payload: { task_id: 't', audio_frame } },
  {
    name: 'onMixingDataFrame',
    payload: { task_id: 't', data_frame: { frame_type: 0, u8_data: Buffer.alloc(1), u64_ts_us: 5 } },
  },
];
const snapshotPayloads = [
  { name: 'onTakeLocalSnapshotResult', payload: { task_id: 1, stream_index: 0, image: 'png', error_code: 0 } },
  { name: 'onTakeLocalSnapshotResult', payload: { task_id: 1, stream_index: 0, error_code: 5 } },
  { name: 'onTakeRemoteSnapshotResult', payload: { task_id: 1, stream_key: stream_info, error_code: 5 } },
];

describe('names', () => {
  const published = publishedEvents();
  for (const map of maps) {
    test(map, () => {
      assert.ok(published[map].size > 0, 'the headers name no such event');
      assert.deepStrictEqual([...payloads(map).keys()].sort(), [...published[map]].sort());
    });
  }

  test('kinds of frames', () => {
    const source = filesIn('proj/video').filter((file) => file.endsWith('.cpp')).map(read).join('\n');
    const real = new Set([...source.matchAll(/"(on[A-Z]\w*Frame)"/g)].map(([, name]) => name));
    assert.deepStrictEqual([...payloads('FrameMap').keys()].sort(), [...real].sort());
  });
});

describe('payloads have the typed keys, and values of the typed kinds', () => {
  const tables = {
    'engine events': ['EngineEventMap', () => expectedPayloads('engine_events')],
    'observer events': ['EngineEventMap', () => expectedPayloads('observer_events')],
    'raw media': ['EngineEventMap', () => mediaPayloads],
    snapshots: ['EngineEventMap', () => snapshotPayloads],
    'room events': ['RoomEventMap', () => expectedPayloads('room_events')],
  };
  for (const [title, [map, rows]] of Object.entries(tables)) {
    test(title, () => {
      const typed = payloads(map);
      assert.ok(rows().length > 0);
      const wrong = rows().flatMap(({ name, payload }) =>
        typed.has(name) ? mismatches(typed.get(name), payload, name) : [`${name}: not typed`],
      );
      assert.deepStrictEqual(wrong, []);
    });
  }

  test('every engine and room event has a payload to compare with', () => {
    for (const map of ['EngineEventMap', 'RoomEventMap']) {
      const compared = Object.values(tables)
        .filter(([owner]) => owner === map)
        .flatMap(([, rows]) => rows().map(({ name }) => name));
      assert.deepStrictEqual([...payloads(map).keys()].filter((name) => !compared.includes(name)), []);
    }
  });
});
