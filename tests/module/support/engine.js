'use strict';

const { encode, decode } = require('./wire');

/** Names a sink: 'local:0', 'local:1', 'public:ID', 'mixing:TASK', or a remote stream's key. */
function sinkName(sink) {
  return typeof sink === 'string' ? sink : `remote:${sink.room_id}/${sink.user_id}/${sink.stream_index}`;
}

/** The scripted engine, driven through its add-on. All errors are exceptions. */
class ScriptedEngine {
  #driver;

  constructor(driver) {
    this.#driver = driver;
  }

  #command(name, parameters) {
    const answer = decode(this.#driver.command(encode({ do: name, ...parameters })));
    if (answer.error !== undefined) {
      throw new Error(`scripted engine, ${name}: ${answer.error}`);
    }
    return answer.value;
  }

  // What the module asked.

  /** Recorded calls { name, id, args, js }, all or those of 'Interface.operation' or 'operation'. */
  calls(name = '') {
    return this.#command('calls', { name });
  }
  /** The arguments of the last call of an operation; undefined when there was none. */
  lastArgs(name) {
    return this.calls(name).at(-1)?.args;
  }
  countCalls(name = '') {
    return this.#command('countCalls', { name });
  }
  /** Off for measurements: nothing is recorded then. */
  record(on) {
    this.#command('record', { on });
  }
  /** Forgets recorded calls and counts; what was scripted stays. */
  clear() {
    this.#command('clear');
  }
  /** Forgets everything scripted, too. */
  reset() {
    this.#command('reset');
    this.record(true);
  }

  // What the engine answers.

  /** A number, boolean or text; a list for what enumerates; { result, ...out parameters }; a frame; or null. */
  answer(name, value) {
    this.#command('answer', { name, value });
  }
  unanswer(name) {
    this.#command('answer', { name });
  }
  /** What the operation gives is null from now on: 'getKTVManager', 'createRTCVideo', 'createTranscoderParam', ... */
  withhold(name, on = true) {
    this.#command('withhold', { name, on });
  }

  // What the engine reports.

  /**
   * Calls a handler's method on the engine's threads and waits until it has returned.
   * args: by the parameters' names or as a list; lists and bytes need no count.
   * options: target (room id, player id, task id, ...), thread, threads, repeat, wait, detailed.
   */
  fire(event, args = {}, { target, ...options } = {}) {
    const chosen = target === undefined ? {} : { target: String(target) };
    return this.#command('fire', { event, args, ...chosen, ...options });
  }
  /** Waits for everything that was fired with { wait: false }. */
  settle() {
    this.#command('settle');
  }
  /** Ids under which handlers of an interface are attached. */
  attached(interfaceName) {
    return this.#command('attached', { interface: interfaceName });
  }

  // Pictures.

  /** Pushes one picture; answers whether the sink took it (true for mixing, which has no answer). */
  pushFrame({ sink = 'local:0', ...frame } = {}, options = {}) {
    const name = sinkName(sink);
    if (name.startsWith('mixing:')) {
      const task = name.slice('mixing:'.length);
      this.fire('onMixingVideoFrame', { task_id: task, video_frame: frame }, { target: task, ...options });
      return true;
    }
    const round = this.fire('IVideoSink.onFrame', { frame }, { target: name, ...options });
    return round === null ? undefined : round.answers.every(Boolean) && round.missed === 0;
  }
  /** Counts of all frames: given, accepted, refused, givenReleased, lent, built, builtReleased, live, violations, ... */
  frames() {
    return this.#command('frames');
  }
  /** Collections and parameter objects: live, releasedTwice; and calls on objects that had ended: endedCalls. */
  objects() {
    return this.#command('objects');
  }

  /** { streams: [{ sink, frame }], fps, count, buffers, maxBuffers, threads, stamp }; see tests/README.md. */
  startStreams({ streams, ...options }) {
    this.#command('startStreams', {
      streams: streams.map(({ sink = 'local:0', frame = {} }) => ({ sink: sinkName(sink), frame })),
      ...options,
    });
  }
  /** { finished, streams: [{ sink, pushed, accepted, refused, ... }] } */
  streams() {
    return this.#command('streams');
  }
  stopStreams() {
    return this.#command('stopStreams');
  }

  // For measurements.

  /** Numbers 0 to count - 1 through a plain thread-safe function, from one thread. */
  postNumbers(count, callback) {
    this.#driver.postNumbers(count, callback);
  }
  threadCpuNs() {
    return this.#driver.threadCpuNs();
  }
  processCpuNs() {
    return this.#driver.processCpuNs();
  }
  pageFaults() {
    return this.#driver.pageFaults();
  }

  /** Detaches everything and joins the engine's threads. */
  shutDown() {
    this.#command('shutDown');
  }
}

module.exports = { ScriptedEngine, sinkName };
