'use strict';
// Where the module under test lies. Any engine will do to look at the package's face; the scripted one is made with the
// tests, so it is the one that is always there.

const fs = require('node:fs');
const path = require('node:path');

const root = path.resolve(__dirname, '../../..');
const moduleName = 'corvane_meeting_sdk.node';
const engineName = process.platform === 'win32' ? 'CorvaneRTC.dll' : 'libCorvaneRTC.so';

function firstWith(folders, files) {
  const found = folders.find((folder) => folder && files.every((file) => fs.existsSync(path.join(folder, file))));
  if (found === undefined) throw new Error(`no ${files.join(', ')} in any of: ${folders.filter(Boolean).join(', ')}`);
  return path.resolve(found);
}

const ordered = process.env.CORVANE_MEETING_SDK_DIR;
const scripted = path.join(root, 'build/release/scripted');

/** A folder with the module and an engine. */
const folder = firstWith([ordered, path.join(root, 'build/release'), scripted], [moduleName, engineName]);
/** A folder with the module, the scripted engine and the add-on that drives it. */
const scriptedFolder = () => firstWith([ordered, scripted], [moduleName, engineName, 'scripted_driver.node']);

module.exports = { root, folder, scriptedFolder, moduleName, engineName };
