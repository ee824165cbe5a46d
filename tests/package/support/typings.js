'use strict';
// The package's typings, as the compiler understands them.

const path = require('node:path');
const ts = require('typescript');

const { root } = require('./native.js');

const options = {
  module: ts.ModuleKind.NodeNext,
  moduleResolution: ts.ModuleResolutionKind.NodeNext,
  target: ts.ScriptTarget.ES2022,
  strict: true,
  noEmit: true,
  types: ['node'],
};
const entries = { require: path.join(root, 'lib/index.d.ts'), import: path.join(root, 'lib/index.d.mts') };
const program = ts.createProgram({ rootNames: Object.values(entries), options });
const checker = program.getTypeChecker();

/** The typings' own source files. */
const files = program.getSourceFiles().filter((file) => file.fileName.startsWith(path.join(root, 'lib/')));

const moduleSymbol = (entry) => checker.getSymbolAtLocation(program.getSourceFile(entries[entry]));
const resolved = (symbol) =>
  symbol.flags & ts.SymbolFlags.Alias ? checker.getAliasedSymbol(symbol) : symbol;

/** Everything the entry exports, types included, by name. */
function exported(entry = 'require') {
  return new Map(checker.getExportsOfModule(moduleSymbol(entry)).map((symbol) => [symbol.name, resolved(symbol)]));
}

/** Names of what there is at run time, for `require` or for `import`. */
function valueNames(entry) {
  // `export =` in the other entry has no flag of its own, so its default is asked for by name.
  const isValue = ([name, symbol]) => name === 'default' || (symbol.flags & ts.SymbolFlags.Value) !== 0;
  return [...exported(entry)].filter(isValue).map(([name]) => name);
}

function typeNamed(name) {
  const symbol = exported().get(name);
  if (symbol === undefined) throw new Error(`the typings have no ${name}`);
  return checker.getDeclaredTypeOfSymbol(symbol);
}

/** The signatures of a class's methods, by name. */
function methodsOf(className) {
  const properties = checker.getPropertiesOfType(typeNamed(className));
  return new Map(properties.map((method) => [method.name, checker.getTypeOfSymbol(method).getCallSignatures()]));
}

/** The types of a record's properties. One that is never there only tells members of a union apart: left out. */
function propertiesOf(type) {
  return checker
    .getPropertiesOfType(type)
    .map((symbol) => ({
      name: symbol.name,
      optional: (symbol.flags & ts.SymbolFlags.Optional) !== 0,
      type: checker.getTypeOfSymbol(symbol),
    }))
    .filter(({ type: property }) => !(property.flags & ts.TypeFlags.Undefined));
}

/** What of a value is not as its type says, each as one text. Numbers may be any number: engines know more of them. */
function mismatches(type, value, at = 'value') {
  const told = [`${at}: ${JSON.stringify(value)} is not ${text(type)}`];
  const literal = literalType(value);
  if (literal !== undefined) {
    const anyNumber = typeof value === 'number' && checker.isTypeAssignableTo(type, checker.getNumberType());
    return anyNumber || checker.isTypeAssignableTo(literal, type) ? [] : told;
  }
  if (type.isUnion()) {
    const byMember = type.types.map((member) => mismatches(member, value, at));
    return byMember.reduce((best, found) => (found.length < best.length ? found : best), byMember[0]);
  }
  if (Buffer.isBuffer(value)) return text(type).startsWith('Buffer') ? [] : told;
  if (Array.isArray(value)) {
    if (!checker.isArrayType(type)) return told;
    const [element] = checker.getTypeArguments(type);
    return value.flatMap((item, i) => mismatches(element, item, `${at}[${i}]`));
  }
  if (typeof value !== 'object' || value === null || !(type.flags & ts.TypeFlags.Object)) return told;

  const keys = Object.keys(value);
  const expected = propertiesOf(type).filter(({ name, optional }) => !optional || keys.includes(name));
  const named = expected.map(({ name }) => name);
  if (named.sort().join() !== keys.sort().join()) return [`${at}: has the keys ${keys}, typed are ${named}`];
  return expected.flatMap(({ name, type: property }) => mismatches(property, value[name], `${at}.${name}`));
}

function literalType(value) {
  if (typeof value === 'number') return checker.getNumberLiteralType(value);
  if (typeof value === 'string') return checker.getStringLiteralType(value);
  if (typeof value === 'boolean') return value ? checker.getTrueType() : checker.getFalseType();
  return undefined;
}

function text(type) {
  return checker.typeToString(type);
}

/** What the compiler has to say about the files that pass, one text a line; libraries are not its subject here. */
function diagnose(compiled, isOurs) {
  const ours = compiled.getSourceFiles().filter((file) => isOurs(file.fileName));
  const found = ours.flatMap((file) => [
    ...compiled.getSyntacticDiagnostics(file),
    ...compiled.getSemanticDiagnostics(file),
  ]);
  return ts.formatDiagnostics([...compiled.getOptionsDiagnostics(), ...found], {
    getCanonicalFileName: (name) => name,
    getCurrentDirectory: () => root,
    getNewLine: () => '\n',
  });
}

module.exports = {
  ...{ ts, checker, files, diagnose },
  ...{ valueNames, typeNamed, methodsOf, propertiesOf, mismatches, text },
};
