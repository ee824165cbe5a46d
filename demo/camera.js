'use strict';
// The demo's camera process: captures a clip and its sound, receives the frames in a buffer of its own, keeps some for
// the contact sheet, and reports to its parent.

const path = require('node:path');
const sdk = require('..');
const { BlurPlugin } = require('./blur_plugin');
const { shrink } = require('./contact_sheet');
const { Microphone } = require('./microphone');

const { camera, seconds, outFolder, plugin: pluginName, sheet } = JSON.parse(process.argv[2]);
// The rate may fall short by what start-up and the last period cost, and by no more.
const tolerance = 0.05;

class FrameCounter {
  frames = 0;
  firstAt = 0;
  lastAt = 0;
  #gaps = [];
  #lastStamp;

  /** `stamp`: the frame's media time in microseconds, cut to 32 bits. */
  add(stamp) {
    this.lastAt = performance.now();
    if (this.frames++ === 0) this.firstAt = this.lastAt;
    else this.#gaps.push((stamp - this.#lastStamp) >>> 0);
    this.#lastStamp = stamp;
  }

  /** Frames a second as they arrived. */
  get fps() {
    return this.frames > 1 ? ((this.frames - 1) * 1000) / (this.lastAt - this.firstAt) : 0;
  }

  /** Frames a second of the clip itself: what lies between two frames in media time. */
  get clipFps() {
    if (this.#gaps.length === 0) return 0;
    const sorted = this.#gaps.toSorted((a, b) => a - b);
    return 1e6 / sorted[sorted.length >> 1];
  }
}

const counter = new FrameCounter();
const pictures = [];
let buffer;
let size = { width: 0, height: 0 };
let failure;

function onSizeChanged({ width, height }) {
  // Width is the stride of the Y plane; the chroma planes together take half of it, rounded up.
  buffer = Buffer.alloc(width * height * 2);
  video.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width, height, plane_y: buffer });
}

function onFrame(frame) {
  counter.add(frame.timestamp);
  size = frame;
  const due = (pictures.length * seconds * 1000) / sheet.count;
  if (pictures.length >= sheet.count || counter.lastAt - counter.firstAt < due) return;
  pictures.push(shrink(buffer, frame, sheet.width, sheet.height));
  plugin?.onPicture(buffer, frame);
  if (pictures.length === sheet.columns) plugin?.enable();
}

function onMessage(message) {
  if (message.type === 'GroupVideoFrame') {
    for (const { Type, Object: frame } of message.group) if (Type === 'onLocalVideoFrame') onFrame(frame);
    return;
  }
  if (microphone.take(message)) return;
  if (message.Type === 'onLocalVideoSizeChanged') onSizeChanged(message.Object.info);
  if (message.Type === 'onError') fail(`the clip could not be captured: ${describe(message.Object.err)}`);
}

const describe = (code) => sdk.getErrorDescription(code) || `error ${code}`;

function fail(reason) {
  failure = reason;
  finish();
}

function check(what, result) {
  if (result !== 0) fail(`${what} failed: ${describe(result)}`);
}

function progress() {
  if (counter.frames === 0) return;
  const elapsed = (performance.now() - counter.firstAt) / 1000;
  process.send({
    progress: {
      ...{ elapsed, seconds, frames: counter.frames, fps: counter.fps, size: `${size.width}x${size.height}` },
      sound: microphone.id && { microphone: microphone.id, level: microphone.level, peak: microphone.peak },
    },
  });
}

function summarize() {
  const { fps, clipFps } = counter;
  const plugged = plugin?.summarize();
  return {
    frames: counter.frames,
    width: size.width,
    height: size.height,
    seconds: (counter.lastAt - counter.firstAt) / 1000,
    fps,
    clip_fps: clipFps,
    ok: fps > 0 && Math.abs(fps / clipFps - 1) <= tolerance && (plugged?.softens ?? true),
    microphone: microphone.id ?? null,
    audio_level_peak_db: microphone.id === undefined ? null : microphone.peak,
    plugin: plugged,
    log: path.join(outFolder, logName),
  };
}

let finished = false;
function finish() {
  if (finished) return;
  finished = true;
  if (!failure && counter.frames === 0) failure = 'no frame arrived';
  video.stopVideoCapture();
  microphone.stop();
  const summary = failure ? { error: failure } : { ...summarize(), pictures };
  video.destroyRTCVideo();
  process.send({ summary });
}

// The parent lets go when it has read the summary; the engine's channel would keep the event loop alive.
process.on('disconnect', () => process.exit(failure ? 1 : 0));

const now = new Date();
const day = [now.getFullYear(), now.getMonth() + 1, now.getDate()].map((n) => String(n).padStart(2, '0')).join('-');
const logName = `${day}-node.log`;
sdk.setLogConfig({ log_path: outFolder, log_level: 0, log_file_size: 10, log_filename_prefix: 'demo' });

const video = new sdk.xoRTCVideo();
const microphone = new Microphone(video);
const plugin = pluginName ? new BlurPlugin(video, check) : undefined;
check('createRTCVideo', video.createRTCVideo('demo', onMessage, '{}'));
check('setLocalVideoSink', video.setLocalVideoSink(0, 1));
plugin?.load();
check('setVideoCaptureDevice', video.setVideoCaptureDevice(camera));
check('startVideoCapture', video.startVideoCapture());
microphone.start(camera);
setInterval(progress, 1000);
const started = performance.now();
const timer = setInterval(() => {
  const from = counter.frames > 0 ? counter.firstAt : started + 5000;
  if (performance.now() - from < seconds * 1000) return;
  clearInterval(timer);
  progress();
  finish();
}, 20);
