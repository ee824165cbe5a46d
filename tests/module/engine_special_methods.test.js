'use strict';

// Methods of the engine class whose calls are not the common ones: what they answer, log and keep.

const assert = require('node:assert');
const { test } = require('node:test');

const { sdk, engine, createEngine, pixels } = require('./support');
const { linesOf, textsOf } = require('./support/method_table');
const { decodePngText } = require('./support/png');

/** A test with an engine of its own, after which nothing is scripted any more. */
function engineTest(title, run) {
  test(title, (t) => {
    engine.reset();
    const log = createEngine();
    t.after(() => log.destroy());
    t.after(() => engine.reset());
    return run(log.video, log);
  });
}

/** Calls a method: { answer, lines }, the lines without their source lines. */
function call(log, method, ...args) {
  let answer;
  const lines = textsOf(log, () => {
    answer = log.video[method](...args);
  });
  return { answer, lines };
}

engineTest('test1 writes its name and answers nothing', (video, log) => {
  assert.deepStrictEqual(call(log, 'test1', 5), { answer: undefined, lines: ['test1'] });
});

const ENUMERATORS = [
  ['enumerateVideoCaptureDevices', 'video', 'deviceName: '],
  ['enumerateAudioPlaybackDevices', 'audio', 'deviceName:'],
  ['enumerateAudioCaptureDevices', 'audio', 'deviceName:'],
];

for (const [method, kind, label] of ENUMERATORS) {
  engineTest(`${method} answers every device with its line and gives the collection back`, (video, log) => {
    const longest = 'ü'.repeat(300);
    const cut = 'ü'.repeat(255);
    engine.answer(method, [
      { device_name: 'Gerät 麦克风', device_id: 'id-1' },
      { device_name: longest, device_id: longest },
      { device_name: 'kaputt', device_id: 'id-3' },
      { device_name: '', device_id: '' },
    ]);
    const devices = [
      ['Gerät 麦克风', 'id-1'],
      [cut, cut],
      ['kaputt', 'id-3'],
      ['', ''],
    ];
    assert.deepStrictEqual(call(log, method), {
      answer: devices.map(([device_name, device_id]) => ({ device_name, device_id })),
      lines: [
        `+${method}(#)`,
        ...devices.map(([name, id]) => `${method}(#), ${label}${name}, deviceId: ${id}`),
        `-${method}(#), ret: 0`,
      ],
    });
    assert.strictEqual(engine.objects().live, 0);
  });

  engineTest(`${method} answers an empty list when there is nothing to list`, (video, log) => {
    assert.deepStrictEqual(call(log, method), { answer: [], lines: [`+${method}(#)`, `-${method}(#), ret: 0`] });
    engine.answer(method, null);
    assert.deepStrictEqual(call(log, method), {
      answer: [],
      lines: [`+${method}(#)`, `${method}(#), ${kind}DeviceCollection is nullptr`, `-${method}(#), ret: -1`],
    });
    engine.answer(method, [{ device_name: 'a', device_id: 'b' }]);
    engine.answer('getCount', -3);
    assert.deepStrictEqual(call(log, method).answer, []);
    assert.strictEqual(engine.objects().live, 0);
  });
}

/** Getters with out parameters: what they write, and what they answer when the engine fails. */
const DEVICE_GETTERS = [
  ['getVideoCaptureDevice', 'device_id', ['cam-ß', ''], '', 'deviceId: '],
  ['getAudioPlaybackDevice', 'device_id', ['spk', 'x'.repeat(511)], '', 'deviceId: '],
  ['getAudioCaptureDevice', 'device_id', ['mic'], '', 'deviceId: '],
  ['getAudioPlaybackDeviceMute', 'mute', [true, false], -5, 'mute: '],
  ['getAudioCaptureDeviceMute', 'mute', [true, false], -5, 'mute: '],
];

for (const [method, out, values, empty, label] of DEVICE_GETTERS) {
  engineTest(`${method} answers what the engine wrote`, (video, log) => {
    for (const value of values) {
      engine.answer(method, { result: 0, [out]: value });
      assert.deepStrictEqual(call(log, method), {
        answer: value,
        lines: [`+${method}(#)`, `${method}(#), ${label}${typeof value === 'boolean' ? Number(value) : value}`, `-${method}(#), ret: 0`],
      });
    }
    engine.answer(method, -5);
    const failed = call(log, method);
    assert.strictEqual(failed.answer, empty);
    assert.strictEqual(failed.lines.at(-1), `-${method}(#), ret: -5`);
  });
}

for (const method of ['getAudioPlaybackDeviceVolume', 'getAudioCaptureDeviceVolume']) {
  engineTest(`${method} answers the volume and has it in its last line`, (video, log) => {
    const lines = (volume, result) => [`+${method}(#)`, `-${method}(#), volume: ${volume}, ret: ${result}`];
    engine.answer(method, { result: 0, volume: 187 });
    assert.deepStrictEqual(call(log, method), { answer: 187, lines: lines(187, 0) });
    // The line prints the number with a sign.
    engine.answer(method, { result: 0, volume: 4294967295 });
    assert.deepStrictEqual(call(log, method), { answer: 4294967295, lines: lines(-1, 0) });
    engine.answer(method, -5);
    assert.deepStrictEqual(call(log, method), { answer: -5, lines: lines(0, -5) });
  });
}

engineTest('the standard pitch belongs to the last configuration that the engine took', (video, log) => {
  const config = (midi_filepath) => ({ sample_rate: 48000, mode: 0, lyrics_filepath: '', midi_filepath });
  const counted = (...between) => ['+getStandardPitchCount(#)', ...between];
  assert.deepStrictEqual(call(log, 'getStandardPitchCount'), {
    answer: -1,
    lines: counted('getStandardPitchCount(#), midi_filepath is not valid', '-getStandardPitchCount(#), ret: -1'),
  });
  assert.deepStrictEqual(call(log, 'getStandardPitchInfo', 0), {
    answer: {},
    lines: [
      '+getStandardPitchInfo(#)',
      'getStandardPitchInfo(#), midi_filepath is not valid',
      'getStandardPitchInfo(#), ret: -1',
    ],
  });

  video.setSingScoringConfig(config('/tmp/a.mid'));
  engine.answer('setSingScoringConfig', -3);
  assert.strictEqual(video.setSingScoringConfig(config('/tmp/refused.mid')), -3);
  engine.answer('getStandardPitchInfo', null);
  assert.deepStrictEqual(call(log, 'getStandardPitchCount'), {
    answer: -1,
    lines: counted('getStandardPitchCount(#), iStandardPitchCollection is nullptr', '-getStandardPitchCount(#), ret: -1'),
  });
  assert.deepStrictEqual(engine.lastArgs('ISingScoringManager.getStandardPitchInfo'), { midi_filepath: '/tmp/a.mid' });

  engine.answer('getStandardPitchInfo', [
    { start_time: 10, duration: 20, pitch: 60 },
    { start_time: 30, duration: 40, pitch: 61 },
  ]);
  assert.deepStrictEqual(call(log, 'getStandardPitchCount'), { answer: 2, lines: counted('-getStandardPitchCount(#), ret: 2') });
  assert.deepStrictEqual(call(log, 'getStandardPitchInfo', 1.9), {
    answer: { start_time: 30, duration: 40, pitch: 61 },
    lines: [
      '+getStandardPitchInfo(#)',
      'getStandardPitchInfo(#) index: 1',
      '+getStandardPitchInfo(#),start_time: 30, duration: 40, pitch: 61',
      'getStandardPitchInfo(#), ret: 0',
    ],
  });
  for (const index of [2, -1, 4294967295]) {
    let answer;
    const lines = linesOf(log, () => {
      answer = video.getStandardPitchInfo(index);
    });
    assert.deepStrictEqual(answer, {});
    assert.deepStrictEqual(lines.slice(2), [
      { level: 'W', text: 'getStandardPitchInfo(#), index is invalid' },
      { level: 'I', text: 'getStandardPitchInfo(#), ret: -1' },
    ]);
  }
  assert.strictEqual(engine.objects().live, 0);

  // The path survives the engine.
  video.destroyRTCVideo();
  video.createRTCVideo('app-id', () => {}, '{}');
  assert.strictEqual(video.getStandardPitchCount(), 2);
});

engineTest('screen sources come with their lines, and the list is given back', (video, log) => {
  const source = (n) => ({
    type: n,
    source_id: 2 ** 33 + n,
    source_name: n === 1 ? null : `Fenster ${n}`,
    application: n === 1 ? null : '程序',
    pid: 100 + n,
    primary_monitor: n === 2,
    region_rect: { x: -n, y: n, width: 2 * n, height: 3 * n },
  });
  engine.answer('getScreenCaptureSourceList', [source(1), source(2)]);
  const name = 'getScreenCaptureSourceList';
  assert.deepStrictEqual(call(log, name), {
    answer: [{ ...source(1), source_name: '', application: '' }, source(2)],
    lines: [
      `+${name}(#)`,
      `${name}(#), type: 1, sourceId: 1, application: `,
      `${name}(#), type: 1, source_id: 1, source_name: `,
      `${name}(#), type: 2, sourceId: 2, application: 程序`,
      `${name}(#), type: 2, source_id: 2, source_name: Fenster 2`,
      `-${name}(#), ret: 0`,
    ],
  });
  assert.strictEqual(engine.objects().live, 0);
  engine.answer(name, null);
  assert.deepStrictEqual(call(log, name), { answer: [], lines: [`+${name}(#)`, `-${name}(#), ret: -1`] });
});

const PICTURES = [
  ['getThumbnail', [2, -77], { type: 2, source_id: -77 }],
  ['getWindowAppIcon', [-78], { source_id: -78 }],
];

for (const [method, args, gets] of PICTURES) {
  engineTest(`${method} answers a picture, and gives the frame back`, (video, log) => {
    const frame = { width: 5, height: 3, pixelFormat: 6, seed: 9, strides: [20] };
    engine.answer(method, frame);
    const { answer, lines } = call(log, method, ...args, 160, 90);
    assert.deepStrictEqual(engine.lastArgs(method), { ...gets, max_width: 160, max_height: 90 });
    assert.deepStrictEqual(Object.keys(answer), ['data', 'width', 'height']);
    assert.deepStrictEqual([answer.width, answer.height], [5, 3]);
    const [bgra] = pixels.planes(frame);
    const { width, height, rgba } = decodePngText(answer.data);
    assert.deepStrictEqual([width, height], [5, 3]);
    for (let at = 0; at < bgra.length; at += 4) {
      const pixel = [bgra[at + 2], bgra[at + 1], bgra[at], bgra[at + 3]];
      assert.deepStrictEqual([...rgba.subarray(at, at + 4)], pixel, `pixel ${at / 4}`);
    }
    assert.deepStrictEqual(lines, [`+${method}(#)`, `-${method}(#), ret: 0`]);

    engine.answer(method, { width: 4, height: 2, pixelFormat: 1 });
    const planar = call(log, method, ...args);
    assert.deepStrictEqual(planar.answer, { data: 'null', width: 4, height: 2 });
    assert.ok(planar.lines.includes(`${method}(#), pixformat = 1 not support!`), planar.lines.join('\n'));
    assert.strictEqual(engine.frames().live, 0);
  });

  engineTest(`${method} leaves missing sizes to the engine and answers an empty object without a picture`, (video, log) => {
    const failed = { answer: {}, lines: [`+${method}(#)`, `${method}(#), frame is null`, `-${method}(#), ret: -1`] };
    for (const sizes of [[], [160], [undefined, 90], ['160', null], [160, 90]]) {
      assert.deepStrictEqual(call(log, method, ...args, ...sizes), failed);
      const [max_width, max_height] = [0, 1].map((i) => (typeof sizes[i] === 'number' ? sizes[i] : 0));
      assert.deepStrictEqual(engine.lastArgs(method), { ...gets, max_width, max_height });
    }
  });
}

engineTest('encoder layers: none is refused at a level of its own, many are passed on in order', (video, log) => {
  const lines = linesOf(log, () => assert.strictEqual(video.setVideoEncoderConfig([]), -1));
  assert.deepStrictEqual(lines, [
    { level: 'I', text: '+setVideoEncoderConfig(#)' },
    { level: 'W', text: 'setVideoEncoderConfig(#), ProfileCount is zero' },
    { level: 'I', text: '-setVideoEncoderConfig(#), ret: -1' },
  ]);
  assert.strictEqual(engine.countCalls('setVideoEncoderConfig'), 0);
  const layers = Array.from({ length: 1000 }, (_, i) => ({
    width: i,
    height: i + 1,
    frame_rate: i + 2,
    max_bitrate: i + 3,
    min_bitrate: i + 4,
    encoder_preference: i + 5,
  }));
  assert.strictEqual(video.setVideoEncoderConfig(layers), 0);
  assert.deepStrictEqual(engine.lastArgs('setVideoEncoderConfig'), { channel_solutions: layers, count: 1000 });
});

engineTest('two configurations raise the rate at which frames are delivered', (video, log) => {
  const record = (frame_rate) => ({
    ...{ capture_preference: 0, width: 1, height: 1, frame_rate },
    ...{ max_bitrate: 0, min_bitrate: 0, encoder_preference: 0 },
  });
  const rates = (method, frame_rate) =>
    call(log, method, record(frame_rate)).lines.filter((line) => line.startsWith('setVideoRenderFps'));
  assert.deepStrictEqual(rates('setVideoCaptureConfig', 1001), ['setVideoRenderFps(#), from:setVideoCaptureConfig, fps:1001']);
  assert.deepStrictEqual(rates('setScreenVideoEncoderConfig', 1002), [
    'setVideoRenderFps(#), from:setScreenVideoEncoderConfig, fps:1002',
  ]);
  assert.deepStrictEqual(rates('setMaxVideoEncoderConfig', 1003), []);
});

engineTest('startFileRecording names what is wrong', (video, log) => {
  const config = { dir_path: '/tmp/ordner', file_type: 1 };
  engine.answer('startFileRecording', 21);
  assert.deepStrictEqual(call(log, 'startFileRecording', 1, config, 2), {
    answer: 21,
    lines: [
      '+startFileRecording(#)',
      'startFileRecording(#)  3 6 3 ',
      'startFileRecording: dir= /tmp/ordner  recodingType= 2 fileType= 1',
      '-startFileRecording(#), ret: 21',
    ],
  });
  assert.deepStrictEqual(engine.lastArgs('startFileRecording'), { stream_index: 1, config, recording_type: 2 });

  engine.clear();
  const missing = ['startFileRecording(#),  info3 is invalid ', 'startFileRecording(#), (info3)==true is invalid '];
  const mistyped = ['startFileRecording(#),  !p1,!p2,!p3 is invalid ', 'startFileRecording(#), ( !p1,!p2,!p3)==true is invalid '];
  for (const [args, types, named, absent] of [
    [['1', config, 2], '4 6 3', ',  Param is invalid streamIndex', false],
    [[1, 'config', 2], '3 4 3', ', Param is invalid, reocdingConfig', false],
    [[1, config, true], '3 6 2', ', recordingType', false],
    [[1, () => {}, 1n], '3 7 9', ', recordingType', false],
    [[1, config], '3 6 0', ', recordingType', true],
    [[], '0 0 0', ',  Param is invalid streamIndex', true],
    [[Symbol('s'), null], '5 1 0', ',  Param is invalid streamIndex', true],
  ]) {
    const { answer, lines } = call(log, 'startFileRecording', ...args);
    assert.strictEqual(answer, -1);
    assert.strictEqual(lines[1], `startFileRecording(#)  ${types} `);
    assert.strictEqual(lines[2], `startFileRecording(#)${named}`);
    const rest = lines.slice(3, -1).sort();
    assert.deepStrictEqual(rest, (absent ? [...missing, ...mistyped] : mistyped).sort());
    assert.strictEqual(lines.at(-1), '-startFileRecording(#), ret: -1');
  }
  const idle = textsOf(log, () => assert.strictEqual(new sdk.xoRTCVideo().startFileRecording(1), -1));
  assert.deepStrictEqual(idle, [
    '+startFileRecording(#)',
    'startFileRecording(#), pRtcVideo is nullptr',
    '-startFileRecording(#), ret: -1',
  ]);
  assert.strictEqual(engine.countCalls('startFileRecording'), 0);
});

engineTest('observers of faces, snapshots and scores are the engine object\'s own, and hear', async (video, log) => {
  video.enableFaceDetection(40, '/tmp/model');
  const task = video.takeLocalSnapshot(0);
  const remoteTask = video.takeRemoteSnapshot({ room_id: 'r', user_id: 'u', stream_index: 0 });
  assert.ok(task > 0 && remoteTask > task, `${task}, ${remoteTask}`);
  assert.deepStrictEqual(engine.attached('ISnapshotResultCallback'), [String(task), String(remoteTask)]);
  assert.deepStrictEqual(engine.attached('IFaceDetectionObserver'), ['']);
  video.initSingScoring('schlüssel', 'marke');
  assert.deepStrictEqual(engine.attached('ISingScoringEventHandler'), ['']);
  const picture = { task_id: task, stream_index: 0, image: { pixelFormat: 6 }, error_code: 0 };
  engine.fire('onTakeLocalSnapshotResult', picture, { target: task });
  const event = await log.waitFor('onTakeLocalSnapshotResult');
  assert.strictEqual(event.Object.task_id, task);
  video.disableFaceDetection();
  assert.deepStrictEqual(engine.attached('IFaceDetectionObserver'), []);
});

engineTest('lists of proxies: empty ones reach the engine, a text that is none refuses all', (video, log) => {
  assert.strictEqual(video.setLocalProxy([]), 0);
  assert.strictEqual(engine.lastArgs('setLocalProxy').count, 0);
  assert.strictEqual(video.startCloudProxy([]), 0);
  assert.strictEqual(engine.lastArgs('startCloudProxy').count, 0);
  engine.clear();
  const proxy = {
    local_proxy_ip: '10.0.0.1',
    local_proxy_username: '',
    local_proxy_password: '',
    local_proxy_type: 1,
    local_proxy_port: 80,
  };
  for (const key of ['local_proxy_ip', 'local_proxy_username', 'local_proxy_password']) {
    for (const element of [{ ...proxy, [key]: 5 }, { ...proxy, [key]: undefined }]) {
      const { answer, lines } = call(log, 'setLocalProxy', [proxy, element]);
      assert.strictEqual(answer, -1);
      assert.deepStrictEqual(lines.slice(-2), [
        'setLocalProxy(#), Param is invalid, configurations',
        '-setLocalProxy(#), ret: -1',
      ]);
      assert.strictEqual(lines.length, 4);
    }
  }
  assert.strictEqual(engine.countCalls('setLocalProxy'), 0);
});

engineTest('an argument without a test is converted all the same', (video) => {
  assert.throws(() => video.startAudioPlaybackDeviceTest('/tmp/a.wav'), { message: 'A number was expected' });
  assert.deepStrictEqual(engine.lastArgs('startAudioPlaybackDeviceTest'), {
    test_audio_file_path: '/tmp/a.wav',
    indication_interval: 0,
  });
});

test('a second engine object takes over from the first', (t) => {
  const first = createEngine();
  const second = createEngine();
  t.after(() => second.destroy());
  t.after(() => first.destroy());
  assert.strictEqual(first.video.setPlaybackVolume(1), 0);
  assert.strictEqual(second.video.setPlaybackVolume(2), 0);
  assert.deepStrictEqual(
    engine.calls('setPlaybackVolume').slice(-2).map(({ args }) => args.volume),
    [1, 2],
  );
  assert.strictEqual(second.video.destroyRTCVideo(), 0);
  // The library ends every engine at once.
  assert.strictEqual(first.video.setPlaybackVolume(3), -1);
  assert.strictEqual(sdk.getSDKVersion(), '0.0.0-scripted');
});
