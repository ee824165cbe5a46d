'use strict';
// What applications see of players: an effect's states, a media player's states and progress, mixing's events.

const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');

const sdk = require('../..');
const { endProcessAfterTests } = require('../module/support/process_end.js');
const { writeWave } = require('./support/waves.js');

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-test-'));
const wave = path.join(folder, 'sound.wav');
writeWave(wave, 300, () => 1000);

endProcessAfterTests(() => fs.rmSync(folder, { recursive: true, force: true }));

/** Keeps events and lets them be waited for: { callback, next(type, condition) }. */
function collect() {
  const events = [];
  let changed = () => {};
  return {
    callback: (event) => {
      events.push(event);
      changed();
    },
    async next(type, fits = () => true) {
      for (;;) {
        const at = events.findIndex((event) => event.Type === type && fits(event.Object));
        if (at >= 0) return events.splice(0, at + 1).at(-1).Object;
        await new Promise((resolve) => (changed = resolve));
      }
    },
  };
}

test('effects, media players and mixing play and say so', async () => {
  const engine = collect();
  const video = new sdk.xoRTCVideo();
  assert.strictEqual(video.createRTCVideo('app-id', engine.callback, '{}'), 0);
  video.setAudioPlaybackDevice('null:');

  const effects = collect();
  const player = new sdk.xoRTCAudioEffectPlayer(effects.callback);
  player.setEventHandler();
  assert.strictEqual(player.start(7, wave, { type: 0, play_count: 1, pitch: 2, start_pos: 0 }), 0);
  const state = 'onAudioEffectPlayerStateChanged';
  assert.deepStrictEqual(await effects.next(state), { effect_id: 7, state: 3, error: 0 });
  assert.deepStrictEqual(await effects.next(state), { effect_id: 7, state: 6, error: 0 });
  player.start(8, path.join(folder, 'none.wav'), { type: 0, play_count: 1, pitch: 0, start_pos: 0 });
  assert.deepStrictEqual(await effects.next(state), { effect_id: 8, state: 7, error: 2 });

  const media = collect();
  const mediaPlayer = new sdk.xoRTCMediaPlayer(3, media.callback);
  mediaPlayer.setEventHandler();
  const config = { type: 2, play_count: 2, start_pos: 0, callback_on_progress_interval: '100' };
  assert.strictEqual(mediaPlayer.open(wave, { ...config, sync_progress_to_record_frame: false, auto_play: true }), 0);
  assert.deepStrictEqual(await media.next('onMediaPlayerStateChanged'), { player_id: 3, state: 2, error: 0 });
  assert.deepStrictEqual(await media.next('onMediaPlayerPlayingProgress'), { player_id: 3, progress: '100' });
  assert.deepStrictEqual(await media.next('onMediaPlayerStateChanged', ({ state: s }) => s === 6), { player_id: 3, state: 6, error: 0 });

  const mixing = { type: 0, play_count: 1, position: 0, callback_on_progress_interval: 100, sync_progress_to_record_frame: false };
  assert.strictEqual(video.startAudioMixing(4, wave, mixing), 0);
  assert.deepStrictEqual(await engine.next('onAudioMixingStateChanged'), { mix_id: 4, state: 1, error: 0 });
  assert.deepStrictEqual(await engine.next('onAudioMixingPlayingProgress'), { mix_id: 4, progress: 100 });
  assert.deepStrictEqual(await engine.next('onAudioMixingStateChanged'), { mix_id: 4, state: 5, error: 0 });

  // An engine may end while its players play.
  mediaPlayer.start();
  assert.strictEqual(video.destroyRTCVideo(), 0);
  assert.strictEqual(mediaPlayer.start(), -1);
});
