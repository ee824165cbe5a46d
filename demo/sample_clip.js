'use strict';
// A real clip, and a picture, from a Debian package, fetched once into the user's cache folder. The package is unpacked
// there, never installed.

const { execFile } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { promisify } = require('node:util');

const run = promisify(execFile);
const packageName = 'python3-imageio';

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

async function download(folder) {
  const attempt = () => run('apt-get', ['download', packageName], { cwd: folder });
  try {
    await attempt();
  } catch {
    // A fresh machine has no package lists yet.
    await run('apt-get', ['update', '-qq']);
    await attempt();
  }
}

/** The path of one of the package's files; `say` is told when it has to be fetched first. */
async function sampleFile(name, say) {
  const folder = cacheFolder();
  const file = path.join(folder, name);
  if (fs.existsSync(file)) return file;
  say(`fetching ${name} from the Debian package ${packageName}`);
  fs.mkdirSync(folder, { recursive: true });
  const scratch = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-clip-'));
  try {
    fs.chmodSync(scratch, 0o755);
    await download(scratch);
    const [archive] = fs.readdirSync(scratch).filter((entry) => entry.endsWith('.deb'));
    await run('dpkg', ['-x', archive, 'unpacked'], { cwd: scratch });
    const found = findFile(path.join(scratch, 'unpacked'), name);
    if (!found) throw new Error(`the package ${packageName} has no ${name}`);
    // Renamed into place, so that an interrupted copy is never taken for the file.
    fs.copyFileSync(found, `${file}.part`);
    fs.renameSync(`${file}.part`, file);
  } catch (error) {
    throw new Error(`no sample ${name} (${String(error.stderr ?? error.message).trim()}); name a file of your own instead`);
  } finally {
    fs.rmSync(scratch, { recursive: true, force: true });
  }
  return file;
}

const sampleClip = (say) => sampleFile('cockatoo.mp4', say);

module.exports = { sampleClip, sampleFile };
