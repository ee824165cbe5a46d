'use strict';
// Sound between processes: it is played with the volumes and from the places that were asked for, measured, handed out.

const assert = require('node:assert');
const { test } = require('node:test');

const { setUpParticipants } = require('./support/participant.js');

const kPlayback = 1;
const kRemoteUser = 3;
const tenths = { sample_rate: 48000, channel: 2, samples_per_call: 4800 };
const { participant } = setUpParticipants();
const [ann, bob, listener] = ['ann', 'bob', 'listener'].map((name) => participant(name));
const user = (user_id) => ({ room_id: 'hall', user_id, stream_index: 0 });
/** Amplitude of so many dB. */
const amplitude = (decibels) => 10 ** (decibels / 20);
const both = (value) => [value, value];

test('what a user says is played with all volumes, and handed out without', async () => {
  assert.strictEqual(await listener.call('video', 'setAudioPlaybackDevice', 'null:'), 0);
  assert.strictEqual(await listener.call('video', 'enableAudioFrameCallback', kPlayback, tenths), 0);
  await listener.join('hall');
  await ann.join('hall');
  await ann.speak('hall', 'test:sine?frequency=470&level=-10');
  await listener.sound('onPlaybackAudioFrame', both(amplitude(-10)));
  const key = { room_id: 'hall', stream_index: 0, user_id: 'ann' };
  assert.deepStrictEqual((await listener.waitFor('onFirstRemoteAudioFrame')), key);

  for (const [target, method, args, factor] of [
    ['video', 'setPlaybackVolume', [50], 0.5],
    ['video', 'setRemoteAudioPlaybackVolume', [user('ann'), 50], 0.25],
    ['hall', 'setRemoteRoomAudioPlaybackVolume', [40], 0.1],
    ['video', 'setPlaybackVolume', [200], 0.4],
    ['video', 'setRemoteAudioPlaybackVolume', [user('ann'), 0], 0],
    ['video', 'setRemoteAudioPlaybackVolume', [user('ann'), 100], 0.8],
    ['hall', 'setRemoteRoomAudioPlaybackVolume', [100], 2],
    ['video', 'setPlaybackVolume', [100], 1],
  ]) {
    assert.strictEqual(await listener.call(target, method, ...args), 0);
    await listener.sound('onPlaybackAudioFrame', both(amplitude(-10) * factor));
  }

  await listener.call('video', 'setPlaybackVolume', 30);
  const narrow = { sample_rate: 16000, channel: 1, samples_per_call: 320 };
  assert.strictEqual(await listener.call('video', 'enableAudioFrameCallback', kRemoteUser, narrow), 0);
  const { stream_info, audio_frame } = await listener.sound('onRemoteUserAudioFrame', both(amplitude(-10)));
  assert.deepStrictEqual(stream_info, user('ann'));
  assert.deepStrictEqual([audio_frame.sample_rate, audio_frame.channels, audio_frame.samples], [16000, 1, 320]);
  assert.strictEqual(await listener.call('video', 'disableAudioFrameCallback', kRemoteUser), 0);
  await listener.call('video', 'setPlaybackVolume', 100);
});

test('levels of all users are reported, and who is the loudest', async () => {
  await bob.join('hall');
  await bob.speak('hall', 'test:sine?frequency=750&level=-20');
  const modes = { local_main_report_mode: 0, audio_report_mode: 0, smooth: 1 };
  const parts = { enable_spectrum: true, enable_vad: false, enable_voice_pitch: false };
  await listener.call('video', 'enableAudioPropertiesReport', { interval: 100, ...modes, ...parts });
  const near = (value, wanted) => Math.abs(value - wanted) <= 1;
  const report = await listener.waitFor('onRemoteAudioPropertiesReport', ({ audio_properties_infos: infos }) => {
    const of = (name) => infos.find(({ stream_key }) => stream_key.user_id === name)?.audio_properties_info.nonlinear_volume;
    return infos.length === 2 && near(of('ann'), -10) && near(of('bob'), -20);
  });
  const spectrumOf = (name) =>
    report.audio_properties_infos.find(({ stream_key }) => stream_key.user_id === name).audio_properties_info.spectrum;
  const peak = (spectrum) => spectrum.indexOf(Math.max(...spectrum));
  // 93.75 Hz a value.
  assert.deepStrictEqual([peak(spectrumOf('ann')), peak(spectrumOf('bob'))], [5, 8]);
  assert.ok(near(report.total_remote_volume / 255, amplitude(-10) * Math.sqrt(1.1)), `${report.total_remote_volume}`);
  await listener.waitFor('onActiveSpeaker', (speaker) => speaker.room_id === 'hall' && speaker.uid === 'ann');
  const from = listener.events.length;
  await ann.call('video', 'muteAudioCapture', 0, true);
  assert.deepStrictEqual(await listener.waitFor('onActiveSpeaker', () => true, from), { room_id: 'hall', uid: 'bob' });
  await ann.call('video', 'muteAudioCapture', 0, false);

  // Who hears one at a time hears the louder one, until the other has priority.
  const picky = participant('picky', { heard_users: 1 });
  await picky.call('video', 'setAudioPlaybackDevice', 'null:');
  await picky.call('video', 'enableAudioFrameCallback', kPlayback, tenths);
  await picky.join('hall');
  await picky.sound('onPlaybackAudioFrame', both(amplitude(-10)));
  assert.strictEqual(await bob.call('hall', 'setAudioSelectionConfig', 2), -2);
  assert.strictEqual(await bob.call('hall', 'setAudioSelectionConfig', 1), 0);
  await picky.sound('onPlaybackAudioFrame', both(amplitude(-20)));
  assert.strictEqual(await bob.call('hall', 'setAudioSelectionConfig', 0), 0);
  await picky.sound('onPlaybackAudioFrame', both(amplitude(-10)));
  await picky.end();
  await bob.call('video', 'stopAudioCapture');
  await listener.call('video', 'enableAudioPropertiesReport', { interval: 0, ...modes, ...parts });
});

test('users are heard from where they are', async () => {
  const level = amplitude(-10);
  const east = { forward: { x: 0, y: 1, z: 0 }, right: { x: 1, y: 0, z: 0 }, up: { x: 0, y: 0, z: 1 } };
  const spot = (x, y) => ({ position: { x, y, z: 0 }, orientation: east });
  assert.strictEqual(await listener.call('hall', 'enableRangeAudio', true), 0);
  assert.strictEqual(await listener.call('hall', 'updateReceiveRange', { min: 0, max: 10 }), 0);
  assert.strictEqual(await ann.call('hall', 'updateRangePosition', { x: 5, y: 0, z: 0 }), 0);
  await listener.sound('onPlaybackAudioFrame', both(level * 0.5));
  // The last of many steps arrives, however fast they come.
  for (let x = 11; x <= 40; x++) await ann.call('hall', 'updateRangePosition', { x, y: 0, z: 0 });
  await listener.sound('onPlaybackAudioFrame', both(0));
  assert.strictEqual(await listener.call('hall', 'setNoAttenuationFlags', ['team']), 0);
  assert.strictEqual(await ann.call('hall', 'setNoAttenuationFlags', ['team']), 0);
  await listener.sound('onPlaybackAudioFrame', both(level));

  assert.strictEqual(await listener.call('hall', 'enableSpatialAudio', true), 0);
  assert.strictEqual(await listener.call('hall', 'updateSelfOrientation', east), 0);
  await listener.sound('onPlaybackAudioFrame', [level * 0.2, level]);
  assert.strictEqual(await listener.call('hall', 'updateRemotePosition', 'ann', spot(-3, 0)), 0);
  await listener.sound('onPlaybackAudioFrame', [level * 0.75, level * 0.15]);
  assert.strictEqual(await listener.call('hall', 'removeRemotePosition', 'ann'), 0);
  // Who comes later knows the place, too.
  await bob.call('video', 'setAudioPlaybackDevice', 'null:');
  await bob.call('hall', 'leaveRoom');
  await bob.call('video', 'enableAudioFrameCallback', kPlayback, tenths);
  await bob.call('hall', 'enableRangeAudio', true);
  await bob.call('hall', 'updateReceiveRange', { min: 0, max: 80 });
  await bob.join('hall');
  await bob.sound('onPlaybackAudioFrame', both(level * 0.5));
  assert.strictEqual(await listener.call('hall', 'updateReceiveRange', { min: 5, max: 5 }), -2);
});
