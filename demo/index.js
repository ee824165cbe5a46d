'use strict';
// The main job: a real clip is captured as a camera and its frames arrive in JavaScript's own buffer; its sound, or a test
// tone, is captured as a microphone and its level shown. Then two processes hold a call: one sends the clip and speech,
// the other receives them; meanwhile an effect is played into the call, a screen is shared where there is one, what is
// sent is recorded, and a snapshot taken of what is received.
//
//   npm run demo -- [clip] [--seconds N] [--plugin blur] [--service ws://HOST:PORT] [--json]
//
// The clip may be a synthetic camera's id as well. Each half takes the seconds. Without --service the engines start a
// private one on this machine. Exit codes: 0 all well; 1 too few pictures, or lost messages; 2 it could not be tried; 3 the
// camera's half was done, but no service held the call.
//
// With --plugin blur a sample plug-in softens the pictures but for their middle; the contact sheet's first row is without.
// The camera runs in a child process: what the engine prints stays out of this one's output.

const { fork } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { parseArgs } = require('node:util');
const { holdCall, NoService } = require('./call');
const { ContactSheet } = require('./contact_sheet');
const { sampleClip, sampleEffect, sampleSpeech } = require('./samples');

const outFolder = path.join(__dirname, 'out');
const usage = 'usage: npm run demo -- [clip] [--seconds N] [--plugin blur] [--service ws://HOST:PORT] [--json]';
const plugins = ['blur'];
// The camera's rows of the contact sheet, and the call's.
const cameraSheet = { columns: 4, count: 12, width: 320, height: 180 };
const callSheet = { ...cameraSheet, count: 8 };
const exitCode = { well: 0, poor: 1, failed: 2, noService: 3 };
// The call begins with a key frame and changes its source half-way.
const callTolerance = 0.08;
const longestRecording = 5;

function readArguments() {
  const { values, positionals } = parseArgs({
    allowPositionals: true,
    options: {
      seconds: { type: 'string', default: '10' },
      plugin: { type: 'string', default: '' },
      service: { type: 'string' },
      json: { type: 'boolean', default: false },
    },
  });
  const seconds = Number(values.seconds);
  if (!(seconds >= 1 && seconds <= 3600)) throw new Error('--seconds takes a number from 1 to 3600');
  if (positionals.length > 1) throw new Error('one clip at a time');
  if (values.plugin !== '' && !plugins.includes(values.plugin)) throw new Error(`--plugin takes: ${plugins.join(', ')}`);
  const { plugin, service, json } = values;
  if (service !== undefined && !/^wss?:\/\/./.test(service)) throw new Error('--service takes an address as ws://HOST:PORT');
  return { clip: positionals[0], seconds, plugin, service, json };
}

/** Runs the camera and resolves to its summary. */
function runCamera(options, onProgress) {
  return new Promise((resolve, reject) => {
    const argument = JSON.stringify({ ...options, outFolder, sheet: cameraSheet });
    const camera = fork(path.join(__dirname, 'camera.js'), [argument], {
      stdio: ['ignore', 'ignore', 'inherit', 'ipc'], serialization: 'advanced',
    });
    let summary;
    camera.on('message', (message) => {
      if (message.progress) onProgress(message.progress);
      if (!message.summary) return;
      summary = message.summary;
      camera.disconnect();
    });
    camera.on('error', reject);
    camera.on('exit', (code, signal) => {
      if (summary && code === 0) resolve(summary);
      else reject(new Error(summary?.error ?? `the camera process ended with ${signal ?? code}`));
    });
  });
}

/** A meter from -60 dB to full scale. */
function meterLine({ microphone, level, peak }) {
  const bar = '|'.repeat(Math.round(Math.max(0, 1 + level / 60) * 24)).padEnd(24, '.');
  const source = microphone.startsWith('file:') ? 'the clip\'s sound' : microphone;
  return `[${bar}] ${String(level).padStart(4)} dB  ${source}, peak ${peak} dB`;
}

let linesShown = 0;

/** Shows lines in the place of the last ones, or below them where nothing can be overwritten. */
function show(lines) {
  const back = process.stdout.isTTY && linesShown > 0 ? `\x1b[${linesShown}A` : '';
  const clear = process.stdout.isTTY ? '\x1b[K' : '';
  process.stdout.write(back + lines.map((line) => `${line}${clear}\n`).join(''));
  linesShown = lines.length;
}

function showProgress({ elapsed, seconds, frames, fps, size, sound }) {
  const done = Math.min(1, elapsed / seconds);
  const bar = '#'.repeat(Math.round(done * 24)).padEnd(24, '.');
  const line = `[${bar}] ${elapsed.toFixed(0).padStart(3)} s  ${size}  ${frames} frames  ${fps.toFixed(1)} fps`;
  show(sound ? [line, meterLine(sound)] : [line]);
}

const milliseconds = (value) => (value === null ? '-' : `${value.toFixed(1)} ms`);

function showCallProgress({ elapsed, seconds, size, frames, fps, latency_p50_ms: latency, messages }) {
  const done = Math.min(1, elapsed / seconds);
  const bar = '>'.repeat(Math.round(done * 24)).padEnd(24, '.');
  show([
    `[${bar}] ${elapsed.toFixed(0).padStart(3)} s  ${size}  ${frames} remote frames  ${fps.toFixed(1)} fps  ` +
      `latency ${milliseconds(latency)}  messages ${messages.received} of ${messages.sent}`,
  ]);
}

function lastLines(file, count) {
  return fs.readFileSync(file, 'utf8').trimEnd().split('\n').slice(-count);
}

function showCall(call) {
  if (call.call_error) return;
  const verdict = call.ok ? 'as sent' : 'NOT as sent';
  console.log(`call over the service ${call.service}: joined in ${milliseconds(call.join_ms)} (who came first, in ` +
    `${milliseconds(call.first_join_ms)}), saw the other ${milliseconds(call.first_frame_ms)} after it began to join`);
  console.log(`${call.remote_fps.toFixed(2)} remote fps of ${call.sent_fps.toFixed(2)}, ` +
    `${call.messages_received} of ${call.messages_sent} messages, ${verdict}`);
  if (call.remote_audio_kbps !== null) {
    console.log(`sound: ${call.remote_audio_kbps.toFixed(0)} kbit/s received, peak ${call.remote_audio_peak_db} dB`);
  }
  console.log(`latency, from pushing a picture to having it: ${milliseconds(call.latency_p50_ms)}, 95 % below ` +
    `${milliseconds(call.latency_p95_ms)} (${call.latency_samples} pictures)`);
  showExtras(call);
}

function showExtras({ effect, screen, screen_frames: frames, recording, snapshot }) {
  const tell = (what, it, text) => console.log(`${what}: ${it?.problem ? `FAILED: ${it.problem}` : text(it)}`);
  tell('effect played into the call', effect, ({ file, seconds }) => `${path.basename(file)}, ${seconds.toFixed(1)} s`);
  tell('screen shared', screen, (it) =>
    it === null ? 'none, there is no screen here' : `${it.name}, ${it.width}x${it.height}, ${frames} frames received`);
  tell('recording', recording, ({ file, seconds, bytes }) =>
    `${file}, ${seconds.toFixed(1)} s, ${(bytes / 1024).toFixed(0)} KB`);
  tell('snapshot of the remote picture', snapshot, ({ file, width, height }) => `${file}, ${width}x${height}`);
}

function showSummary(summary, call) {
  const verdict = summary.ok ? 'at the clip\'s rate' : 'NOT at the clip\'s rate';
  console.log(`${summary.frames} frames of ${summary.width}x${summary.height} in ${summary.seconds.toFixed(1)} s: ` +
    `${summary.fps.toFixed(2)} fps of ${summary.clip_fps.toFixed(2)}, ${verdict}`);
  if (summary.microphone !== null) console.log(`microphone ${summary.microphone}: peak ${summary.audio_level_peak_db} dB`);
  if (summary.plugin) {
    const { sharpness, sharpness_without: without, softens } = summary.plugin;
    console.log(`plug-in ${summary.plugin.name}: sharpness ${sharpness.toFixed(2)} of ${without.toFixed(2)} without it, ` +
      (softens ? 'soft' : 'NOT soft'));
  }
  showCall(call);
  console.log(`contact sheet: ${summary.contact_sheet}`);
  console.log(`log: ${summary.log}`);
  for (const line of lastLines(summary.log, 6)) console.log(`  ${line}`);
}

/** The id of the camera that the arguments mean. */
async function findCamera(clip) {
  if (clip?.startsWith('test:')) return clip;
  const file = path.resolve(clip ?? (await sampleClip((text) => console.error(text))));
  if (!fs.existsSync(file)) throw new Error(`there is no clip ${file}`);
  return `file:${file}`;
}

/** A sample, or null with a word about it. */
const orNothing = (sample) => sample.catch((error) => (console.error(`demo: ${error.message}`), null));

/** Holds the call; its part of the summary, and its pictures. Without a service there is the reason in its place. */
async function runCall(camera, { seconds, service }, onProgress) {
  const say = (text) => console.error(text);
  // Synthetic pictures come with a synthetic sound.
  const speech = camera.startsWith('test:') ? null : await orNothing(sampleSpeech(say));
  const effect = await orNothing(sampleEffect(say));
  const record = { folder: outFolder, seconds: Math.min(longestRecording, seconds / 2) };
  try {
    const { call, pictures } = await holdCall({
      camera, sound: true, speech: speech ? `file:${speech}` : undefined, service, seconds, extras: { effect, record },
      logFolder: outFolder, sheet: callSheet, onProgress,
    });
    const fits = Math.abs(call.remote_fps / call.sent_fps - 1) <= callTolerance;
    const whole = call.messages_sent > 0 && call.messages_received === call.messages_sent;
    const well = ![call.effect, call.screen, call.recording, call.snapshot].some((it) => it?.problem);
    return { call: { ...call, ok: fits && whole && well && call.latency_samples > 0 }, pictures };
  } catch (error) {
    if (!(error instanceof NoService)) throw error;
    const nothing = { join_ms: null, remote_fps: null, latency_p50_ms: null, latency_p95_ms: null };
    const call = { ...nothing, messages_sent: 0, messages_received: 0, ok: false, call_error: error.message };
    return { call, pictures: [] };
  }
}

async function main() {
  const options = readArguments();
  const { seconds, plugin, json } = options;
  fs.mkdirSync(outFolder, { recursive: true });
  const camera = await findCamera(options.clip);
  const clip = camera.replace(/^file:/, '');
  if (!json) console.log(`capturing ${clip}`);
  const { pictures: local, ...seen } = await runCamera({ camera, seconds, plugin }, json ? () => {} : showProgress);
  if (!json) console.log('two processes hold a call');
  linesShown = 0;
  const { pictures: remote, call } = await runCall(camera, options, json ? () => {} : showCallProgress);

  const sheet = new ContactSheet(cameraSheet.columns, cameraSheet.width, cameraSheet.height);
  for (const picture of [...local, ...remote]) sheet.add(picture);
  const contactSheet = sheet.write(path.join(outFolder, 'contact-sheet.png'));
  const summary = { clip, ...seen, ...call, ok: seen.ok && call.ok, contact_sheet: contactSheet };
  if (json) console.log(JSON.stringify(summary));
  else showSummary({ ...seen, contact_sheet: contactSheet }, call);
  if (call.call_error) {
    console.error(`demo: no call: ${call.call_error}`);
    return exitCode.noService;
  }
  return summary.ok ? exitCode.well : exitCode.poor;
}

main().then(
  (code) => {
    process.exitCode = code;
  },
  (error) => {
    console.error(`demo: ${error.message}`);
    if (error.code?.startsWith?.('ERR_PARSE_ARGS')) console.error(usage);
    process.exitCode = exitCode.failed;
  },
);
