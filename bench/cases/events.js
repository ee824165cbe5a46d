'use strict';
// Events to JavaScript, against a thread-safe function that carries one number.

const { native, engineCommand, createEngine, compare, logLevel, sdk, logFolder } = require('../harness');

const count = 200_000;
// Two texts and four numbers, in nested objects.
const event = {
  event: 'onRemoteVideoSizeChanged',
  args: {
    key: { room_id: 'room-4711', user_id: 'user-0815', stream_index: 0 },
    info: { width: 1280, height: 720, rotation: 90 },
  },
};

const rateOf = async (work) => {
  const start = process.hrtime.bigint();
  await work();
  return (count / Number(process.hrtime.bigint() - start)) * 1e6;
};

module.exports = async function events() {
  let onEvent = () => {};
  const video = createEngine((message) => onEvent(message));

  const receive = () => new Promise((resolve) => {
    let seen = 0;
    onEvent = () => {
      if (++seen === count) resolve();
    };
    engineCommand({ do: 'fire', ...event, repeat: count, wait: false });
  });
  const receiveNumbers = () => new Promise((resolve) => {
    let seen = 0;
    native.postNumbers(count, () => {
      if (++seen === count) resolve();
    });
  });

  const rows = [];
  // With its line in an open file an event cannot be faster than one flushed line a piece on the posting thread.
  const goal = { kind: 'least', ratio: 0.5 };
  for (const [label, level, wanted] of [['', logLevel.warnings, goal], [', with its log line', logLevel.on, null]]) {
    sdk.setLogConfig({ log_path: logFolder, log_level: level, log_file_size: 10, log_filename_prefix: '' });
    await receive();
    rows.push(await compare({
      name: `event of four numbers and two texts${label}`, unit: 'per ms', goal: wanted,
      value: () => rateOf(receive), limit: () => rateOf(receiveNumbers),
    }));
  }
  video.destroyRTCVideo();
  return rows;
};
