'use strict';
// Sound to JavaScript: 10 ms of 48 kHz stereo an event, against a thread-safe function that carries one number.

const { native, engineCommand, createEngine, compare, logLevel } = require('../harness');

const count = 100_000;
const sound = { sampleRate: 48000, channels: 2, samples: 480 };
const size = sound.samples * sound.channels * 2;
// Frames are fired in bursts, the next before the last has been taken: the queue never runs dry and never holds what no
// real sound brings, 10 ms frames of minutes, whose memory would be measured instead.
const burst = 500;

/** Nanoseconds of one of `count`: on the clock, and of them the JavaScript thread's processor time. */
async function timeOf(work) {
  const start = process.hrtime.bigint();
  const busyFrom = native.threadCpuNs();
  await work();
  const busy = native.threadCpuNs() - busyFrom;
  return { clock: Number(process.hrtime.bigint() - start) / count, busy: busy / count };
}

module.exports = async function audio() {
  let onEvent = () => {};
  const video = createEngine((message) => onEvent(message), logLevel.warnings);

  const receive = () => new Promise((resolve, reject) => {
    let seen = 0;
    let fired = 0;
    const fire = () => {
      fired += burst;
      engineCommand({
        do: 'fire', event: 'onPlaybackAudioFrame', args: { audio_frame: sound }, repeat: burst, wait: false,
      });
    };
    onEvent = ({ Type, Object: { audio_frame: frame } }) => {
      if (Type !== 'onPlaybackAudioFrame' || frame.buffer.length !== size) reject(new Error(`a strange ${Type}`));
      if (++seen === count) resolve();
      else if (fired < count && fired - seen < burst) fire();
    };
    fire();
  });
  const receiveNumbers = () => new Promise((resolve) => {
    let seen = 0;
    native.postNumbers(count, () => {
      if (++seen === count) resolve();
    });
  });
  const rateOf = async (work) => 1e6 / (await timeOf(work)).clock;

  await receive();
  const rows = [
    await compare({
      name: 'audio frame, 10 ms of 48 kHz stereo', unit: 'per ms', goal: { kind: 'least', ratio: 0.15 }, rounds: 7,
      value: () => rateOf(receive), limit: () => rateOf(receiveNumbers),
    }),
    await compare({
      name: '  its Buffer alone, of the JavaScript thread\'s time', unit: 'ns', goal: null, rounds: 7,
      value: () => native.copyBuffers(size, count), limit: async () => (await timeOf(receive)).busy,
    }),
  ];
  video.destroyRTCVideo();
  return rows;
};
