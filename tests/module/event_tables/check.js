'use strict';

const assert = require('node:assert');
const fs = require('node:fs');
const path = require('node:path');

const HEADERS = path.join(__dirname, '..', '..', '..', 'include', 'corvane_rtc');

/** The names of all callbacks that a header declares. */
function declaredEvents(header) {
  const text = fs.readFileSync(path.join(HEADERS, header), 'utf8');
  return [...text.matchAll(/virtual void (on\w+)\(/g)].map(([, name]) => name);
}

const isRecord = (value) => value !== null && typeof value === 'object' && !Buffer.isBuffer(value);

/** A deep copy with every leaf replaced by what `replace` makes of it. */
function mapLeaves(value, replace) {
  if (Array.isArray(value)) {
    return value.map((item) => mapLeaves(item, replace));
  }
  if (isRecord(value)) {
    return Object.fromEntries(Object.entries(value).map(([name, item]) => [name, mapLeaves(item, replace)]));
  }
  return replace(value);
}

/** The row with null for every text of its arguments, and "" for each of these texts in line and payload; or null. */
function withNullTexts([event, args, line, payload]) {
  const texts = [];
  const nulled = mapLeaves(args, (value) => {
    if (typeof value !== 'string') {
      return value;
    }
    texts.push(value);
    return null;
  });
  if (texts.length === 0) {
    return null;
  }
  return [
    event,
    nulled,
    texts.reduce((cut, text) => cut.replaceAll(text, ''), line),
    mapLeaves(payload, (value) => (texts.includes(value) ? '' : value)),
  ];
}

/** The row with a null pointer and the length of what it pointed to, where its arguments have bytes; else null. */
function withNullBytes([event, args, line, payload], countNames) {
  const found = Object.entries(args).find(([, value]) => Buffer.isBuffer(value));
  if (found === undefined) {
    return null;
  }
  const [name, bytes] = found;
  const text = bytes.toString('utf8', 0, bytes.indexOf(0));
  return [
    event,
    { ...args, [name]: null, [countNames[event]]: bytes.length },
    line.replaceAll(text, ''),
    mapLeaves(payload, (value) => (value === text ? '' : value)),
  ];
}

/**
 * Fires one row and compares what JavaScript gets, keys in their order, and the one line in the log, whose placeholder
 * for the source line any number fills. Answers that number.
 * source: what createEngine() or createRoom() gave; log: reads the log's entries; prefix: what the line has before the
 * event's name.
 */
async function checkEvent(engine, source, log, [event, args, line, payload], { prefix = '', target } = {}) {
  const seen = log().length;
  source.collector.clear();
  engine.fire(event, args, { target });
  await source.waitFor(event);
  assert.strictEqual(source.events.length, 1);
  assert.strictEqual(JSON.stringify(source.events[0]), JSON.stringify({ Type: event, Object: payload }));
  return checkLine(log().slice(seen), event, line, prefix);
}

/** The one line of an event among entries: answers its source line. */
function checkLine(entries, event, line, prefix = '') {
  const lines = entries.filter(({ text }) => new RegExp(`^\\W?${event}\\(`).test(text));
  assert.strictEqual(lines.length, 1, `lines of ${event}: ${JSON.stringify(lines)}`);
  const [{ level, text }] = lines;
  const place = /\((\d+)\)/.exec(text);
  assert.ok(place !== null && Number(place[1]) > 0, text);
  assert.strictEqual(text, `${prefix}${event}(${place[1]})${line}`);
  assert.strictEqual(level, 'I');
  return place[1];
}

module.exports = { checkEvent, checkLine, declaredEvents, withNullBytes, withNullTexts };
