'use strict';

const fs = require('node:fs');
const path = require('node:path');

const HEADER = /^ *\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} (?:\[(\w)\] )?\[tid: (\d+)\] /;

/** The module's dated file in a folder. */
function logFile(folder) {
  const files = fs.readdirSync(folder).filter((name) => name.endsWith('-node.log'));
  return files.length === 0 ? null : path.join(folder, files.sort().at(-1));
}

/** The lines as { level, tid, text }: level E, W, I, D, V or ''. Lines without a header continue the one before. */
function readLog(folder) {
  const file = logFile(folder);
  if (file === null) {
    return [];
  }
  const entries = [];
  for (const line of fs.readFileSync(file, 'utf8').replace(/\r\n/g, '\n').split('\n').slice(0, -1)) {
    const header = HEADER.exec(line);
    if (header !== null) {
      entries.push({ level: header[1] ?? '', tid: Number(header[2]), text: line.slice(header[0].length) });
    } else if (entries.length > 0) {
      entries.at(-1).text += `\n${line}`;
    }
  }
  return entries;
}

module.exports = { logFile, readLog };
