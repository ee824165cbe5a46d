'use strict';
// What the two processes of the demo's call share: an engine, a room, and the talk with the parent. A parent's message
// names one of the member's commands; what a command cannot do is told as { error, service }, and ends the process.

const { monitorEventLoopDelay } = require('node:perf_hooks');
const sdk = require('..');

const joined = 0;
const serviceLost = -7;

const describe = (code) => sdk.getErrorDescription(code) || `error ${code}`;

class CallMember {
  video = new sdk.xoRTCVideo();
  room;
  #name;
  #roomId;
  #joining;
  #listeners;
  #ended = false;

  /** `listeners`: functions by the type of the event whose payload they take, and `frames` for batches of pictures. */
  constructor({ name, roomId, service, logFolder }, listeners) {
    this.#name = name;
    this.#roomId = roomId;
    this.#listeners = listeners;
    sdk.setLogConfig({ log_path: logFolder, log_level: 0, log_file_size: 10, log_filename_prefix: name });
    const parameters = service ? { service } : {};
    const take = (message) => this.#take(message);
    this.check('createRTCVideo', this.video.createRTCVideo('demo', take, JSON.stringify(parameters)));
    this.room = new sdk.xoRTCRoom(roomId, take);
    if (!this.room.isRoomCreated()) this.fail('the room could not be made');
    process.on('disconnect', () => this.#exit());
  }

  /** Listens to the parent from now on. */
  serve(commands) {
    process.on('message', ({ command, ...more }) => commands[command](more));
    this.tell({ ready: true });
  }

  /** Joins, and resolves to the milliseconds that it took. */
  join() {
    const start = performance.now();
    const user = { uid: this.#name, extra_info: '' };
    const config = {
      room_profile_type: 0, is_auto_publish: false, is_auto_subscribe_audio: true, is_auto_subscribe_video: true,
      remote_video_config: { framerate: 0, resolution_width: 0, resolution_height: 0 },
    };
    return new Promise((resolve) => {
      this.#joining = () => resolve(performance.now() - start);
      this.check('joinRoom', this.room.joinRoom('', user, config));
    });
  }

  tell(message) {
    if (message && process.connected) process.send(message);
  }

  check(what, result) {
    if (result !== 0) this.fail(`${what} failed: ${describe(result)}`);
  }

  /** `service`: the reason lies with the service of rooms. */
  fail(reason, service = false) {
    this.end({ error: reason, service });
  }

  /** Leaves and tells the last message. The process ends when the parent, having read it, lets go of it. */
  end(last) {
    if (this.#ended) return;
    this.#ended = true;
    this.room?.destroy();
    this.video.destroyRTCVideo();
    this.tell(last);
  }

  /** The engine's channel would keep the process alive. */
  #exit() {
    this.end();
    process.exit();
  }

  #take(message) {
    if (this.#ended) return;
    if (message.type === 'GroupVideoFrame') {
      this.#listeners.frames?.(message.group);
      return;
    }
    const { Type, Object: event } = message;
    if (Type === 'onRoomStateChanged' && event.room_id === this.#roomId) this.#onState(event);
    this.#listeners[Type]?.(event);
  }

  #onState({ state, extra_info }) {
    if (state === joined) this.#joining?.();
    // The engine comes back by itself from a service that was lost.
    else if (state !== serviceLost) this.fail(`the room could not be joined: ${reasonOf(extra_info) ?? state}`, true);
  }
}

/** What the engine says in words, if it does. */
function reasonOf(extraInfo) {
  try {
    return JSON.parse(extraInfo).reason;
  } catch {
    return undefined;
  }
}

/** Frames a second between the first and the last. */
class RateCounter {
  count = 0;
  #first = 0;
  #last = 0;

  add() {
    this.#last = performance.now();
    if (this.count++ === 0) this.#first = this.#last;
  }

  get fps() {
    return this.count > 1 ? ((this.count - 1) * 1000) / (this.#last - this.#first) : 0;
  }
}

/**
 * The result tells of the time since: `cpu`, per cent of a core that this process used; `stall_ms`, for how long at most
 * nothing else could run in JavaScript.
 */
function startMeter() {
  const usage = process.cpuUsage();
  const start = performance.now();
  const delays = monitorEventLoopDelay({ resolution: 1 });
  delays.enable();
  return () => {
    const { user, system } = process.cpuUsage(usage);
    delays.disable();
    return { cpu: (user + system) / 10 / (performance.now() - start), stall_ms: delays.max / 1e6 };
  };
}

module.exports = { CallMember, RateCounter, startMeter, describe, reasonOf };
