'use strict';
// Values made from types alone: what an application would pass that has read nothing but the typings.

const { checker, ts, propertiesOf, text } = require('./typings.js');

const isTypedArray = (type) => text(type) === 'TypedArray' || text(type).startsWith('Uint8Array');

/** Makes values that differ from each other and from 0, false and "", so that each can be found again. */
class Samples {
  #count = 1000;

  of(type, name) {
    const wanted = checker.getNonNullableType(type);
    if (isTypedArray(wanted)) return Buffer.from(`${name}-${this.#next()}`);
    if (wanted.isLiteral()) return wanted.value;
    if (wanted.flags & ts.TypeFlags.BooleanLike) return true;
    // The last member: never 0, the rule of enumerations; of records the one with most in it.
    if (wanted.isUnion()) return this.of(wanted.types.at(-1), name);
    if (wanted.flags & ts.TypeFlags.Number) return this.#next();
    if (wanted.flags & ts.TypeFlags.String) return `${name}-${this.#next()}`;
    if (checker.isArrayType(wanted)) return [this.of(checker.getTypeArguments(wanted)[0], name)];
    if (wanted.getCallSignatures().length > 0) return () => undefined;
    if (!(wanted.flags & ts.TypeFlags.Object)) throw new Error(`no sample of ${text(wanted)} for ${name}`);
    const keys = propertiesOf(wanted);
    return Object.fromEntries(keys.map(({ name: key, type: property }) => [key, this.of(property, key)]));
  }

  /** One sample for each parameter, [name, value]. */
  argumentsOf(signature) {
    return signature.parameters.map((parameter) => [
      parameter.name,
      this.of(checker.getTypeOfSymbol(parameter), parameter.name),
    ]);
  }

  #next() {
    this.#count += 1;
    return this.#count;
  }
}

module.exports = { Samples };
