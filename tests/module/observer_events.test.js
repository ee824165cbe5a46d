'use strict';

// What the engine's observers report: raw sound, mixing, pushes, faces, music and scores. Snapshots have a file of
// their own.

const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const { test, beforeEach } = require('node:test');

const { engine, createEngine, pixels, assertClean } = require('./support');
const table = require('./event_tables/observer_events');

const task = 'task-1';
const app = createEngine();
observeEverything(app.video);

/** Has the engine know every observer. Sound and music have been known to it since the engine was created. */
function observeEverything(video) {
  const audio = {
    i32_sample_rate: 48000,
    i32_channel_num: 2,
    i32_bitrate_kbps: 64,
    audio_codec_profile: 0,
    audio_codec_type: 0,
  };
  const picture = {
    i32_width: 640,
    i32_height: 360,
    i32_fps: 15,
    i32_gop: 30,
    i32_bitrate_kbps: 500,
    video_codec_type: 0,
    bFrame: false,
  };
  const mix = {
    room_id: 'room',
    user_id: 'user',
    uri: 'rtmp://host/mix',
    app_data: '',
    expected_mix_type: 0,
    background_color: '#000000',
    audio_param: audio,
    video_param: picture,
    layout_regions: [],
  };
  const single = { room_id: 'room', uri: 'rtmp://host/single', user_id: 'user', is_screen_stream: false };
  assert.equal(video.enableFaceDetection(100, '/models'), 0);
  assert.equal(video.initSingScoring('key', 'token'), 0);
  assert.equal(video.startLiveTranscoding(task, mix), 0);
  assert.equal(video.startPushSingleStreamToCDN('push-1', single), 0);
}

let linesBefore = 0;
beforeEach(() => {
  linesBefore = app.entries().length;
  app.collector.clear();
  engine.clear();
});

/** The lines since the test began that have any of the words in them, as 'level text', source lines as '#'. */
function linesWith(...words) {
  return app
    .entries()
    .slice(linesBefore)
    .filter(({ text }) => words.some((word) => text.includes(word)))
    .map(({ level, text }) => `${level} ${text.replace(/\(\d+\)/, '(#)')}`);
}

/** Exactly one event, with these keys in this order. */
async function assertEvent(name, payload) {
  await app.waitFor(name);
  assert.deepEqual(app.events, [{ Type: name, Object: payload }]);
  assert.equal(JSON.stringify(app.events), JSON.stringify([{ Type: name, Object: payload }]), 'the order of the keys');
}

/** Waits until everything posted before has been delivered; answers all events but the one that tells. */
async function drain() {
  engine.fire('onClearCacheResult', { error_code: 4711 });
  await app.waitFor(() => app.events.at(-1)?.Type === 'onClearCacheResult');
  return app.events.slice(0, -1);
}

test('every event without a frame: payload, order of keys, lines', async (t) => {
  for (const [interfaceName, name, args, payload, entry] of table) {
    await t.test(`${name} ${JSON.stringify(args).slice(0, 60)}`, async () => {
      engine.fire(`${interfaceName}.${name}`, args);
      await assertEvent(name, payload);
      const entryLine = { '+': [`I +${name}(#)`], '+,': [`I +${name}(#),`] }[entry] ?? [];
      assert.deepEqual(linesWith(name), [...entryLine, `I -${name}(#), status: 0`]);
    });
  }
});

test('raw sound', async (t) => {
  const frame = {
    timestampUs: 1234567,
    sampleRate: 44100,
    channels: 2,
    samples: 441,
    frameType: 7,
    muted: true,
    seed: 11,
  };
  const seen = (spec) => ({
    audio_frame: {
      render_time_ms: 1234,
      sample_rate: 44100,
      channels: 2,
      frame_type: 7,
      buffer: pixels.samples(spec),
      mute: true,
    },
  });

  for (const name of ['onRecordAudioFrame', 'onPlaybackAudioFrame', 'onMixedAudioFrame', 'onRecordScreenAudioFrame']) {
    await t.test(name, async (subtest) => {
      let linesInCallback;
      app.collector.onCall = () => {
        linesInCallback = linesWith(`[${name}]`);
      };
      subtest.after(() => {
        app.collector.onCall = null;
      });
      engine.fire(name, { audio_frame: frame });
      await assertEvent(name, seen(frame));
      assert.ok(Buffer.isBuffer(app.events[0].Object.audio_frame.buffer));
      assert.deepEqual(linesInCallback, [`D [${name}] , +callback`]);
      await drain();
      assert.deepEqual(linesWith(`[${name}]`), [`D [${name}] , +callback`, `D [${name}], -callback`]);
      assert.deepEqual(linesWith('processAudioFrame'), ['D -processAudioFrame(#), status: 0']);
    });
  }

  await t.test('onRemoteUserAudioFrame names its stream', async () => {
    const stream_info = { room_id: 'room-1', user_id: 'user-2', stream_index: 1 };
    engine.fire('onRemoteUserAudioFrame', { stream_info, audio_frame: { ...frame, seed: 12 } });
    await assertEvent('onRemoteUserAudioFrame', { stream_info, ...seen({ ...frame, seed: 12 }) });
    await drain();
    assert.deepEqual(linesWith('onRemoteUserAudioFrame', 'processAudioFrame'), [
      'D -onRemoteUserAudioFrame(#), status: 0',
    ]);

    app.collector.clear();
    engine.fire('onRemoteUserAudioFrame', {
      stream_info: { room_id: null, user_id: null, stream_index: 0 },
      audio_frame: frame,
    });
    await assertEvent('onRemoteUserAudioFrame', {
      stream_info: { room_id: '', user_id: '', stream_index: 0 },
      ...seen(frame),
    });
  });

  await t.test('times are whole milliseconds in 32 bits', async () => {
    const times = [
      [0n, 0],
      [999n, 0],
      [2147483647999n, 2147483647],
      [2147483648000n, -2147483648],
      [3000000000000n, -1294967296],
      [4294967296000n, 0],
      [-1999n, -1],
    ];
    for (const [timestampUs] of times) engine.fire('onMixedAudioFrame', { audio_frame: { timestampUs } });
    const events = await drain();
    assert.deepEqual(
      events.map(({ Object: { audio_frame } }) => audio_frame.render_time_ms),
      times.map(([, milliseconds]) => milliseconds),
    );
  });

  await t.test('frames without sound have empty buffers', async () => {
    for (const spec of [{ samples: 0 }, { samples: 480, nullData: true }]) {
      engine.fire('onRecordAudioFrame', { audio_frame: spec });
    }
    const events = await drain();
    assert.equal(events.length, 2);
    for (const { Object: payload } of events) {
      assert.ok(Buffer.isBuffer(payload.audio_frame.buffer));
      assert.equal(payload.audio_frame.buffer.length, 0);
    }
  });

  await t.test('null frames are no events; one line tells of the first', async () => {
    for (let i = 0; i < 3; ++i) engine.fire('onPlaybackAudioFrame', { audio_frame: null });
    engine.fire('onRemoteUserAudioFrame', { stream_info: {}, audio_frame: null });
    assert.deepEqual(await drain(), []);
    assert.deepEqual(linesWith('null_ptr'), ['I -processAudioFrame(#), audio_frame is null_ptr: 1']);
  });

  await t.test('every frame of several threads arrives with memory of its own', async () => {
    const spec = { samples: 480, channels: 2, seed: 13 };
    const [threads, repeat] = [4, 250];
    engine.fire('onRecordAudioFrame', { audio_frame: spec }, { threads, repeat });
    const events = await drain();
    assert.equal(events.length, threads * repeat);
    const expected = pixels.samples(spec);
    for (const { Object: payload } of events) {
      const { buffer } = payload.audio_frame;
      assert.ok(buffer.equals(expected));
      buffer.fill(0);
    }
    assertClean();
  });
});

test('mixed media', async (t) => {
  await t.test('sound', async () => {
    const spec = { timestampUs: 5000, sampleRate: 16000, channels: 1, samples: 160, seed: 21 };
    engine.fire('onMixingAudioFrame', { task_id: 'tâche-1', audio_frame: spec });
    await assertEvent('onMixingAudioFrame', {
      task_id: 'tâche-1',
      audio_frame: {
        render_time_ms: 5,
        sample_rate: 16000,
        channels: 1,
        frame_type: 0,
        buffer: pixels.samples(spec),
        mute: false,
      },
    });
    assert.deepEqual(linesWith('onMixingAudioFrame'), ['D -onMixingAudioFrame(#), status: 0']);
  });

  await t.test('data, with zeros inside and times beyond 32 bits', async () => {
    const data = Buffer.from([1, 0, 2, 0, 255]);
    engine.fire('onMixingDataFrame', {
      task_id: task,
      data_frame: { frameType: 3, data, timestampUs: 3000000000000001n },
    });
    await assertEvent('onMixingDataFrame', {
      task_id: task,
      data_frame: { frame_type: 3, u8_data: data, u64_ts_us: 3000000000000001 },
    });
    assert.deepEqual(linesWith('onMixingDataFrame'), ['D -onMixingDataFrame(#), status: 0']);
  });

  await t.test('data without bytes', async () => {
    const frames = [{}, { data: Buffer.alloc(0) }, { dataSize: 9 }, { data: Buffer.from('ab'), dataSize: -1 }];
    for (const data_frame of frames) {
      engine.fire('onMixingDataFrame', { task_id: null, data_frame });
    }
    const events = await drain();
    const empty = { frame_type: 0, u8_data: Buffer.alloc(0), u64_ts_us: 0 };
    assert.deepEqual(
      events.map(({ Object: payload }) => payload),
      Array(4).fill({ task_id: '', data_frame: empty }),
    );
  });

  await t.test('null frames', async () => {
    engine.fire('onMixingAudioFrame', { task_id: task, audio_frame: null });
    engine.fire('onMixingDataFrame', { task_id: task, data_frame: null });
    engine.fire('onMixingVideoFrame', { task_id: task, video_frame: null });
    assert.deepEqual(await drain(), []);
    assert.deepEqual(linesWith('null_ptr'), [
      'I -onMixingAudioFrame(#), audio_frame is null_ptr: 1',
      'I -onMixingDataFrame(#), data_frame is null_ptr: 1',
      'I -processVideoFrame(#), video_frame is null_ptr: 1',
    ]);
  });

  await t.test('pictures travel with the other frames, under their task', async () => {
    const picture = { width: 32, height: 16, seed: 31 };
    engine.pushFrame({ sink: `mixing:${task}`, ...picture });
    await app.waitFor(() => app.frames.length > 0);
    const [{ Type, Object: payload }] = app.frames;
    assert.equal(Type, 'onMixingVideoFrame');
    assert.deepEqual([payload.task_id, payload.public_stream_id, payload.format], [task, '', 1]);
    assert.ok(payload.plane_y.equals(Buffer.concat(pixels.planes(picture))));

    app.collector.clear();
    engine.fire('onMixingVideoFrame', { task_id: null, video_frame: picture }, { target: task });
    await app.waitFor(() => app.frames.length > 0);
    assert.equal(app.frames[0].Object.task_id, '');
    await app.waitFor(() => engine.frames().live === 0);
    assertClean();
  });
});

test('a process ends cleanly with frames that were never delivered', () => {
  const script = `
    const { engine, createEngine } = require(${JSON.stringify(require.resolve('./support'))});
    createEngine();
    engine.fire('onRecordAudioFrame', { audio_frame: {} }, { repeat: 200 });
    engine.fire('onMusicDetailResult', { music_info: { singer: 'singer' }, error_code: 0 });
    process.exit(0);`;
  const { status, signal } = spawnSync(process.execPath, ['-e', script], { stdio: 'ignore' });
  assert.deepEqual({ status, signal }, { status: 0, signal: null });
});
