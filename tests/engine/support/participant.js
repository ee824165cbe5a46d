'use strict';
// A process that takes part in rooms: it does what its parent says, tells every event, and looks at the frames it gets.
// Parent's side: `Participant` below. Child's side: the bottom of this file.

const { fork } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { after } = require('node:test');

const kTimeoutMs = 30_000;
const kRoom = {
  room_profile_type: 0,
  is_auto_publish: false,
  remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 },
};

/** A folder for the private service and the engines' logs of one test file. */
function makeWorkplace() {
  return fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-rooms-'));
}

class Participant {
  events = [];
  #child;
  #waiting = new Set();
  #answers = new Map();
  #lastCall = 0;
  #ended;
  #killed = false;

  /** `workplace`: participants of one workplace share a private service. `parameters`: those of createRTCVideo(). */
  constructor(name, workplace, parameters = {}, environment = {}) {
    this.name = name;
    const env = { ...process.env, XDG_RUNTIME_DIR: workplace, ...environment };
    this.#child = fork(__filename, [name, workplace, JSON.stringify(parameters)], { env, serialization: 'advanced' });
    this.#ended = new Promise((resolve) => this.#child.once('exit', (code, signal) => resolve(signal ?? code)));
    this.#child.on('message', (message) => this.#onMessage(message));
  }

  #onMessage({ call, result, event }) {
    if (event === undefined) {
      this.#answers.get(call)(result);
      this.#answers.delete(call);
      return;
    }
    this.events.push(event);
    for (const look of this.#waiting) look();
  }

  /** The result of a method of the engine ("video"), of a room by its id, or of the functions in `actions`. */
  call(target, method, ...args) {
    const call = ++this.#lastCall;
    this.#child.send({ call, target, method, args });
    return new Promise((resolve) => this.#answers.set(call, resolve));
  }

  /** Payloads of events of a type that fit, in the order in which they came. */
  of(type, fits = () => true) {
    return this.events.filter((event) => event.Type === type && fits(event.Object)).map((event) => event.Object);
  }

  /** The first payload of a type that fits, however long ago it came, or since `events` had the length `from`. */
  waitFor(type, fits = () => true, from = 0) {
    return new Promise((resolve, reject) => {
      const look = () => {
        const found = this.events.slice(from).find((event) => event.Type === type && fits(event.Object))?.Object;
        if (found === undefined) return;
        this.#waiting.delete(look);
        clearTimeout(timer);
        resolve(found);
      };
      const timer = setTimeout(() => {
        this.#waiting.delete(look);
        const seen = this.events.map((event) => event.Type).join(' ');
        reject(new Error(`${this.name} has waited in vain for ${type} (${fits}); there came: ${seen}`));
      }, kTimeoutMs);
      this.#waiting.add(look);
      look();
    });
  }

  /** Makes the room if need be, joins it, calls `meanwhile` of it, if given, and waits until it is joined. */
  async join(room, { token = '', subscribe = true, uid = this.name, extra_info = `extra of ${this.name}`, meanwhile } = {}) {
    await this.call('actions', 'room', room);
    const from = this.events.length;
    const result = await this.call(room, 'joinRoom', token, { uid, extra_info }, {
      ...kRoom, is_auto_subscribe_audio: subscribe, is_auto_subscribe_video: subscribe,
    });
    if (result !== 0) return { result };
    if (meanwhile !== undefined) await this.call(room, ...meanwhile);
    return this.waitFor('onRoomStateChanged', ({ room_id }) => room_id === room, from);
  }

  /** Shows a camera to the rooms that video is published in. */
  async capture(camera) {
    await this.call('video', 'setVideoCaptureDevice', camera);
    await this.call('video', 'startVideoCapture');
  }

  /** Sends a microphone's sound to a room. */
  async speak(room, microphone) {
    await this.call('video', 'setAudioCaptureDevice', microphone);
    await this.call('video', 'startAudioCapture');
    await this.call(room, 'publishStream', 1);
  }

  /** Waits for a frame of sound, from now on, whose channels have these amplitudes, give or take 15 %; its event. */
  sound(type, amplitudes) {
    const near = (amplitude, wanted) => Math.abs(amplitude - wanted) <= Math.max(wanted * 0.15, 0.003);
    const fits = ({ audio_frame }) => audio_frame.amplitudes.every((amplitude, at) => near(amplitude, amplitudes[at]));
    return this.waitFor(type, fits, this.events.length);
  }

  /** Waits for frames of a user's, beyond those that have come; then { frames, width, height, luma }. */
  async frames(room, user, count = 10, stream_index = 0) {
    const key = { room_id: room, user_id: user, stream_index };
    await this.call('video', 'setRemoteVideoSink', key, 1);
    return this.call('actions', 'awaitFrames', `${user} ${stream_index}`, count, kTimeoutMs);
  }

  /** Ends it as a person would. An error when that goes wrong, or when it has ended otherwise unless kill() did that. */
  async end() {
    if (this.#child.exitCode === null && this.#child.signalCode === null) this.#child.send({ end: true });
    const how = await this.#ended;
    if (how !== 0 && !this.#killed) throw new Error(`${this.name} has ended with ${how}`);
  }

  signal(name) {
    this.#child.kill(name);
  }

  /** Ends it as a power cut would. */
  async kill() {
    this.#killed = true;
    this.#child.kill('SIGKILL');
    return this.#ended;
  }
}

/** A workplace for a test file: `participant(...)` starts one there, all end with the file's last test. */
function setUpParticipants() {
  const workplace = makeWorkplace();
  const participants = [];
  after(async () => {
    await Promise.all(participants.map((each) => each.end()));
    fs.rmSync(workplace, { recursive: true, force: true });
  });
  const participant = (name, parameters, environment) => {
    participants.push(new Participant(name, workplace, parameters, environment));
    return participants.at(-1);
  };
  return { workplace, participants, participant };
}

module.exports = { Participant, makeWorkplace, setUpParticipants };

if (require.main === module) runChild();

function runChild() {
  const sdk = require('../../..');
  const [name, workplace, parameters] = process.argv.slice(2);
  sdk.setLogConfig({ log_path: workplace, log_level: 0, log_file_size: 10, log_filename_prefix: name });
  const video = new sdk.xoRTCVideo();
  const rooms = new Map();
  const seen = new Map(); // by user and stream: { frames, width, height, buffer, looks }

  const kStreams = ['onRemoteVideoFrame', 'onRemoteScreenFrame'];
  const tell = (event) => process.connected && process.send({ event });

  function onMessage(message) {
    if (message.type === 'GroupVideoFrame') {
      for (const { Type, Object: frame } of message.group) if (kStreams.includes(Type)) onFrame(frame, kStreams.indexOf(Type));
      return;
    }
    if (message.Type === 'onRemoteVideoSizeChanged') onSize(message.Object);
    if (message.Object.audio_frame !== undefined) message.Object.audio_frame = measureSound(message.Object.audio_frame);
    tell(message);
  }

  function onSize({ key, info: { width, height } }) {
    const name = `${key.user_id} ${key.stream_index}`;
    const user = seen.get(name) ?? { frames: 0, looks: new Set() };
    user.buffer = Buffer.alloc(width * height * 2);
    seen.set(name, user);
    const stream_type = kStreams[key.stream_index];
    video.setRemoteVideoBuffer({ user_id: key.user_id, stream_type, width, height, plane_y: user.buffer });
  }

  function onFrame({ user_id, width, height, plane_size_y }, stream_index) {
    const user = seen.get(`${user_id} ${stream_index}`);
    Object.assign(user, { width, height, stride: plane_size_y });
    user.frames++;
    for (const look of user.looks) look();
  }

  /** A frame of sound without its samples: the amplitude that a sine of that power would have, 0 to 1, of each channel. */
  function measureSound({ buffer, ...frame }) {
    const samples = new Int16Array(buffer.buffer, buffer.byteOffset, buffer.byteLength / 2);
    const amplitudeOf = (channel) => {
      let power = 0;
      for (let at = channel; at < samples.length; at += frame.channels) power += (samples[at] / 32768) ** 2;
      return Math.sqrt((2 * power * frame.channels) / samples.length);
    };
    return { ...frame, samples: samples.length, amplitudes: Array.from({ length: frame.channels }, (_, channel) => amplitudeOf(channel)) };
  }

  /** The picture's mean brightness in three columns of four rows, left to right, top to bottom. */
  function looksOf({ buffer, width, height, stride }) {
    const columns = 3;
    const rows = 4;
    const means = [];
    for (let cell = 0; cell < columns * rows; cell++) {
      const left = Math.floor(((cell % columns) * width) / columns);
      const top = Math.floor((Math.floor(cell / columns) * height) / rows);
      let sum = 0;
      for (let y = 0; y < 8; y++) for (let x = 0; x < 8; x++) sum += buffer[(top + y + 8) * stride + left + x + 8];
      means.push(Math.round(sum / 64));
    }
    return means;
  }

  const actions = {
    room(id) {
      if (!rooms.has(id)) rooms.set(id, new sdk.xoRTCRoom(id, tell));
      return rooms.get(id).isRoomCreated();
    },
    forgetRoom(id) {
      const result = rooms.get(id).destroy();
      rooms.delete(id);
      return result;
    },
    awaitFrames(name, count, timeout) {
      const user = seen.get(name) ?? { frames: 0, looks: new Set() };
      seen.set(name, user);
      const until = user.frames + count;
      return new Promise((resolve) => {
        const done = () => {
          user.looks.delete(look);
          clearTimeout(timer);
          const { frames, width, height } = user;
          resolve(frames < until ? { frames: frames - until + count } : { frames: count, width, height, luma: looksOf(user) });
        };
        const look = () => user.frames >= until && done();
        const timer = setTimeout(done, timeout);
        user.looks.add(look);
      });
    },
  };

  const end = () => {
    video.destroyRTCVideo();
    setImmediate(() => process.exit());
  };
  process.on('disconnect', end);
  process.on('message', async ({ call, target, method, args, end: ending }) => {
    if (ending) return end();
    const object = { video, actions }[target] ?? rooms.get(target);
    process.send({ call, result: await object[method](...args) });
  });
  video.createRTCVideo('test', onMessage, parameters);
}
