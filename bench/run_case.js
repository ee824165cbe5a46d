'use strict';
// One benchmark in a process of its own; reports its rows to run.js.

const path = require('node:path');

const rows = require(path.join(__dirname, 'cases', process.argv[2]));
rows().then(
  (result) => process.send(result, () => process.exit(0)),
  (error) => {
    console.error(error);
    process.exit(1);
  },
);
