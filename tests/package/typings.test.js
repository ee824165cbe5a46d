'use strict';
// The typings against themselves, and against the module they describe.

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');
const { test, describe } = require('node:test');

const { root, folder } = require('./support/native.js');
const { ts, checker, files, diagnose, valueNames, methodsOf, mismatches, text } = require('./support/typings.js');

process.env.CORVANE_MEETING_SDK_DIR = folder;
const sdk = require('corvane-meeting-sdk');

const classes = ['xoRTCVideo', 'xoRTCRoom', 'xoRTCAudioEffectPlayer', 'xoRTCMediaPlayer'];
const functions = Object.keys(sdk).filter((name) => !classes.includes(name));
const prototypeNames = (name) => Object.getOwnPropertyNames(sdk[name].prototype).filter((key) => key !== 'constructor');

/** Every node of the typings that passes, as "file:line". */
function nodesWhere(passes) {
  const found = [];
  for (const file of files) {
    const visit = (node) => {
      if (passes(node)) {
        const { line } = file.getLineAndCharacterOfPosition(node.getStart(file));
        found.push(`${path.relative(root, file.fileName)}:${line + 1}`);
      }
      ts.forEachChild(node, visit);
    };
    visit(file);
  }
  return found;
}

describe('what the compiler says', () => {
  test('right uses compile, and every marked mistake is found', () => {
    const config = ts.getParsedCommandLineOfConfigFile(path.join(__dirname, 'tsconfig.json'), {}, {
      ...ts.sys,
      onUnRecoverableConfigFileDiagnostic: ({ messageText }) => assert.fail(String(messageText)),
    });
    const sources = config.fileNames.filter((name) => name.startsWith(path.join(__dirname, 'typings/')));
    assert.ok(sources.length >= 5, `only ${sources.length} sources`);
    for (const source of sources) assert.match(fs.readFileSync(source, 'utf8'), /@ts-expect-error/, source);
    const program = ts.createProgram(config.fileNames, config.options);
    const ours = (name) => name.startsWith(__dirname) || name.startsWith(path.join(root, 'lib/'));
    assert.strictEqual(diagnose(program, ours), '');
  });

  test('nothing is typed as any', () => {
    assert.ok(files.length > 20);
    assert.deepStrictEqual(nodesWhere((node) => node.kind === ts.SyntaxKind.AnyKeyword), []);
  });

  test('every enumeration, record and class says what it is', () => {
    const isNamed = (node) =>
      ts.isTypeAliasDeclaration(node) || ts.isClassDeclaration(node) || (ts.isFunctionDeclaration(node) && node.name);
    const silent = nodesWhere((node) => isNamed(node) && ts.getJSDocCommentsAndTags(node).length === 0);
    // The callbacks' types say by their names what they are.
    assert.deepStrictEqual(silent.filter((place) => !place.startsWith('lib/types/events.d.ts')), []);
  });
});

describe('the typings name what the module has', () => {
  test('exports', () => {
    assert.deepStrictEqual(valueNames('require').sort(), Object.keys(sdk).sort());
    assert.deepStrictEqual(valueNames('import').sort(), [...Object.keys(sdk), 'default'].sort());
    assert.strictEqual(functions.length, 6);
  });

  for (const name of classes) {
    test(`methods of ${name}`, () => {
      const real = prototypeNames(name);
      assert.ok(real.length >= 17, `only ${real.length} methods`);
      assert.deepStrictEqual([...methodsOf(name).keys()].sort(), real.sort());
      for (const [method, signatures] of methodsOf(name)) assert.strictEqual(signatures.length, 1, method);
    });
  }
});

describe('without an engine every method answers as typed', () => {
  const made = {
    xoRTCVideo: () => new sdk.xoRTCVideo(),
    xoRTCRoom: () => new sdk.xoRTCRoom('room', () => undefined),
    xoRTCAudioEffectPlayer: () => new sdk.xoRTCAudioEffectPlayer(() => undefined),
    xoRTCMediaPlayer: () => new sdk.xoRTCMediaPlayer(0, () => undefined),
  };
  for (const name of classes) {
    test(name, () => {
      const object = made[name]();
      const wrong = [];
      for (const [method, [signature]] of methodsOf(name)) {
        // Two methods read their task id before they look for the engine.
        const result = object[method]('');
        const type = checker.getReturnTypeOfSignature(signature);
        if (result === undefined ? text(type) !== 'void' : mismatches(type, result).length > 0) {
          wrong.push(`${method}: ${JSON.stringify(result)} is not ${text(type)}`);
        }
      }
      assert.deepStrictEqual(wrong, []);
    });
  }
});
