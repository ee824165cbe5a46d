'use strict';
// Plug-ins: loading and unloading, wrong libraries, the picture's and the sound's way through them.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const { test, describe } = require('node:test');

const { engine, createEngine, pixels, temporaryFolder } = require('./support');
const { runScript, support } = require('./support/child');
const { builtPlugin, placePlugin, processPicture, processUntil, processSound } = require('./support/plugins');

const format = { sample_rate: 48000, channel: 2, samples_per_call: 480 };
const onWindows = process.platform === 'win32';

/** A created engine; `texts()` are its lines without source lines' numbers. */
function start() {
  engine.reset();
  const made = createEngine();
  return { ...made, texts: () => made.log().map((line) => line.replace(/\(\d+\)/, '()')) };
}

/** An engine with a plug-in that has processed its first picture and sends its pictures on. */
function startWithPlugin(...parameters) {
  const made = start();
  const plugin = placePlugin();
  assert.strictEqual(made.video.registerPlugin(plugin.file), 0);
  for (const parameter of parameters) assert.strictEqual(made.video.setPluginParameter(parameter), 0);
  assert.strictEqual(made.video.enableVideoPlugin(true), 0);
  const done = 'done 64 48 64 32 32 0 0 1';
  for (let tries = 0; tries < 50 && !parameters.includes('quiet 1') && !plugin.journal().includes(done); ++tries) {
    processPicture();
  }
  return { ...made, plugin };
}

const masked = (planes, mask = 0xff) => planes.map((plane) => plane.map((byte) => byte ^ mask));
const plain = (frame) => ({ dropped: false, same: true, planes: pixels.planes(frame) });
const processed = (frame, mask) => ({ dropped: false, same: true, planes: masked(pixels.planes(frame), mask) });

describe('methods', () => {
  const calls = [
    ['registerPlugin', ['path'], [[], [5], [{}], [{ path: 5 }]]],
    ['unregisterPlugin', [], []],
    ['enableVideoPlugin', [true], [[], [1]]],
    ['enableAudioPlugin', [true, 0, format], [[1, 0, format], [true, '0', format], [true, 0], [false, 0, 'format']]],
    ['setPluginParameter', ['text'], [[], [{}]]],
  ];

  test('without an engine and with wrong arguments', () => {
    const { video, texts, destroy } = start();
    for (const [method, , wrong] of calls) {
      for (const args of wrong) {
        const before = texts().length;
        assert.strictEqual(video[method](...args), -1);
        assert.deepStrictEqual(texts().slice(before).filter((line) => line.includes(method)),
          [`${method}()`, `${method}(), param invalid`, `-${method}(), ret: -1`]);
      }
    }
    assert.strictEqual(engine.countCalls('registerVideoProcessor') + engine.countCalls('enableAudioProcessor'), 0);
    destroy();
    const none = createEngine({ create: false });
    for (const [method, args] of calls) assert.strictEqual(none.video[method](...args), -1);
  });

  test('a plug-in comes and goes', () => {
    const { video, texts, destroy } = start();
    const plugin = placePlugin();
    const other = placePlugin();
    for (const [method, line] of [
      ['enableVideoPlugin', 'PluginManager::enableVideoPlugin(), enableVideoPlugin failed. instance is null'],
      ['setPluginParameter', 'PluginManager::setParameter() '],
    ]) {
      assert.strictEqual(video[method](method === 'enableVideoPlugin' ? true : 'mask 1'), -1);
      assert.ok(texts().includes(line), line);
    }
    assert.strictEqual(video.unregisterPlugin(), -1);

    assert.strictEqual(video.registerPlugin({ path: plugin.file }), 0);
    assert.strictEqual(video.registerPlugin(other.file), -1);
    assert.strictEqual(video.setPluginParameter('mask 1'), 0);
    assert.strictEqual(video.setPluginParameter('what'), -1);
    assert.strictEqual(video.enableVideoPlugin(true), 0);
    assert.deepStrictEqual(engine.lastArgs('registerVideoProcessor'),
      { processor: true, config: { required_pixel_format: 1 } });
    assert.deepStrictEqual(engine.lastArgs('registerAudioFrameProcessor'), { processor: true });
    assert.strictEqual(video.unregisterPlugin(), 0);
    assert.strictEqual(engine.lastArgs('registerVideoProcessor').processor, null);
    assert.strictEqual(engine.lastArgs('registerAudioFrameProcessor').processor, null);

    assert.deepStrictEqual(plugin.journal(),
      [`init ${plugin.folder}`, 'parameter mask 1', 'parameter what', 'release']);
    assert.deepStrictEqual(other.journal(), []);
    const ofManager = texts().filter((line) => line.startsWith('PluginManager::')).slice(3);
    assert.deepStrictEqual(ofManager, [
      `PluginManager::registerPlugin(), pluginFolderPath:${plugin.folder}`,
      'PluginManager::createConsumerThread().',
      'PluginManager::registerPlugin(), plugin has exist.',
      'PluginManager::setParameter() ',
      'PluginManager::setParameter() ',
      'PluginManager::enableVideoPlugin() enable:1.',
      'PluginManager::releaseConsumerThread() start.',
      'PluginManager::releaseConsumerThread() end.',
      'PluginManager::unregisterPlugin() start.',
      'PluginManager::unregisterPlugin() end.',
    ]);
    for (const line of ['registerPlugin()', `registerPlugin(), ${plugin.file}`, 'enableVideoPlugin(), 1',
      'setPluginParameter(), mask 1']) {
      assert.ok(texts().includes(line), line);
    }
    assert.strictEqual(video.registerPlugin(other.file), 0);
    destroy();
    assert.deepStrictEqual(other.journal(), [`init ${other.folder}`, 'release']);
  });

  test('enableAudioPlugin switches the engine\'s processors, plug-in or not', () => {
    const { video, texts, destroy } = start();
    engine.answer('enableAudioProcessor', -7);
    assert.strictEqual(video.enableAudioPlugin(true, 3, format), -7);
    assert.deepStrictEqual(engine.lastArgs('enableAudioProcessor'), { method: 3, format });
    assert.ok(texts().includes('function:enableAudioPlugin line:(), enable:1, method:3, format.sample_rate:48000, ' +
      'format.channel:2, format.per_call:480'));
    assert.strictEqual(video.enableAudioPlugin(false, 1, format), 0);
    assert.deepStrictEqual(engine.lastArgs('disableAudioProcessor'), { method: 1 });
    destroy();
  });

  test('a path that does more than be read', () => {
    const { video, destroy } = start();
    const [inner, outer] = [placePlugin(), placePlugin()];
    const registering = {
      get path() {
        assert.strictEqual(video.registerPlugin(inner.file), 0);
        assert.strictEqual(video.destroyRTCVideo(), -1);
        return outer.file;
      },
    };
    assert.strictEqual(video.registerPlugin(registering), -1);
    assert.deepStrictEqual(outer.journal(), []);
    assert.strictEqual(video.unregisterPlugin(), 0);
    const thrower = { get path() { throw new Error('no path'); } };
    assert.throws(() => video.registerPlugin(thrower), /no path/);
    assert.strictEqual(video.unregisterPlugin(), -1);
    destroy();
  });

  test('a path without a folder', () => {
    // The system looks for such libraries in folders of its own: the current one on Windows, on Linux one that a
    // variable names.
    const plugin = placePlugin();
    if (!onWindows) process.env.LD_LIBRARY_PATH = path.dirname(plugin.file);
    try {
      const output = runScript(`
        const { createEngine } = require(${support});
        const { video, log } = createEngine();
        process.chdir(${JSON.stringify(path.dirname(plugin.file))});
        console.log('result', video.registerPlugin('copy.plugin'));
        console.log('folder', log().filter((line) => line.includes('pluginFolderPath')));
        process.exit();`);
      assert.ok(output.includes('result 0'), output.join('\n'));
      assert.ok(output.some((line) => /^folder .*pluginFolderPath:'/.test(line)), output.join('\n'));
    } finally {
      delete process.env.LD_LIBRARY_PATH;
    }
    assert.deepStrictEqual(plugin.journal('init'), ['init ']);
  });
});

describe('libraries that are no plug-ins', () => {
  const written = (bytes) => {
    const file = path.join(temporaryFolder(), 'wrong.plugin');
    fs.writeFileSync(file, bytes);
    return file;
  };
  /** The plug-in, for another processor: Arm's 64-bit one on Linux, a 32-bit one on Windows. */
  const otherProcessor = () => {
    const bytes = fs.readFileSync(builtPlugin('test_plugin'));
    if (onWindows) bytes.writeUInt16LE(0x14c, bytes.readUInt32LE(0x3c) + 4);
    else bytes.writeUInt16LE(183, 18);
    return bytes;
  };
  const notLoaded = (code) => (onWindows
    ? new RegExp(`, not load plugin , error: Win32 LoadLibraryEx error:${code}\\.$`)
    : /, not load plugin , error: (dlopen error:.+|file too short)\.$/);
  const cases = {
    'an empty path': [() => '', /, parameter is empty, registerPlugin failed\.$/, 'I'],
    'no file': [() => path.join(temporaryFolder(), 'none.plugin'), notLoaded(126), 'E'],
    'a folder': [() => temporaryFolder() + path.sep, notLoaded('\\d+'), 'E'],
    'a text': [() => written('no library at all'), notLoaded('\\d+'), 'E'],
    'half a library': [() => written(fs.readFileSync(builtPlugin('test_plugin')).subarray(0, 3000)), notLoaded('\\d+'), 'E'],
    'another processor': [() => written(otherProcessor()), notLoaded('\\d+'), 'E'],
    'a path of a megabyte': [() => `${'x'.repeat(1 << 20)}.plugin`, /, not load plugin , error:/, 'E'],
    'no factory': [() => builtPlugin('no_plugin'), /, getProcAddress "createVideoPlugin" failed\.$/, 'I'],
    'no instance': [() => builtPlugin('null_plugin'), /, not create plugin .*null_plugin\.plugin instance\.$/, 'I'],
    'a refusing init': [() => builtPlugin('refusing_plugin'), /, plugin init failed\.$/, 'I'],
  };

  test('each is told from the others, and a right one loads after it', () => {
    const { video, entries, destroy } = start();
    const plugin = placePlugin();
    for (const [what, [pathOf, line, level]] of Object.entries(cases)) {
      const before = entries().length;
      assert.strictEqual(video.registerPlugin(pathOf()), -1, what);
      const said = entries().slice(before).filter(({ text }) => text.startsWith('PluginManager::registerPlugin('));
      assert.match(said.at(-1).text, line, what);
      assert.strictEqual(said.at(-1).level, level, what);
      assert.strictEqual(video.enableVideoPlugin(true), -1, what);
      assert.strictEqual(video.registerPlugin(plugin.file), 0, what);
      assert.strictEqual(video.unregisterPlugin(), 0, what);
    }
    destroy();
  });

  test('an engine without hooks keeps no plug-in; one of two hooks is enough', () => {
    const { video, texts, destroy } = start();
    const plugin = placePlugin();
    engine.answer('registerVideoProcessor', -1001);
    assert.strictEqual(video.registerPlugin(plugin.file), 0);
    assert.ok(texts().includes(
      'PluginManager::registerPlugin(), registerVideoProcessor: -1001, registerAudioFrameProcessor: 0'));
    assert.strictEqual(video.unregisterPlugin(), 0);
    engine.answer('registerAudioFrameProcessor', -1001);
    assert.strictEqual(video.registerPlugin(plugin.file), -1);
    assert.strictEqual(video.unregisterPlugin(), -1);
    assert.strictEqual(plugin.journal('release').length, 2);
    engine.reset();
    destroy();
  });
});

describe('pictures', () => {
  const picture = { width: 7, height: 5, seed: 3, rotation: 90, timestampUs: 2 ** 40, strides: [16, 9, 8], gaps: [3, 5, 0] };

  test('the first one is not sent, the others are as the plug-in leaves them', () => {
    const { video, plugin, destroy } = startWithPlugin();
    processUntil(picture, processed(picture));
    const even = { width: 64, height: 48, seed: 4 };
    processUntil(even, processed(even));
    const record = `7 5 7 4 4 90 ${2 ** 40} 1`;
    assert.deepStrictEqual([plugin.journal(`done ${record}`).length > 0, plugin.journal('video').at(-1)],
      [true, 'video 64 48 64 32 32 0 0 1']);
    assert.strictEqual(video.enableVideoPlugin(false), 0);
    assert.deepStrictEqual(processPicture(picture), plain(picture));
    assert.strictEqual(video.enableVideoPlugin(true), 0);
    processUntil(picture, processed(picture));
    assert.strictEqual(video.unregisterPlugin(), 0);

    // A new plug-in starts anew: not enabled, and its first picture is its first.
    assert.strictEqual(video.registerPlugin(plugin.file), 0);
    assert.deepStrictEqual(processPicture(picture), plain(picture));
    video.enableVideoPlugin(true);
    // Dropped, or as it was when the plug-in took too long.
    assert.notDeepStrictEqual(processPicture(picture), processed(picture));
    processUntil(picture, processed(picture));
    destroy();
  });

  test('what cannot be copied passes as it is', () => {
    const { plugin, destroy } = startWithPlugin();
    const seen = plugin.journal('video').length;
    for (const frame of [{ pixelFormat: 5 }, { pixelFormat: 6 }]) {
      assert.deepStrictEqual(processPicture(frame), plain(frame));
    }
    for (const frame of [{ strides: [8, 32, 32] }, { strides: [64, 0, 32] }, { strides: [64, 32, -32] }, { frameType: 1 },
      { nullPlanes: [1] }, { width: 0 }, { height: -5, nullPlanes: [0, 1, 2] }]) {
      assert.strictEqual(processPicture(frame).same, true);
    }
    assert.strictEqual(plugin.journal('video').length, seen);
    destroy();
  });

  test('a plug-in that scribbles over its record', () => {
    const { video, destroy } = startWithPlugin('meddle 1');
    // The record is of another size then: its pixels are not taken.
    processUntil(picture, plain(picture));
    video.setPluginParameter('meddle 0');
    processUntil(picture, processed(picture));
    destroy();
  });

  test('a slow plug-in: pictures pass until its first, then late ones are dropped and told', async () => {
    const { video, waitFor, texts, destroy } = start();
    const plugin = placePlugin();
    video.registerPlugin(plugin.file);
    video.setPluginParameter('hold 1');
    video.enableVideoPlugin(true);
    const numbered = (timestampUs) => ({ timestampUs, seed: timestampUs });
    for (const number of [1, 2, 3]) {
      assert.deepStrictEqual(processPicture(numbered(number)), plain(numbered(number)));
      await waitFor(() => plugin.journal('video').length === 1);
    }
    const done = (number) => waitFor(() => plugin.journal('done').some((line) => line.split(' ')[7] === String(number)));
    plugin.go();
    await done(1);
    plugin.go();
    await done(3);
    assert.deepStrictEqual(plugin.journal('video').map((line) => line.split(' ')[7]), ['1', '3']);

    // The third picture came too late for itself: the next one goes out with its pixels, unless it is of another size.
    processUntil(numbered(4), processed(numbered(3)));
    plugin.go();
    await done(4);
    const small = { width: 8, height: 8, timestampUs: 5 };
    processUntil(small, plain(small));

    // The fifth is held, so nothing that follows is in time, and each takes the one before it out of the queue.
    for (let number = 0; number < 52; ++number) assert.strictEqual(processPicture(small).dropped, true);
    const [told] = texts().filter((line) => line.startsWith('PluginManager::indexLog() dropIndex:['));
    const indexes = /\[(.*)\]\.$/.exec(told)[1].split(',').map(Number);
    assert.strictEqual(indexes.length, 50);
    indexes.slice(1).forEach((index, i) => assert.ok(index > indexes[i] || index < 500, indexes));

    // Nobody waits for a picture that is held: the plug-in's end lets it go on.
    video.enableVideoPlugin(false);
    plugin.go();
    assert.strictEqual(video.unregisterPlugin(), 0);
    destroy();
  });

  test('every 50 pictures the times are told', () => {
    const { texts, destroy } = startWithPlugin('quiet 1');
    const lines = () => texts().filter((line) => line.startsWith('PluginManager::timeLog()'));
    for (let i = 0; i < 400 && lines().length < 2; ++i) processPicture();
    const told = lines();
    assert.strictEqual(told.length, 2);
    for (const line of told) {
      const [, times, average] = /^PluginManager::timeLog\(\) \[([\d,]+)\], average:(\d+)ms\.$/.exec(line);
      const numbers = times.split(',').map(Number);
      assert.strictEqual(numbers.length, 50);
      assert.strictEqual(Number(average), Math.trunc(numbers.reduce((sum, each) => sum + each) / 50));
    }
    destroy();
  });
});

describe('sound', () => {
  const sound = { samples: 5, channels: 2, sampleRate: 44100, timestampUs: -(2 ** 40), seed: 9 };
  const stream = { stream_info: { room_id: 'room', user_id: 'user', stream_index: 1 } };
  const hooks = {
    onProcessRecordAudioFrame: ['record', {}],
    onProcessPlayBackAudioFrame: ['playback', {}],
    onProcessRemoteUserAudioFrame: ['remote room user 1', stream],
    onProcessScreenAudioFrame: ['screen', {}],
  };

  test('each kind reaches its operation and is changed in place', () => {
    const { plugin, destroy } = startWithPlugin();
    for (const [hook, [kind, extra]] of Object.entries(hooks)) {
      assert.deepStrictEqual(processSound(hook, sound, extra),
        { result: 0, data: pixels.samples(sound).map((byte) => byte ^ 0xff) });
      assert.strictEqual(plugin.journal().at(-1), `${kind} ${-(2 ** 40)} 44100 2 20`);
      assert.strictEqual(processSound(hook, { ...sound, nullData: true }, extra).result, 0);
      assert.strictEqual(engine.fire(hook, { audio_frame: null, ...extra }).answers[0], 0);
    }
    destroy();
  });

  test('calls are told after a period and then each time; those of the microphone never', () => {
    const output = runScript(`
      const { createEngine, engine } = require(${support});
      const { placePlugin } = require(${support} + '/plugins');
      const { video, log } = createEngine();
      video.registerPlugin(placePlugin().file);
      video.setPluginParameter('quiet 1');
      const audio_frame = { samples: 1 };
      const told = (hook) => log().filter((line) => line.startsWith('PluginManager::' + hook + '(')).length;
      for (const [hook, period] of ${JSON.stringify([
        ['onProcessRecordAudioFrame', 500], ['onProcessPlayBackAudioFrame', 500],
        ['onProcessRemoteUserAudioFrame', 1000], ['onProcessScreenAudioFrame', 100],
      ])}) {
        const counts = [period - 1, 1, 1, 2].map((repeat) => {
          engine.fire(hook, { audio_frame }, { repeat });
          return told(hook);
        });
        console.log(hook, ...counts);
      }
      console.log(log().find((line) => line.startsWith('PluginManager::onProcessScreen')).replace(/\\(\\d+\\)/, '()'));
      process.exit();`);
    for (const line of [
      'onProcessRecordAudioFrame 0 0 0 0',
      'onProcessPlayBackAudioFrame 0 1 2 4',
      'onProcessRemoteUserAudioFrame 0 1 2 4',
      'onProcessScreenAudioFrame 0 1 2 4',
      'PluginManager::onProcessScreenAudioFrame(). sample_rate:48000,channel:2',
    ]) {
      assert.ok(output.includes(line), output.join('\n'));
    }
  });
});

describe('ends', () => {
  test('destroying the engine unloads the plug-in before it', () => {
    const { video, plugin, texts, destroy } = startWithPlugin();
    assert.strictEqual(destroy(), 0);
    assert.deepStrictEqual(plugin.journal().at(-1), 'release');
    const lines = texts();
    assert.ok(lines.indexOf('PluginManager::unregisterPlugin() end.') > lines.indexOf('destroyRTCVideo(), '));
    assert.ok(engine.calls().map(({ name }) => name).join(' ').includes('registerAudioFrameProcessor'));
    engine.reset();
    video.createRTCVideo('app-id', () => {}, '{}');
    assert.strictEqual(video.enableVideoPlugin(true), -1);
    video.destroyRTCVideo();
  });

  test('an engine that another object ends takes the plug-in with it', () => {
    const { video, plugin } = startWithPlugin();
    const other = createEngine();
    assert.strictEqual(other.destroy(), 0);
    assert.strictEqual(plugin.journal().at(-1), 'release');
    assert.strictEqual(video.unregisterPlugin(), -1);
  });

  test('the object is collected while its plug-in works', () => {
    const plugin = placePlugin();
    runScript(`
      const { engine, sdk } = require(${support});
      const { collectUntil } = require(${support} + '/garbage');
      const fs = require('node:fs');
      (() => {
        const video = new sdk.xoRTCVideo();
        video.createRTCVideo('app-id', () => {}, '{}');
        video.registerPlugin(${JSON.stringify(plugin.file)});
        video.enableVideoPlugin(true);
      })();
      engine.fire('processVideoFrame', { frame: {} }, { repeat: 20, wait: false });
      const journal = ${JSON.stringify(plugin.folder)} + 'journal.txt';
      collectUntil(() => fs.readFileSync(journal, 'utf8').endsWith('release\\n')).then(() => process.exit());`);
    assert.strictEqual(plugin.journal().at(-1), 'release');
  });

  test('plug-ins come and go while pictures and sound flow', () => {
    const { video, destroy } = start();
    const plugins = [placePlugin(), placePlugin()];
    video.registerPlugin(plugins[0].file);
    engine.record(false);
    for (let round = 0; round < 12; ++round) {
      engine.startStreams({ fps: 500, streams: [{ sink: 'processor', frame: { width: 320, height: 180 } }] });
      for (const [number, hook] of ['onProcessRecordAudioFrame', 'onProcessRemoteUserAudioFrame'].entries()) {
        engine.fire(hook, { audio_frame: { samples: 48 } }, { repeat: 500, wait: false, thread: 2 + number });
      }
      for (const parameter of ['quiet 1', 'mask 0', `wait ${round % 3}`]) video.setPluginParameter(parameter);
      video.enableVideoPlugin(true);
      const shown = performance.now();
      while (performance.now() < shown + 60) video.setPluginParameter('mask 0');
      if (round % 4 === 1) video.enableVideoPlugin(false);
      assert.strictEqual(video.unregisterPlugin(), 0);
      assert.strictEqual(video.registerPlugin(plugins[round % 2].file), 0);
      const [{ reordered }] = engine.stopStreams().streams;
      assert.strictEqual(reordered, 0);
      engine.settle();
    }
    engine.startStreams({ fps: 500, streams: [{ sink: 'processor' }] });
    engine.fire('onProcessRecordAudioFrame', { audio_frame: {} }, { repeat: 500, wait: false, thread: 2 });
    video.enableVideoPlugin(true);
    destroy();
    engine.record(true);
    assert.ok(plugins.every((plugin) => plugin.journal().at(-1) === 'release'));
  });
});
