'use strict';
// A call between two processes: one sends its camera, then pictures that tell when they were sent; the other receives
// them. Both exchange messages. The sender may also play an effect, share a screen and record, while the receiver takes a
// snapshot. Neither knows of the other but through the room.

const { fork } = require('node:child_process');
const { randomUUID } = require('node:crypto');
const fs = require('node:fs');
const path = require('node:path');

const senderScript = 'call_sender.js';
const stepTimeout = 20_000;
const messagesTimeout = 3000;

/** Why there was no call at all: nothing holds rooms. */
class NoService extends Error {}

const sleep = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** A process of the call, seen from here. */
class Member {
  #child;
  #seen = new Map();
  #waiting = new Map();
  #failed;
  #onMessage;

  /** `file`: the member's script, from this folder; `onMessage` takes all that it tells; `environment`: more for it. */
  constructor(file, options, onMessage = () => {}, environment = {}) {
    fs.mkdirSync(options.logFolder, { recursive: true });
    this.#onMessage = onMessage;
    this.#child = fork(path.resolve(__dirname, file), [JSON.stringify(options)], {
      stdio: ['ignore', 'ignore', 'inherit', 'ipc'], serialization: 'advanced', env: { ...process.env, ...environment },
    });
    this.failure = new Promise((_, reject) => {
      this.#failed = reject;
    });
    // Whoever waits for something is told; nobody has to.
    this.failure.catch(() => {});
    this.#child.on('message', (message) => this.#take(message));
    this.#child.on('error', this.#failed);
    this.#child.on('exit', (code, signal) =>
      this.#failed(new Error(`a process of the call (${options.name}) ended with ${signal ?? code}`)));
  }

  send(command, more = {}) {
    if (this.#child.connected) this.#child.send({ command, ...more });
  }

  /** What the member has told, or will tell, under this name. */
  told(name) {
    if (this.#seen.has(name)) return Promise.resolve(this.#seen.get(name));
    return new Promise((resolve) => this.#waiting.set(name, resolve));
  }

  /** Ends with the channel to it. */
  release() {
    if (this.#child.connected) this.#child.disconnect();
  }

  #take(message) {
    if (message.error) this.#failed(message.service ? new NoService(message.error) : new Error(message.error));
    for (const [name, value] of Object.entries(message)) {
      this.#seen.set(name, value);
      this.#waiting.get(name)?.(value);
      this.#waiting.delete(name);
    }
    this.#onMessage(message);
  }
}

/**
 * Holds a call and resolves to what it was like. `camera`: an id of a camera; `size`: { width, height, frame_rate } to
 * take from it, its own when absent; `sound`: send a microphone too, `speech` where it is named, else the clip's sound;
 * `rate`: pushed pictures a second, the camera's when absent; `extras`: { effect, record: { folder, seconds } } to be done
 * besides; `sheet`: { count, width, height } of the pictures to keep; `onProgress` is told once a second how it goes;
 * `environments`: more of it for the members, { sender, receiver }. Rejects with NoService when no service holds the room.
 */
async function holdCall({
  camera, size, sound, speech, rate, service, seconds, extras, logFolder, sheet, onProgress = () => {}, environments = {},
}) {
  const roomId = `demo ${randomUUID()}`;
  const messages = { sent: 0, received: 0 };
  const count = ({ message, progress }) => {
    if (message) ++messages[message];
    if (progress) onProgress({ ...progress, elapsed: (performance.now() - started) / 1000, seconds, messages });
  };
  const options = (name) => ({ name, roomId, service, sheet, logFolder: path.join(logFolder, name) });
  let started = 0;
  const sender = new Member(senderScript, options('sender'), count, environments.sender);
  const receiver = new Member('call_receiver.js', options('receiver'), count, environments.receiver);
  const failures = [sender.failure, receiver.failure];
  /** Waits, but neither for a member that has failed nor for ever. */
  const step = async (what, member, name) => {
    let timer;
    const late = new Promise((_, reject) => {
      timer = setTimeout(() => reject(new Error(`${what}: nothing happened within ${stepTimeout / 1000} s`)), stepTimeout);
    });
    return Promise.race([member.told(name), late, ...failures]).finally(() => clearTimeout(timer));
  };
  const pause = (milliseconds) => Promise.race([sleep(milliseconds), ...failures]);

  try {
    await Promise.all([step('start', sender, 'ready'), step('start', receiver, 'ready')]);
    sender.send('join', { camera, size, sound, speech });
    const first = await step('joining the room first', sender, 'joined');
    await step('sending the camera', sender, 'published');
    const source = await step('capturing', sender, 'camera');
    receiver.send('join', { sender: 'sender' });
    const second = await step('joining the room', receiver, 'joined');
    const { first_frame_ms } = await step('the first remote picture', receiver, 'receiving');
    // Pictures may be faster than the way for messages: what is said before that is there, nobody answers.
    await step('reaching each other with messages', sender, 'met');

    started = performance.now();
    receiver.send('watch', { seconds });
    sender.send('talk');
    if (extras) sender.send('perform', extras);
    if (extras) receiver.send('snapshot');
    await pause(seconds * 500);
    const done = extras ? { ...(await step('what is done besides', sender, 'performed')),
      snapshot: await step('the snapshot', receiver, 'snapshot') } : {};
    sender.send('stamp', { rate: rate ?? source.fps });
    receiver.send('stamp');
    await pause(seconds * 500);

    sender.send('hush');
    await step('ending', sender, 'hushed');
    const end = performance.now() + messagesTimeout;
    // Every message sent to all is answered.
    while (messages.received < messages.sent && performance.now() < end) await pause(20);
    receiver.send('finish');
    const { pictures, camera_fps, cpu: receiver_cpu, stall_ms: receiver_stall_ms, ...seen } = await step('ending', receiver, 'summary');
    sender.send('finish');
    const { cpu: sender_cpu, stall_ms: sender_stall_ms, pushed, fps: pushed_fps, sent_kbps } = await step('ending', sender, 'summary');
    return {
      pictures,
      call: {
        service: service ?? 'of this machine', join_ms: second.join_ms, first_join_ms: first.join_ms, first_frame_ms,
        remote_fps: camera_fps, sent_fps: source.fps, pushed, pushed_fps, ...seen, ...done,
        messages_sent: messages.sent, messages_received: messages.received,
        sender_cpu_percent: sender_cpu, receiver_cpu_percent: receiver_cpu,
        sender_stall_ms, receiver_stall_ms, sent_kbps,
      },
    };
  } finally {
    sender.release();
    receiver.release();
  }
}

module.exports = { holdCall, Member, NoService, senderScript };
