'use strict';

/** A callback for the module that keeps what it is called with, for createRTCVideo, rooms and players. */
class Collector {
  /** Everything but frames, in order: { Type, Object }. */
  events = [];
  /** Every frame of every batch: { Type, Object }. */
  frames = [];
  /** Number of batches of frames. */
  batches = 0;
  /** Called with the arguments of each call, first of all. */
  onCall = null;

  #waiting = new Set();

  callback = (...args) => {
    this.onCall?.(...args);
    const [event] = args;
    if (event?.type === 'GroupVideoFrame') {
      this.batches += 1;
      this.frames.push(...event.group);
    } else {
      this.events.push(event);
    }
    for (const check of [...this.#waiting]) {
      check();
    }
  };

  /** The payloads of all events of a type. */
  of(type) {
    return this.events.filter((event) => event.Type === type).map((event) => event.Object);
  }

  /**
   * Waits for an event by type, resolving to it, or until `condition(collector)` is truthy, resolving to that. The
   * condition is asked again every few milliseconds, so it may look at anything. Rejects after `timeout` ms.
   */
  waitFor(condition, { timeout = 30000 } = {}) {
    const ask =
      typeof condition === 'function' ? () => condition(this) : () => this.events.find(({ Type }) => Type === condition);
    return new Promise((resolve, reject) => {
      const deadline = Date.now() + timeout;
      let timer = null;
      const end = (settle, value) => {
        clearInterval(timer);
        this.#waiting.delete(check);
        settle(value);
      };
      const check = () => {
        let found;
        try {
          found = ask();
        } catch (error) {
          end(reject, error);
          return;
        }
        if (found) {
          end(resolve, found);
        } else if (Date.now() > deadline) {
          end(reject, new Error(`waited ${timeout} ms for ${condition}; had ${JSON.stringify(this.events.map((e) => e?.Type))}`));
        }
      };
      this.#waiting.add(check);
      timer = setInterval(check, 5);
      check();
    });
  }

  /** Forgets what has come so far. */
  clear() {
    this.events.length = 0;
    this.frames.length = 0;
    this.batches = 0;
  }
}

module.exports = { Collector };
