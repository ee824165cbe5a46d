'use strict';
// Loading, and what is said when it fails. Every case has a process and a package folder of its own.

const assert = require('node:assert');
const { execFileSync, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test, describe, after } = require('node:test');

const { debianPackage } = require('../../lib/loader.js');
const { root, folder, moduleName, engineName } = require('./support/native.js');

const temporary = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-loader-'));
after(() => fs.rmSync(temporary, { recursive: true, force: true }));

let made = 0;
/** A new folder with files: { name: content } or { name: a file to copy }. */
function folderWith(files) {
  made += 1;
  const target = path.join(temporary, String(made));
  fs.mkdirSync(target);
  for (const [name, { content, copyOf }] of Object.entries(files)) {
    const file = path.join(target, name);
    fs.mkdirSync(path.dirname(file), { recursive: true });
    if (copyOf === undefined) fs.writeFileSync(file, content);
    else fs.cpSync(copyOf, file, { recursive: true });
  }
  return target;
}

const theModule = { copyOf: path.join(folder, moduleName) };
const theEngine = { copyOf: path.join(folder, engineName) };
const both = { [moduleName]: theModule, [engineName]: theEngine };
const garbage = { content: 'no library at all\n'.repeat(100) };
const face = { lib: { copyOf: path.join(root, 'lib') }, 'package.json': { copyOf: path.join(root, 'package.json') } };

/** A shared library without functions, that needs another one when that is named. */
function libraryNeeding(needed) {
  const target = folderWith({ 'empty.c': { content: '' } });
  const compile = (...args) => execFileSync('cc', ['-shared', 'empty.c', ...args], { cwd: target });
  if (needed === undefined) {
    compile('-o', engineName);
  } else {
    compile(`-Wl,-soname,${needed}`, '-o', needed);
    compile('-Wl,--no-as-needed', `./${needed}`, '-o', engineName);
  }
  return { copyOf: path.join(target, engineName) };
}

/** Runs a script in a process of its own and gives what it hands to answer(). */
function run(script, { dir, env = {} } = {}) {
  const clean = { ...process.env, ...env, CORVANE_MEETING_SDK_DIR: dir ?? '' };
  if (!('CORVANE_RELEASE_RGBA_FRAMES' in env)) delete clean.CORVANE_RELEASE_RGBA_FRAMES;
  const whole = `const answer = (value) => require('fs').writeSync(1, JSON.stringify(value));${script}`;
  const stdio = ['ignore', 'pipe', 'inherit'];
  return JSON.parse(execFileSync(process.execPath, ['-e', whole], { env: clean, encoding: 'utf8', stdio }));
}

/** The error of loading the package in `home`, field by field, and how far it is from the class it says it is. */
function failure({ home = root, platform = {}, ...options }) {
  const pretend = Object.entries(platform).map(
    ([key, value]) => `Object.defineProperty(process, '${key}', { value: '${value}' });`,
  );
  const error = run(
    `${pretend.join('')}
    try {
      require(${JSON.stringify(path.join(home, 'lib/index.js'))});
      answer(null);
    } catch (error) {
      const { name, message, code, platform, library, pathsTried, cause } = error;
      const isError = error instanceof Error;
      answer({ name, message, code, platform, library, pathsTried, cause: cause && { code: cause.code }, isError });
    }`,
    options,
  );
  assert.notStrictEqual(error, null, 'it loaded');
  assert.strictEqual(error.isError, true);
  assert.strictEqual(error.name, 'CorvaneLoadError');
  // The message alone has to do: it is what an application's user sees.
  for (const part of [error.platform, error.library, ...error.pathsTried]) {
    assert.ok(error.message.includes(part), part);
  }
  assert.match(error.message, /^Fix: ./m);
  return error;
}

describe('what is there is loaded', () => {
  test('require gives the native exports object itself', () => {
    const same = run(
      `const sdk = require(${JSON.stringify(path.join(root, 'lib/index.js'))});
      answer(sdk === require(${JSON.stringify(path.join(folder, moduleName))}) && typeof sdk.getSDKVersion());`,
      { dir: folder },
    );
    assert.strictEqual(same, 'string');
  });

  test('a relative folder counts from where the process runs', () => {
    const dir = path.relative(process.cwd(), folder);
    assert.strictEqual(run(`answer(typeof require(${JSON.stringify(root)}).xoRTCVideo);`, { dir }), 'function');
  });

  test('builds come before what was shipped', () => {
    const shipped = { 'prebuilds/linux-x64': { copyOf: folderWith(both) } };
    const whence = (home) =>
      run(
        `require(${JSON.stringify(path.join(home, 'lib/index.js'))});
        answer(Object.keys(require.cache).filter((file) => file.endsWith('.node')));`,
      );
    const installed = folderWith({ ...face, ...shipped });
    assert.deepStrictEqual(whence(installed), [path.join(installed, 'prebuilds/linux-x64', moduleName)]);
    const built = folderWith({ ...face, ...shipped, 'build/release': { copyOf: folderWith(both) } });
    assert.deepStrictEqual(whence(built), [path.join(built, 'build/release', moduleName)]);
  });

  test('memory of RGBA frames is given back unless the user decided otherwise', () => {
    const script = `require(${JSON.stringify(root)}); answer(process.env.CORVANE_RELEASE_RGBA_FRAMES);`;
    assert.strictEqual(run(script, { dir: folder }), '1');
    assert.strictEqual(run(script, { dir: folder, env: { CORVANE_RELEASE_RGBA_FRAMES: '0' } }), '0');
  });
});

describe('the module is not there', () => {
  test('an installed package names its folders and where to put the module', () => {
    const home = folderWith(face);
    const error = failure({ home });
    assert.strictEqual(error.code, 'ERR_CORVANE_MODULE_NOT_FOUND');
    assert.strictEqual(error.platform, 'linux-x64');
    assert.strictEqual(error.library, moduleName);
    const tried = ['build/release', 'prebuilds/linux-x64'].map((one) => path.join(home, one, moduleName));
    assert.deepStrictEqual(error.pathsTried, tried);
    const place = path.join(home, 'prebuilds', 'linux-x64');
    assert.ok(error.message.includes(`Fix: put ${moduleName} and ${engineName} into ${place}`), error.message);
    assert.doesNotMatch(error.message, /npm run build/);
  });

  test('a clone of the repository is told to build', () => {
    const home = folderWith({ ...face, 'CMakeLists.txt': { content: '' } });
    const error = failure({ home });
    assert.strictEqual(error.code, 'ERR_CORVANE_MODULE_NOT_FOUND');
    assert.ok(error.message.includes(`Fix: run \`npm run build\` in ${home}`), error.message);
  });

  test('a folder that the environment names is the only one', () => {
    const empty = folderWith({});
    const home = folderWith({ ...face, 'build/release': { copyOf: folderWith(both) } });
    const error = failure({ home, dir: empty });
    assert.strictEqual(error.code, 'ERR_CORVANE_MODULE_NOT_FOUND');
    assert.deepStrictEqual(error.pathsTried, [path.join(empty, moduleName)]);
    assert.ok(error.message.includes(`CORVANE_MEETING_SDK_DIR names ${empty}, which holds no ${moduleName}`));

    const nowhere = path.join(empty, 'nowhere');
    const { message } = failure({ dir: nowhere });
    assert.ok(message.includes(`CORVANE_MEETING_SDK_DIR names ${nowhere}, which does not exist`), message);
  });

  test('a processor without a build names those that have one', () => {
    const error = failure({ platform: { arch: 'arm64' }, dir: folder });
    assert.strictEqual(error.code, 'ERR_CORVANE_PLATFORM');
    assert.strictEqual(error.platform, 'linux-arm64');
    assert.match(error.message, /Fix: use one of .*linux-x64, win32-x64/);
  });

  test('on Windows the engine is called differently, and there is nothing to run', () => {
    const win32 = { platform: 'win32' };
    const home = folderWith({ ...face, 'CMakeLists.txt': { content: '' } });
    const error = failure({ home, platform: win32 });
    assert.strictEqual(error.platform, 'win32-x64');
    assert.match(error.message, /corvane_meeting_sdk\.node and CorvaneRTC\.dll into .*win32-x64/);
    assert.doesNotMatch(error.message, /npm run build/);
    const alone = failure({ dir: folderWith({ [moduleName]: garbage }), platform: win32 });
    assert.deepStrictEqual([alone.code, alone.library], ['ERR_CORVANE_ENGINE_NOT_FOUND', 'CorvaneRTC.dll']);
  });
});

describe('the system does not load the module', () => {
  test('without the engine beside it', () => {
    const dir = folderWith({ [moduleName]: theModule });
    const error = failure({ dir });
    assert.strictEqual(error.code, 'ERR_CORVANE_ENGINE_NOT_FOUND');
    assert.strictEqual(error.library, engineName);
    assert.deepStrictEqual(error.pathsTried, [path.join(dir, moduleName), path.join(dir, engineName)]);
    assert.deepStrictEqual(error.cause, { code: 'ERR_DLOPEN_FAILED' });
    assert.ok(error.message.includes(`Fix: put ${engineName} beside the module, into ${dir}`), error.message);
  });

  test('the folders before the one with the module were tried, too', () => {
    const home = folderWith({ ...face, 'prebuilds/linux-x64': { copyOf: folderWith({ [moduleName]: theModule }) } });
    const shipped = path.join(home, 'prebuilds/linux-x64');
    assert.deepStrictEqual(failure({ home }).pathsTried, [
      path.join(home, 'build/release', moduleName),
      path.join(shipped, moduleName),
      path.join(shipped, engineName),
    ]);
  });

  const unusable = {
    'a damaged module': [{ ...both, [moduleName]: garbage }, moduleName, /is damaged, or was built for/],
    'an empty module': [{ ...both, [moduleName]: { content: '' } }, moduleName, /is damaged/],
    'a damaged engine': [{ ...both, [engineName]: garbage }, engineName, /is damaged, or was built for/],
    'an empty engine': [{ ...both, [engineName]: { content: '' } }, engineName, /is damaged/],
    'a library that is no engine': [
      { ...both, [engineName]: libraryNeeding() },
      engineName,
      /is not the one that the module was built for/,
    ],
  };
  for (const [title, [files, library, reason]] of Object.entries(unusable)) {
    test(title, () => {
      const dir = folderWith(files);
      // The folder by another name: the system's messages have the true one.
      const link = `${dir}-link`;
      fs.symlinkSync(dir, link);
      for (const named of [dir, link]) {
        const error = failure({ dir: named });
        assert.strictEqual(error.code, 'ERR_CORVANE_LIBRARY_UNUSABLE');
        assert.strictEqual(error.library, library);
        assert.match(error.message, reason);
        assert.ok(error.message.includes(`Fix: put the ${library} that belongs to this version into ${named}`));
      }
    });
  }

  const debian = {
    'libgstreamer-1.0.so.999': 'libgstreamer1.0-0',
    'libgstbase-1.0.so.999': 'libgstreamer1.0-0',
    'libgstapp-1.0.so.999': 'libgstreamer-plugins-base1.0-0',
    'libgstwebrtc-1.0.so.999': 'libgstreamer-plugins-bad1.0-0',
    'libglib-2.0.so.999': 'libglib2.0-0',
  };
  for (const [library, name] of Object.entries(debian)) {
    test(`without ${library} the Debian package is named`, () => {
      const dir = folderWith({ [moduleName]: theModule, [engineName]: libraryNeeding(library) });
      const error = failure({ dir });
      assert.strictEqual(error.code, 'ERR_CORVANE_DEPENDENCY_NOT_FOUND');
      assert.strictEqual(error.library, library);
      assert.ok(error.message.includes(`Fix: install the Debian package ${name}: \`apt-get install ${name}\``));
    });
  }

  test('without a library that nobody knows, that one is named', () => {
    const dir = folderWith({ [moduleName]: theModule, [engineName]: libraryNeeding('libodd.so.5') });
    const error = failure({ dir });
    assert.deepStrictEqual([error.code, error.library], ['ERR_CORVANE_DEPENDENCY_NOT_FOUND', 'libodd.so.5']);
    assert.match(error.message, /Fix: install the system package that holds libodd\.so\.5/);
  });
});

describe('the Debian packages that are named', () => {
  test('hold what module and engine are linked with on this system', () => {
    const linked = new Map();
    for (const file of [moduleName, engineName]) {
      const lines = execFileSync('ldd', [path.join(folder, file)], { encoding: 'utf8' }).split('\n');
      for (const [, name, where] of lines.map((line) => /^\s*(\S+) => (\/\S+)/.exec(line)).filter(Boolean)) {
        linked.set(name, fs.realpathSync(where));
      }
    }
    const named = [...linked]
      .map(([name, file]) => ({ file: path.basename(file), debian: debianPackage(name) }))
      .filter(({ debian }) => debian !== undefined);
    assert.ok(named.length >= 2, `only ${named.length} to compare`);
    // One question about all: each reads the whole of dpkg's lists. Lines are "package:architecture: /path".
    const { stdout } = spawnSync('dpkg-query', ['-S', ...named.map(({ file }) => `*/${file}`)], { encoding: 'utf8' });
    const owners = stdout.split('\n').map((line) => /^([^:]+)(?::\w+)?: .*\/([^/]+)$/.exec(line)?.slice(1) ?? []);
    for (const { file, debian } of named) {
      assert.ok(owners.some(([owner, owned]) => owner === debian && owned === file), `${file} is not of ${debian}`);
    }
  });
});
