'use strict';
// What the sender of the demo's call does besides talking: a sound effect into the call, a screen where there is one, and
// a recording of what it sends.

const fs = require('node:fs');
const sdk = require('..');
const { describe } = require('./call_member');

const monitor = 2;
const forOthers = 1;
const effectId = 1;
const pictures = 2;
const soundAndPictures = 2;
const mp4 = 1;
const effectPlays = 3;
const effectFinished = 6;
const recordingRuns = 1;
const patience = 5000;

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Resolves with what `take` was given first, or with `otherwise` when nothing came in time. */
function awaitOne(otherwise, milliseconds) {
  let take;
  const taken = new Promise((resolve) => {
    take = resolve;
  });
  return { take, result: Promise.race([taken, sleep(milliseconds).then(() => otherwise)]) };
}

class CallExtras {
  #member;
  #player;
  #sharing = false;
  #recordingSince = 0;
  #onRecordingEnd = () => {};

  constructor(member) {
    this.#member = member;
  }

  /** Takes an event of the engine. */
  onRecordingState({ state, error_code, info: { file_path } }) {
    if (state === recordingRuns) this.#recordingSince = performance.now();
    else this.#onRecordingEnd({ file: file_path, problem: error_code === 0 ? undefined : `error ${error_code}` });
  }

  /** Does all of it and resolves to what became of each: null for what was not asked for, `problem` for what failed. */
  async perform({ effect, record }) {
    const screen = this.#shareScreen();
    const [played, recorded] = await Promise.all([this.#playEffect(effect), this.#record(record)]);
    return { screen, effect: played, recording: recorded };
  }

  end() {
    if (this.#sharing) this.#member.video.stopScreenVideoCapture();
    this.#player?.stopAll();
  }

  #shareScreen() {
    const { video, room } = this.#member;
    const source = video.getScreenCaptureSourceList().find(({ type }) => type === monitor);
    if (!source) return null;
    const { source_id, source_name: name, region_rect: { width, height } } = source;
    const started = video.startScreenVideoCapture(source, {
      region_rect: { x: 0, y: 0, width: 0, height: 0 }, capture_mouse_cursor: 0, filter_config: [],
      highlight_config: { enable_highlight: false, border_color: 0, border_width: 0 },
    });
    if (started !== 0) return { name, problem: describe(started) };
    this.#sharing = true;
    const published = room.publishScreen(pictures);
    return published === 0 ? { name, source_id, width, height } : { name, problem: describe(published) };
  }

  async #playEffect(file) {
    if (!file) return null;
    const { take, result } = awaitOne({ file, problem: 'it did not end' }, patience);
    let length = 0;
    this.#player = new sdk.xoRTCAudioEffectPlayer(({ Type, Object: { state, error } }) => {
      if (Type !== 'onAudioEffectPlayerStateChanged') return;
      if (error !== 0) take({ file, problem: `error ${error}` });
      else if (state === effectFinished) take({ file, seconds: length / 1000 });
      else if (state === effectPlays) length = this.#player.getDuration(effectId);
    });
    this.#player.setEventHandler();
    const config = { type: forOthers, play_count: 1, pitch: 0, start_pos: 0 };
    const started = this.#player.start(effectId, file, config);
    return started === 0 ? result : { file, problem: describe(started) };
  }

  /** Of what is sent: the camera's pictures, the microphone and the effect. */
  async #record({ folder, seconds }) {
    const { video } = this.#member;
    const { take, result: ended } = awaitOne({ problem: 'it was not closed' }, seconds * 1000 + patience);
    this.#onRecordingEnd = take;
    const started = video.startFileRecording(0, { dir_path: folder, file_type: mp4 }, soundAndPictures);
    if (started !== 0) return { problem: describe(started) };
    await Promise.race([sleep(seconds * 1000), ended]);
    const length = (performance.now() - this.#recordingSince) / 1000;
    video.stopFileRecording(0);
    const { file, problem } = await ended;
    return problem ? { file, problem } : { file, seconds: length, bytes: fs.statSync(file).size };
  }
}

module.exports = { CallExtras };
