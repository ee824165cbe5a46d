'use strict';
// Joins a room over and over, in one engine, and measures from the call of joinRoom() to the first decoded picture of the
// one who sends there. Options as those of the demo's members, with `sender`.

const { CallMember } = require('../demo/call_member');

const options = JSON.parse(process.argv[2]);
const key = { room_id: options.roomId, user_id: options.sender, stream_index: 0 };
const pause = 100;
let onDecoded = () => {};

const member = new CallMember(options, {
  onFirstRemoteVideoFrameDecoded: () => onDecoded(),
});

member.serve({
  async measure({ joins }) {
    const times = [];
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
      member.tell({ joins: times.length });
    }
    member.end({ times });
  },
});
