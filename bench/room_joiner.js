'use strict';
// Joins a room over and over, in one engine, and measures from the call of joinRoom() to the first decoded picture of the
// one who sends there, and what the process holds after the first joins and after the last. Options as those of the demo's
// members, with `sender`.

const fs = require('node:fs');
const { CallMember } = require('../demo/call_member');

const options = JSON.parse(process.argv[2]);
const key = { room_id: options.roomId, user_id: options.sender, stream_index: 0 };
const pause = 100;
// What is kept from the first joins on, for the next ones: threads of pools, plug-ins, caches.
const warmUp = 5;
let onDecoded = () => {};

const member = new CallMember(options, {
  onFirstRemoteVideoFrameDecoded: () => onDecoded(),
});

function resources() {
  const kilobytes = Number(/^VmRSS:\s+(\d+)/m.exec(fs.readFileSync('/proc/self/status', 'utf8'))[1]);
  // The list of descriptors has one of its own.
  const descriptors = fs.readdirSync('/proc/self/fd').length - 1;
  return { descriptors, threads: fs.readdirSync('/proc/self/task').length, resident_mb: kilobytes / 1024 };
}

/** The resources, once they are no more than those of `before`, or after half a minute: pools of threads forget slowly. */
async function settled(before) {
  const end = performance.now() + 30_000;
  const isMore = (now) => now.descriptors > before.descriptors || now.threads > before.threads;
  let now = resources();
  while (isMore(now) && performance.now() < end) {
    await new Promise((resolve) => setTimeout(resolve, pause));
    now = resources();
  }
  return now;
}

member.serve({
  async measure({ joins }) {
    const times = [];
    let early;
    member.check('setRemoteVideoSink', member.video.setRemoteVideoSink(key, 1));
    while (times.length < joins) {
      const decoded = new Promise((resolve) => {
        onDecoded = resolve;
      });
      const start = performance.now();
      await Promise.all([member.join(), decoded]);
      times.push(performance.now() - start);
      member.check('leaveRoom', member.room.leaveRoom());
      await new Promise((resolve) => setTimeout(resolve, pause));
      if (times.length === warmUp) early = resources();
      member.tell({ joins: times.length });
    }
    member.end({ measured: { times, early, late: await settled(early) } });
  },
});
