'use strict';
// The demo's call, the side that sees: it counts the pictures that reach its own buffer, reads the times in those that
// carry one, keeps some for the contact sheet, takes a snapshot, listens, and answers every message.

const fs = require('node:fs');
const path = require('node:path');
const { CallMember, RateCounter, startMeter, describe } = require('./call_member');
const { shrink } = require('./contact_sheet');
const { clock, readStamp } = require('./stamp');

const options = JSON.parse(process.argv[2]);
const { sheet } = options;
// Nothing that carries a stamp was under way for longer, in microseconds.
const longestDelay = 60e6;
const silentDb = -127;
const [cameraStream, screenStream] = [0, 1];

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
let remoteCamera;
let audioRate = null;
let level = silentDb;
let screenFrames = 0;
let measure = () => {};

const member = new CallMember(options, {
  frames(group) {
    const last = group.findLast(({ Type }) => Type === 'onRemoteVideoFrame')?.Object;
    // Of several pictures in one batch the buffer holds the last.
    if (last) onPicture(last);
    for (const { Type } of group) {
      if (Type === 'onRemoteVideoFrame') countFrame();
      else if (Type === 'onRemoteScreenFrame') ++screenFrames;
    }
  },
  onRemoteVideoSizeChanged({ key: { user_id, stream_index }, info: { width, height } }) {
    const pixels = Buffer.alloc(width * height * 2);
    if (stream_index === screenStream) {
      const stream_type = 'onRemoteScreenFrame';
      member.video.setRemoteVideoBuffer({ user_id, stream_type, width, height, plane_y: pixels });
      return;
    }
    buffer = pixels;
    member.video.setRemoteVideoBuffer({ user_id, stream_type: 'onRemoteVideoFrame', width, height, plane_y: buffer });
  },
  onFirstRemoteVideoFrameDecoded() {
    decodedAt ||= performance.now();
  },
  onRemoteStreamStats({ audio_stats, is_screen }) {
    if (!is_screen) audioRate = audio_stats.received_kbitrate;
  },
  onRemoteAudioPropertiesReport({ audio_properties_infos }) {
    for (const { audio_properties_info } of audio_properties_infos) {
      level = Math.max(level, audio_properties_info.nonlinear_volume);
    }
  },
  onTakeRemoteSnapshotResult({ image, error_code }) {
    if (error_code !== 0 || !image) return member.tell({ snapshot: { problem: `error ${error_code}` } });
    const png = Buffer.from(image, 'base64');
    const file = path.join(options.logFolder, '..', 'remote-snapshot.png');
    fs.writeFileSync(file, png);
    member.tell({ snapshot: { file, width: png.readUInt32BE(16), height: png.readUInt32BE(20) } });
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
    remoteCamera = { room_id: options.roomId, user_id: sender, stream_index: cameraStream };
    for (const stream of [remoteCamera, { ...remoteCamera, stream_index: screenStream }]) {
      member.check('setRemoteVideoSink', member.video.setRemoteVideoSink(stream, 1));
    }
    const reports = { interval: 100, smooth: 1, local_main_report_mode: 0, audio_report_mode: 0 };
    const kept = { enable_spectrum: false, enable_vad: false, enable_voice_pitch: false };
    member.check('enableAudioPropertiesReport', member.video.enableAudioPropertiesReport({ ...reports, ...kept }));
    member.tell({ joined: { join_ms: await member.join() } });
  },
  watch({ seconds }) {
    pictureGap = (seconds * 1000) / sheet.count;
    pictureDue = performance.now() + pictureGap / 2;
    setInterval(() => member.tell({ progress: report() }), 1000);
  },
  snapshot() {
    const task = member.video.takeRemoteSnapshot(remoteCamera);
    if (task < 0) member.tell({ snapshot: { problem: describe(task) } });
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
        latency_p50_ms: percentile(0.5), latency_p95_ms: percentile(0.95), remote_audio_kbps: audioRate,
        remote_audio_peak_db: level === silentDb ? null : level, screen_frames: screenFrames, longest_gap_ms: longestGap,
        ...measure(), pictures,
      },
    });
  },
});
