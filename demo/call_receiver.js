'use strict';
// The demo's call, the side that sees: it counts the pictures that reach its own buffer, reads the times in those that
// carry one, keeps some for the contact sheet, and answers every message.

const { CallMember, RateCounter, startMeter } = require('./call_member');
const { shrink } = require('./contact_sheet');
const { clock, readStamp } = require('./stamp');

const options = JSON.parse(process.argv[2]);
const { sheet } = options;
// Nothing that carries a stamp was under way for longer, in microseconds.
const longestDelay = 60e6;

let buffer;
let size = { width: 0, height: 0 };
let joinStarted = 0;
let decodedAt = 0;
const whole = new RateCounter();
const unstamped = new RateCounter();
let stamped;
let lastStamp;
let lastStampAt;
let longestGap = 0;
const delays = [];
const pictures = [];
let pictureDue = Infinity;
let pictureGap = 0;
let audioRate = null;
let measure = () => {};

const member = new CallMember(options, {
  frames(group) {
    const last = group.findLast(({ Type }) => Type === 'onRemoteVideoFrame')?.Object;
    // Of several pictures in one batch the buffer holds the last.
    if (last) onPicture(last);
    for (const { Type } of group) if (Type === 'onRemoteVideoFrame') countFrame();
  },
  onRemoteVideoSizeChanged({ key, info: { width, height } }) {
    buffer = Buffer.alloc(width * height * 2);
    const { user_id } = key;
    member.video.setRemoteVideoBuffer({ user_id, stream_type: 'onRemoteVideoFrame', width, height, plane_y: buffer });
  },
  onFirstRemoteVideoFrameDecoded() {
    decodedAt ||= performance.now();
  },
  onRemoteStreamStats({ audio_stats }) {
    audioRate = audio_stats.received_kbitrate;
  },
  onRoomMessageReceived({ uid, message }) {
    if (member.room.sendUserMessage(uid, `answer to ${message}`, 0) === 0) member.tell({ message: 'sent' });
    member.tell({ message: 'received' });
  },
});

function countFrame() {
  whole.add();
  if (!stamped) unstamped.add();
  // What was under way when the pushing began is neither's.
  else if (lastStamp !== undefined) stamped.add();
  if (whole.count === 1) member.tell({ receiving: { first_frame_ms: (decodedAt || performance.now()) - joinStarted } });
}

function onPicture(frame) {
  size = frame;
  if (stamped) {
    const stamp = readStamp(buffer, frame.plane_size_y, frame.width, frame.height);
    const delay = stamp === undefined ? Infinity : (clock() - stamp) >>> 0;
    if (delay < longestDelay && stamp !== lastStamp) {
      delays.push(delay / 1000);
      lastStamp = stamp;
      const now = performance.now();
      longestGap = Math.max(longestGap, now - (lastStampAt ?? now));
      lastStampAt = now;
    }
  }
  if (pictures.length < sheet.count && performance.now() >= pictureDue) {
    pictures.push(shrink(buffer, frame, sheet.width, sheet.height));
    pictureDue += pictureGap;
  }
}

/** The delay that `part` of the pictures stayed below, in milliseconds; null without any. */
function percentile(part) {
  if (delays.length === 0) return null;
  const sorted = delays.toSorted((a, b) => a - b);
  return sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * part))];
}

const report = () => ({
  frames: whole.count, fps: (stamped ?? unstamped).fps, size: `${size.width}x${size.height}`,
  latency_p50_ms: percentile(0.5),
});

member.serve({
  async join({ sender }) {
    joinStarted = performance.now();
    const key = { room_id: options.roomId, user_id: sender, stream_index: 0 };
    member.check('setRemoteVideoSink', member.video.setRemoteVideoSink(key, 1));
    member.tell({ joined: { join_ms: await member.join() } });
  },
  watch({ seconds }) {
    pictureGap = (seconds * 1000) / sheet.count;
    pictureDue = performance.now() + pictureGap / 2;
    setInterval(() => member.tell({ progress: report() }), 1000);
  },
  stamp() {
    stamped = new RateCounter();
    measure = startMeter();
  },
  finish() {
    member.end({
      summary: {
        remote_frames: whole.count, remote_width: size.width, remote_height: size.height,
        camera_fps: unstamped.fps, stamped_fps: stamped?.fps ?? 0, latency_samples: delays.length,
        latency_p50_ms: percentile(0.5), latency_p95_ms: percentile(0.95), remote_audio_kbps: audioRate, longest_gap_ms: longestGap,
        ...measure(), pictures,
      },
    });
  },
});
