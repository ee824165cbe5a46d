'use strict';
// The package as it is packed and installed: its files, both entries, and its typings as an application's compiler
// finds them.

const assert = require('node:assert');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test, describe, after, before } = require('node:test');

const { root, folder, moduleName, engineName } = require('./support/native.js');
const { ts, diagnose } = require('./support/typings.js');

const temporary = fs.mkdtempSync(path.join(os.tmpdir(), 'corvane-package-'));
after(() => fs.rmSync(temporary, { recursive: true, force: true }));

const names = [
  ...['xoRTCVideo', 'xoRTCRoom', 'xoRTCAudioEffectPlayer', 'xoRTCMediaPlayer'],
  ...['setLogConfig', 'getSDKVersion', 'getTimestampMs', 'getTimestampUs'],
  ...['getCurrentProcessId', 'getErrorDescription'],
];

/** Nothing of the machine's own npm settings, and no network. */
const env = { ...process.env, npm_config_offline: 'true', npm_config_cache: path.join(temporary, 'cache') };
delete env.CORVANE_MEETING_SDK_DIR;
const npm = (cwd, ...args) =>
  execFileSync('npm', [...args, '--ignore-scripts', '--loglevel=error'], { cwd, env, encoding: 'utf8', stdio: 'pipe' });

const filesBelow = (top) =>
  fs
    .readdirSync(top, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => path.relative(root, path.join(entry.parentPath ?? entry.path, entry.name)));

test('packing takes the face, the binaries and what plug-ins are built from, and nothing else', () => {
  const [{ files }] = JSON.parse(npm(root, 'pack', '--dry-run', '--json'));
  const packed = files.map(({ path: file }) => file);
  assert.deepStrictEqual(filesBelow(path.join(root, 'lib')).filter((file) => !packed.includes(file)), []);
  const binaries = [moduleName, engineName, 'libCorvaneRTCService.so'].map((name) => `build/release/${name}`);
  const papers = ['package.json', 'README.md', 'LICENSE', 'CHANGELOG.md'];
  const forPlugins = ['include/corvane_plugin.h', ...filesBelow(path.join(root, 'examples/plugins'))];
  const isMeant = (file) =>
    /^(lib|prebuilds)\//.test(file) || [...binaries, ...papers, ...forPlugins].includes(file);
  assert.deepStrictEqual(packed.filter((file) => !isMeant(file)), []);
  for (const file of ['package.json', 'LICENSE', ...forPlugins]) assert.ok(packed.includes(file), file);
  for (const file of binaries) {
    assert.strictEqual(packed.includes(file), fs.existsSync(path.join(root, file)), file);
  }
});

describe('installed into an application', () => {
  const app = path.join(temporary, 'app');
  const write = (name, ...lines) => fs.writeFileSync(path.join(app, name), `${lines.join('\n')}\n`);
  const node = (...args) => execFileSync(process.execPath, args, { cwd: app, env, encoding: 'utf8' });

  before(() => {
    // A copy to pack, with the binaries of the build under test, whichever that is.
    const stage = path.join(temporary, 'stage');
    const prebuilt = path.join(stage, 'prebuilds/linux-x64');
    fs.mkdirSync(prebuilt, { recursive: true });
    for (const file of ['lib', 'package.json', 'LICENSE']) {
      fs.cpSync(path.join(root, file), path.join(stage, file), { recursive: true });
    }
    for (const file of [moduleName, engineName]) fs.copyFileSync(path.join(folder, file), path.join(prebuilt, file));
    const [{ filename }] = JSON.parse(npm(stage, 'pack', '--json'));
    fs.mkdirSync(app);
    write('package.json', '{ "name": "app", "version": "1.0.0" }');
    npm(app, 'install', '--no-audit', '--no-fund', path.join(stage, filename));
  });

  test('it is there with its binaries and brings nothing along', () => {
    const home = path.join(app, 'node_modules');
    assert.deepStrictEqual(fs.readdirSync(home).filter((name) => !name.startsWith('.')), ['corvane-meeting-sdk']);
    assert.ok(fs.existsSync(path.join(home, 'corvane-meeting-sdk/prebuilds/linux-x64', moduleName)));
  });

  test('require', () => {
    write(
      'main.cjs',
      `const sdk = require('corvane-meeting-sdk');`,
      `const pid = sdk.getCurrentProcessId() === String(process.pid);`,
      `const created = new sdk.xoRTCRoom('room', () => {}).isRoomCreated();`,
      `console.log(JSON.stringify({ keys: Object.keys(sdk), pid, created }));`,
    );
    assert.deepStrictEqual(JSON.parse(node('main.cjs')), { keys: names, pid: true, created: false });
  });

  test('import', () => {
    write(
      'main.mjs',
      `import sdk, * as named from 'corvane-meeting-sdk';`,
      `import { createRequire } from 'node:module';`,
      `const required = createRequire(import.meta.url)('corvane-meeting-sdk');`,
      `const differ = Object.keys(required).filter((name) => named[name] !== required[name]);`,
      `console.log(JSON.stringify({ names: Object.keys(named).sort(), same: sdk === required, differ }));`,
    );
    const expected = { names: [...names, 'default'].sort(), same: true, differ: [] };
    assert.deepStrictEqual(JSON.parse(node('main.mjs')), expected);
  });

  test('inner files are not for the application', () => {
    const reach = `try { require('corvane-meeting-sdk/lib/loader.js') } catch (error) { console.log(error.code) }`;
    assert.strictEqual(node('-e', reach).trim(), 'ERR_PACKAGE_PATH_NOT_EXPORTED');
  });

  const { CommonJS, ESNext, NodeNext } = ts.ModuleKind;
  const compilers = {
    'nodenext, CommonJS': ['app.cts', NodeNext, ts.ModuleResolutionKind.NodeNext],
    'nodenext, ES module': ['app.mts', NodeNext, ts.ModuleResolutionKind.NodeNext],
    bundler: ['app.ts', ESNext, ts.ModuleResolutionKind.Bundler],
    'node10 resolution': ['app.ts', CommonJS, ts.ModuleResolutionKind.Node10],
  };
  for (const [title, [source, module, moduleResolution]] of Object.entries(compilers)) {
    test(`typings: ${title}`, () => {
      write(
        source,
        `import { xoRTCVideo, type EngineEvent } from 'corvane-meeting-sdk';`,
        `const engine = new xoRTCVideo();`,
        `const result: number = engine.createRTCVideo('app', (event: EngineEvent) => event.Type, '{}');`,
        `// @ts-expect-error the typings are found and not loose`,
        `engine.setPlaybackVolume(String(result));`,
      );
      const types = { types: ['node'], typeRoots: [path.join(root, 'node_modules/@types')] };
      const target = { target: ts.ScriptTarget.ES2022, module, moduleResolution };
      const program = ts.createProgram([path.join(app, source)], { noEmit: true, strict: true, ...target, ...types });
      const found = program.getSourceFiles().map(({ fileName }) => fileName);
      assert.ok(found.some((name) => name.includes('node_modules/corvane-meeting-sdk/')));
      assert.strictEqual(diagnose(program, (name) => name.startsWith(app)), '');
    });
  }
});
