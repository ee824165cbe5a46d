'use strict';

// Records as arguments: objects and arrays of them, down to what they hold.

const isGroup = (value) => value !== null && typeof value === 'object' && !ArrayBuffer.isView(value);

/** The keys of a record in the order of its writing, those of each record in it behind its key. */
const keysOf = (value) => {
  if (Array.isArray(value)) return value.flatMap(keysOf);
  return isGroup(value) ? Object.entries(value).flatMap(([key, item]) => [key, ...keysOf(item)]) : [];
};

/** The same record, which notes in `keys` what is read of it. Arrays stay arrays. */
function watched(value, keys) {
  if (Array.isArray(value)) return value.map((item) => watched(item, keys));
  if (!isGroup(value)) return value;
  return new Proxy(value, {
    get(target, key) {
      keys.push(key);
      return watched(target[key], keys);
    },
  });
}

module.exports = { isGroup, keysOf, watched };
