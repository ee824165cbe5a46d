'use strict';
// The demo's call, the side that is seen. First it sends its camera as it is; then pictures that the camera took, pushed
// from JavaScript with the time of their pushing drawn into each. Its microphone is heard all along, where sound is asked
// for. A message a second goes to all. What it does besides stands in call_extras.js.

const { CallMember, RateCounter, startMeter, describe, reasonOf } = require('./call_member');
const { CallExtras } = require('./call_extras');
const { Microphone } = require('./microphone');
const { clock, drawStamp } = require('./stamp');

const options = JSON.parse(process.argv[2]);
const pictures = 2;
const soundAndPictures = 3;
const external = 0;
// Shown there and back again, so that they go on without a jump.
const keptPictures = 20;
const none = Buffer.alloc(0);

let buffer;
const kept = [];
const gaps = [];
let lastTimestamp;
const pushed = new RateCounter();
let microphone;
let measure = () => {};
let sent;

const member = new CallMember(options, {
  frames(group) {
    for (const { Type, Object: frame } of group) if (Type === 'onLocalVideoFrame') onFrame(frame);
  },
  onLocalVideoSizeChanged({ info: { width, height } }) {
    buffer = Buffer.alloc(width * height * 2);
    member.video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width, height, plane_y: buffer });
  },
  onStreamStateChanged({ state, extra_info }) {
    if (state === 0) member.tell({ published: true });
    else member.fail(`the camera could not be sent: ${reasonOf(extra_info) ?? state}`, true);
  },
  // Not before messages reach it.
  onUserJoined: () => member.tell({ met: true }),
  onLocalAudioPropertiesReport: (event) => microphone?.take({ Type: 'onLocalAudioPropertiesReport', Object: event }),
  onLocalAudioStateChanged: (event) => microphone?.take({ Type: 'onLocalAudioStateChanged', Object: event }),
  onError(event) {
    const { err } = event;
    if (!microphone?.take({ Type: 'onError', Object: event })) member.fail(`the camera failed: ${describe(err)}`);
  },
  onLocalStreamStats({ video_stats, is_screen }) {
    if (!is_screen) sent = video_stats.sent_kbitrate;
  },
  onRecordingStateUpdate: (event) => extras.onRecordingState(event),
  onUserMessageReceived() {
    member.tell({ message: 'received' });
  },
});
const { video } = member;
const extras = new CallExtras(member);

/** Keeps the pictures to be pushed later. `timestamp`: media time in microseconds, cut to 32 bits. */
function onFrame({ timestamp, width, height, plane_size_y: strideY, plane_size_u: strideU, plane_size_v: strideV }) {
  if (lastTimestamp !== undefined) gaps.push((timestamp - lastTimestamp) >>> 0);
  lastTimestamp = timestamp;
  const luma = strideY * height;
  const [sizeU, sizeV] = [strideU, strideV].map((stride) => stride * ((height + 1) >> 1));
  const pixels = Buffer.from(buffer.subarray(0, luma + sizeU + sizeV));
  const data = [pixels.subarray(0, luma), pixels.subarray(luma, luma + sizeU), pixels.subarray(luma + sizeU)];
  kept.push({ width, height, data, linesize: [strideY, strideU, strideV] });
  if (kept.length < keptPictures) return;
  // The rest of the camera's pictures need no way to JavaScript.
  member.check('unsetLocalVideoSink', video.unsetLocalVideoSink(0));
  member.tell({ camera: { fps: cameraRate() } });
}

/** Pictures a second of the camera: what lies between two in media time. */
function cameraRate() {
  const sorted = gaps.toSorted((a, b) => a - b);
  return 1e6 / sorted[sorted.length >> 1];
}

function pushPictures(rate) {
  const start = performance.now();
  const order = [...kept.keys(), ...[...kept.keys()].slice(1, -1).reverse()];
  const pushNext = () => {
    const { width, height, data, linesize } = kept[order[pushed.count % order.length]];
    const drawn = drawStamp(data[0], linesize[0], width, height, clock());
    if (!drawn) return member.fail('the pictures are too small for a stamp');
    const frame = {
      pixel_fmt: 1, color_space: 1, timestamp_ms: Math.round(performance.now() - start), data, linesize,
      extra_data: none, supplementary_info: none, width, height, rotation: 0,
    };
    member.check('pushExternalVideoFrame', video.pushExternalVideoFrame(frame));
    pushed.add();
    // Due times follow from the start, so that late timers do not add up.
    setTimeout(pushNext, start + (pushed.count * 1000) / rate - performance.now());
  };
  pushNext();
}

let messages;
member.serve({
  async join({ camera, size, sound, speech }) {
    if (sound) microphone = new Microphone(video);
    member.check('setLocalVideoSink', video.setLocalVideoSink(0, 1));
    if (size) member.check('setVideoCaptureConfig', video.setVideoCaptureConfig({ capture_preference: 1, ...size }));
    member.check('setVideoCaptureDevice', video.setVideoCaptureDevice(camera));
    member.check('startVideoCapture', video.startVideoCapture());
    microphone?.start(speech ?? camera);
    const join_ms = await member.join();
    member.check('publishStream', member.room.publishStream(sound ? soundAndPictures : pictures));
    member.tell({ joined: { join_ms } });
  },
  talk() {
    let count = 0;
    const say = () => member.room.sendRoomMessage(`message ${++count}`) > 0 && member.tell({ message: 'sent' });
    say();
    messages = setInterval(say, 1000);
  },
  async perform(wanted) {
    member.tell({ performed: await extras.perform(wanted) });
  },
  stamp({ rate }) {
    member.check('stopVideoCapture', video.stopVideoCapture());
    member.check('setVideoSourceType', video.setVideoSourceType(0, external));
    measure = startMeter();
    pushPictures(rate);
  },
  hush() {
    clearInterval(messages);
    member.tell({ hushed: true });
  },
  finish() {
    extras.end();
    member.end({ summary: { ...measure(), sent_kbps: sent, pushed: pushed.count, fps: pushed.fps } });
  },
});
