'use strict';
// The sample plug-ins, as an application uses them.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');

const { engine, createEngine, folder, pixels, temporaryFolder } = require('./support');
const { processPicture, processUntil, processSound } = require('./support/plugins');

const sample = (name) => path.join(folder, '..', 'plugins', name + (process.platform === 'win32' ? '.dll' : '.so'));

function withPlugin(name, run) {
  engine.reset();
  const { video, destroy, waitFor } = createEngine();
  assert.strictEqual(video.registerPlugin(sample(name)), 0);
  const end = (result) => {
    destroy();
    return result;
  };
  const result = run(video, waitFor);
  return result instanceof Promise ? result.then(end) : end(result);
}

const mean = (bytes) => bytes.reduce((sum, byte) => sum + byte, 0) / bytes.length;
const deviation = (bytes) => {
  const middle = mean(bytes);
  return Math.sqrt(mean(bytes.map((byte) => (byte - middle) ** 2)));
};

test('the privacy blur takes the details and leaves the colours', () => withPlugin('privacy_blur', (video) => {
  const frame = { width: 321, height: 179, seed: 5 };
  const [luma, ...chroma] = pixels.planes(frame);
  video.enableVideoPlugin(true);
  const processed = () => {
    // A busy machine may drop some.
    for (let tries = 0; tries < 50; ++tries) {
      const { planes } = processPicture(frame);
      if (planes[0].compare(luma) !== 0) return planes;
    }
    return assert.fail('no picture was processed');
  };
  const planes = processed();
  planes.forEach((plane, i) => {
    assert.ok(Math.abs(mean([...plane]) - mean([...[luma, ...chroma][i]])) < 3);
    // The pattern is noise: what is left of it is nearly even.
    assert.ok(deviation([...plane]) < deviation([...luma]) / 4);
  });

  // A kept part is left to the byte, all round it is soft.
  assert.strictEqual(video.setPluginParameter('keep 50 0 50 100'), 0);
  let [kept] = processed();
  for (let tries = 0; kept.compare(planes[0]) === 0 && tries < 50; ++tries) [kept] = processed();
  for (let row = 0; row < frame.height; ++row) {
    const at = (column) => row * frame.width + column;
    assert.deepStrictEqual(kept.subarray(at(160), at(321)), luma.subarray(at(160), at(321)));
    assert.notDeepStrictEqual(kept.subarray(at(0), at(160)), luma.subarray(at(0), at(160)));
  }
  for (const [parameter, result] of [['strength 0', 0], ['keep nothing', 0], ['strength 101', -1], ['strength', -1],
    ['keep 0 0 101 5', -1], ['keep 0 0 5', -1], ['keep nan 0 5 5', -1], ['', -1]]) {
    assert.strictEqual(video.setPluginParameter(parameter), result, parameter);
  }
  processUntil(frame, { dropped: false, same: true, planes: [luma, ...chroma] });
  // The smallest pictures and the strongest blur.
  video.setPluginParameter('strength 100');
  for (const [width, height] of [[1, 1], [2, 200], [200, 3], [33, 31], [640, 360]]) {
    processPicture({ width, height });
  }
}));

test('the gain changes the microphone, and the meter tells how loud all is', () =>
  withPlugin('audio_gain', async (video, waitFor) => {
    const numbers = (bytes) => Array.from({ length: bytes.length / 2 }, (_, i) => bytes.readInt16LE(i * 2));
    const sound = { samples: 100, channels: 1, seed: 2 };
    const before = numbers(pixels.samples(sound));
    assert.deepStrictEqual(numbers(processSound('onProcessRecordAudioFrame', sound).data), before);
    assert.strictEqual(video.setPluginParameter('gain -20'), 0);
    const softer = numbers(processSound('onProcessRecordAudioFrame', sound).data);
    softer.forEach((sample, i) => assert.ok(Math.abs(sample - before[i] / 10) <= 0.51));
    assert.strictEqual(video.setPluginParameter('gain 30'), 0);
    const louder = numbers(processSound('onProcessRecordAudioFrame', sound).data);
    assert.deepStrictEqual([Math.max(...louder), Math.min(...louder)], [32767, -32768]);
    assert.deepStrictEqual(numbers(processSound('onProcessPlayBackAudioFrame', sound).data), before);
    for (const wrong of ['gain', 'gain 31', 'gain nan', 'meter /no/such/folder/levels', 'metre']) {
      assert.strictEqual(video.setPluginParameter(wrong), -1, wrong);
    }

    const file = path.join(temporaryFolder(), 'levels.json');
    const levels = () => {
      try {
        return JSON.parse(fs.readFileSync(file, 'utf8'));
      } catch {
        return {};  // Between one report and the next the file may be away.
      }
    };
    assert.strictEqual(video.setPluginParameter(`meter ${file}`), 0);
    assert.deepStrictEqual(levels(), { record: null, playback: null, screen: null });
    processSound('onProcessRecordAudioFrame', sound);
    const { record } = await waitFor(() => levels().record && levels());
    assert.strictEqual(record.peak_db, 0);
    assert.ok(record.rms_db <= 0 && record.rms_db > -3, record.rms_db);
    processSound('onProcessScreenAudioFrame', sound);
    processSound('onProcessPlayBackAudioFrame', sound);
    await waitFor(() => levels().playback?.rms_db < -2 || levels().screen?.rms_db < -2);
    assert.strictEqual(video.setPluginParameter('meter off'), 0);
  }));
