'use strict';

// Checks wrapped methods that stand in a table, one row each:
//   name     the method
//   kinds    a letter for each argument: n number, s string, b boolean, o object or function, a array, t typed array,
//            ? for one that is not tested
//   args     right arguments
//   call     the engine operation, 'Interface.operation'
//   gets     what the operation is called with
//   gives    what the engine answers (default 7), result: what JavaScript gets (default the same)
//   entry    the first line (default '+@'); null for none
//   says     the lines between the first and the last of a call that went well
//   refusal  the line of a wrong argument (default '@, Param Invalid'), or one for each; <0>, <1>, ... in it stand for
//            the type numbers of the arguments
//   level    of that line (default I)
//   exit     the last line, made from the result and whether the arguments were read
//   empty    what a call without a result answers (default -1)
// In lines, @ stands for the name and the source line in parentheses, other source lines read as (#).

const assert = require('node:assert');

const { engine } = require('./index');

const VALUES = [
  ['undefined', undefined],
  ['null', null],
  ['boolean', true],
  ['number', 1.5],
  ['string', 'text'],
  ['symbol', Symbol('symbol')],
  ['bigint', 1n],
  ['object', {}],
  ['array', []],
  ['function', () => {}],
  ['typed array', new Uint8Array([1])],
  ['data view', new DataView(new ArrayBuffer(1))],
];
const ACCEPTED = {
  n: ['number'],
  s: ['string'],
  b: ['boolean'],
  o: ['object', 'array', 'function', 'typed array', 'data view'],
  a: ['array'],
  t: ['typed array'],
};

/** The host's numbers for types, as lines print them. */
const TYPES = ['undefined', 'null', 'boolean', 'number', 'string', 'symbol', 'object', 'function', 'external', 'bigint'];
const typeNumber = (value) => TYPES.indexOf(value === null ? 'null' : typeof value);

const numberless = (text) => text.replace(/^((?:Param Invalid: |[+-])?\w+)\(\d+/, '$1(#');

/** The lines that `run` writes on the JavaScript thread, as { level, text }. */
function linesOf(log, run) {
  const before = log.entries().length;
  run();
  const entries = log.entries();
  return entries
    .slice(before)
    .filter(({ tid }) => tid === entries[0].tid)
    .map(({ level, text }) => ({ level, text: numberless(text) }));
}

const textsOf = (log, run) => linesOf(log, run).map(({ text }) => text);

class Row {
  constructor(row, defaults) {
    Object.assign(
      this,
      {
        args: [],
        gets: {},
        gives: 7,
        entry: '+@',
        says: [],
        refusal: '@, Param Invalid',
        level: 'I',
        exit: (result) => `-@, ret: ${result}`,
        empty: -1,
      },
      defaults,
      row,
    );
    this.kinds ??= '';
    if (!('result' in row)) this.result = this.gives;
  }

  line(text) {
    return text.replace('@', `${this.name}(#)`);
  }
  /** All lines of a call, less the entry line when it is `null`. */
  lines(...between) {
    return [this.entry, ...between].filter((text) => text !== null).map((text) => this.line(text));
  }
  /** Lines of a call that never came to read its arguments. */
  refused(...between) {
    // An entry line with arguments is not written without them.
    const entry = this.entry === '+@' ? this.entry : null;
    return [entry, ...between, this.exit(-1, false)].filter((text) => text !== null).map((text) => this.line(text));
  }
  refusalAt(index, args) {
    const line = Array.isArray(this.refusal) ? this.refusal[index] : this.refusal;
    return line.replace(/<(\d)>/g, (_, position) => typeNumber(args[position]));
  }
}

/** The right arguments reach the engine, its answer comes back, and the lines are exact. */
function checkRight(row, target, log) {
  engine.clear();
  engine.answer(row.call, row.gives);
  let result;
  const lines = linesOf(log, () => {
    result = target[row.name](...row.args);
  });
  engine.unanswer(row.call);
  assert.strictEqual(result, Number(row.result), `${row.name}: result`);
  assert.deepStrictEqual(
    engine.calls(row.call).map(({ args, js }) => ({ args, js })),
    [{ args: row.gets, js: true }],
    `${row.name}: engine call`,
  );
  assert.deepStrictEqual(
    lines,
    row.lines(...row.says, row.exit(row.result, true)).map((text) => ({ level: 'I', text })),
  );
}

/** Every wrong kind in every position is refused with its line and reaches no engine. */
function checkWrong(row, target, log) {
  const expected = [];
  engine.clear();
  const lines = linesOf(log, () => {
    for (let index = 0; index < row.kinds.length; ++index) {
      if (row.kinds[index] === '?') continue;
      const refuse = (args, what) => {
        const refused = row.refused(row.refusalAt(index, args)).map((text) => ({ level: 'I', text }));
        refused.at(-2).level = row.level;
        assert.deepStrictEqual(target[row.name](...args), row.empty, `${row.name}: argument ${index}, ${what}`);
        expected.push(...refused);
      };
      for (const [kind, value] of VALUES) {
        if (ACCEPTED[row.kinds[index]].includes(kind)) continue;
        // A wrong argument behind this one must not be the one that is named.
        refuse([...row.args.slice(0, index), value, ...row.args.slice(index + 1)], kind);
        refuse([...row.args.slice(0, index), value, ...row.args.slice(index + 1).fill(undefined)], kind);
      }
      refuse(row.args.slice(0, index), 'missing');
    }
  });
  assert.deepStrictEqual(lines, expected, row.name);
  assert.strictEqual(engine.countCalls(row.call), 0, `${row.name} reached the engine`);
}

/**
 * Without the object that it works on the method says so in the lines of `missing`, whatever its arguments are; or only
 * once they are right, if they are tested first.
 */
function checkMissing(row, target, log, missing, { argumentsFirst = false } = {}) {
  engine.clear();
  const calls = argumentsFirst ? [row.args] : [row.args, row.args.map(() => Symbol('wrong')), []];
  const lines = linesOf(log, () => {
    for (const args of calls) assert.deepStrictEqual(target[row.name](...args), row.empty, row.name);
  });
  const once = row.refused(...[missing].flat()).map((text) => ({ level: 'I', text }));
  assert.deepStrictEqual(lines, calls.flatMap(() => once), row.name);
  assert.strictEqual(engine.countCalls(row.call), 0, `${row.name} reached the engine`);
}

module.exports = { Row, checkRight, checkWrong, checkMissing, linesOf, textsOf, numberless };
