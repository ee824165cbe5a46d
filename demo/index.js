'use strict';
// The main job: a real clip is captured as a camera and its frames arrive in JavaScript's own buffer; its sound, or a test
// tone, is captured as a microphone and its level shown.
//
//   npm run demo -- [clip] [--seconds N] [--plugin blur] [--json]
//
// With --plugin blur a sample plug-in softens the pictures but for their middle; the contact sheet's first row is without.
// The camera runs in a child process: what the engine prints stays out of this one's output.

const { fork } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { parseArgs } = require('node:util');
const { sampleClip } = require('./sample_clip');

const outFolder = path.join(__dirname, 'out');
const usage = 'usage: npm run demo -- [clip] [--seconds N] [--plugin blur] [--json]';
const plugins = ['blur'];

function readArguments() {
  const { values, positionals } = parseArgs({
    allowPositionals: true,
    options: {
      seconds: { type: 'string', default: '10' },
      plugin: { type: 'string', default: '' },
      json: { type: 'boolean', default: false },
    },
  });
  const seconds = Number(values.seconds);
  if (!(seconds >= 1 && seconds <= 3600)) throw new Error('--seconds takes a number from 1 to 3600');
  if (positionals.length > 1) throw new Error('one clip at a time');
  if (values.plugin !== '' && !plugins.includes(values.plugin)) throw new Error(`--plugin takes: ${plugins.join(', ')}`);
  return { clip: positionals[0], seconds, plugin: values.plugin, json: values.json };
}

/** Runs the camera and resolves to its summary. */
function runCamera(clip, { seconds, plugin }, onProgress) {
  return new Promise((resolve, reject) => {
    const camera = fork(path.join(__dirname, 'camera.js'), [clip, String(seconds), outFolder, plugin], {
      stdio: ['ignore', 'ignore', 'inherit', 'ipc'],
    });
    let summary;
    camera.on('message', (message) => {
      if (message.progress) onProgress(message.progress);
      if (message.summary) summary = message.summary;
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

function lastLines(file, count) {
  return fs.readFileSync(file, 'utf8').trimEnd().split('\n').slice(-count);
}

function showSummary(summary) {
  const verdict = summary.ok ? 'at the clip\'s rate' : 'NOT at the clip\'s rate';
  console.log(`${summary.frames} frames of ${summary.width}x${summary.height} in ${summary.seconds.toFixed(1)} s: ` +
    `${summary.fps.toFixed(2)} fps of ${summary.clip_fps.toFixed(2)}, ${verdict}`);
  if (summary.microphone !== null) console.log(`microphone ${summary.microphone}: peak ${summary.audio_level_peak_db} dB`);
  if (summary.plugin) {
    const { sharpness, sharpness_without: without, softens } = summary.plugin;
    console.log(`plug-in ${summary.plugin.name}: sharpness ${sharpness.toFixed(2)} of ${without.toFixed(2)} without it, ` +
      (softens ? 'soft' : 'NOT soft'));
  }
  console.log(`contact sheet: ${summary.contact_sheet}`);
  console.log(`log: ${summary.log}`);
  for (const line of lastLines(summary.log, 6)) console.log(`  ${line}`);
}

async function main() {
  const options = readArguments();
  fs.mkdirSync(outFolder, { recursive: true });
  const clip = path.resolve(options.clip ?? (await sampleClip((text) => console.error(text))));
  if (!fs.existsSync(clip)) throw new Error(`there is no clip ${clip}`);
  if (!options.json) console.log(`capturing ${clip}`);
  const summary = await runCamera(clip, options, options.json ? () => {} : showProgress);
  if (options.json) console.log(JSON.stringify(summary));
  else showSummary(summary);
  return summary.ok ? 0 : 1;
}

main().then(
  (code) => {
    process.exitCode = code;
  },
  (error) => {
    console.error(`demo: ${error.message}`);
    if (error.code?.startsWith?.('ERR_PARSE_ARGS')) console.error(usage);
    process.exitCode = 2;
  },
);
