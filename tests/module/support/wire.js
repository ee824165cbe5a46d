'use strict';

// Values between JavaScript and the scripted engine. JSON carries neither bytes nor 64-bit integers: these travel as
// {"$bytes": base64} and {"$int": digits}.

function wrap(value) {
  if (typeof value === 'bigint') {
    return { $int: value.toString() };
  }
  if (typeof value === 'number' && !Number.isFinite(value)) {
    return { $double: String(value) };
  }
  if (ArrayBuffer.isView(value)) {
    return { $bytes: Buffer.from(value.buffer, value.byteOffset, value.byteLength).toString('base64') };
  }
  return value;
}

/** Buffers, BigInts, NaN and the infinities are allowed anywhere. */
function encode(value) {
  // Not the replacer's own argument: for a Buffer that is already the result of its toJSON().
  return JSON.stringify(value, function replace(key) {
    return wrap(this[key]);
  });
}

function decode(text) {
  return JSON.parse(text, (key, value) => {
    if (value !== null && typeof value === 'object') {
      if (typeof value.$bytes === 'string') {
        return Buffer.from(value.$bytes, 'base64');
      }
      if (typeof value.$int === 'string') {
        return BigInt(value.$int);
      }
      if (typeof value.$double === 'string') {
        return Number(value.$double);
      }
    }
    return value;
  });
}

module.exports = { encode, decode };
