'use strict';
// The method tables: the processor time in which all of them compile, one after another, and the code they come to.

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const root = path.join(__dirname, '..', '..');
const mostSeconds = 60;
const mostBytes = 400e3;

/** The compiler's arguments for each source with a table of rows, as the build has them, but for what it writes. */
function tableSources() {
  const commands = JSON.parse(fs.readFileSync(path.join(root, 'build', 'release', 'compile_commands.json'), 'utf8'));
  const isTable = ({ file }) =>
    file.startsWith(path.join(root, 'proj') + path.sep) && /\bRow k\w*Rows\[\]/.test(fs.readFileSync(file, 'utf8'));
  // Other targets may build a source once more.
  const byFile = new Map(commands.filter(isTable).map((command) => [command.file, command]));
  return [...byFile.values()].map(({ file, directory, command }) => {
    const words = command.split(' ').filter((word) => word !== '');
    // What would answer from a cache stands before the compiler.
    while (/ccache$/.test(words[0])) words.shift();
    const output = words.indexOf('-o');
    words.splice(output, 2);
    return { file, directory, words };
  });
}

/** Seconds of processor time, of the compiler and what it starts. */
function compile({ directory, words }, object) {
  const script = 'TIMEFORMAT="%U %S"; time "$@"';
  const timed = ['-c', `{ ${script}; } 2>&1 >/dev/null`, 'compile', ...words, '-o', object];
  const [user, system] = execFileSync('bash', timed, { cwd: directory, encoding: 'utf8' }).trim().split(' ');
  return Number(user) + Number(system);
}

/** Bytes of code and constant data of all, with what several of them hold counted once, as in the module. */
function codeSize(objects, folder) {
  const all = path.join(folder, 'all.o');
  execFileSync('ld', ['-r', '-o', all, ...objects]);
  const [, numbers] = execFileSync('size', [all], { encoding: 'utf8' }).trim().split('\n');
  const [text, data] = numbers.trim().split(/\s+/);
  return Number(text) + Number(data);
}

module.exports = async function tables() {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-bench-'));
  const sources = tableSources();
  if (sources.length < 10) throw new Error(`only ${sources.length} tables were found`);
  let seconds = 0;
  let bytes = 0;
  try {
    const objects = sources.map((source, index) => {
      const object = path.join(folder, `${index}.o`);
      seconds += compile(source, object);
      return object;
    });
    bytes = codeSize(objects, folder);
  } finally {
    fs.rmSync(folder, { recursive: true, force: true });
  }
  return [
    {
      name: `${sources.length} sources of method tables: compilation`, value: seconds, unit: 's', limit: mostSeconds,
      ratio: seconds / mostSeconds, goal: { kind: 'most', ratio: 1 },
    },
    {
      name: '  their code', value: bytes / 1e3, unit: 'kB', limit: mostBytes / 1e3, ratio: bytes / mostBytes,
      goal: { kind: 'most', ratio: 1 },
    },
  ];
};
