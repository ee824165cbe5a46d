'use strict';
// npm run bench [-- NAME...]: runs the benchmarks, all of them or the named ones, prints a table and writes
// out/results.json: a list of { name, value, unit, limit, ratio, goal }. Each case runs in a process of its own, and its
// limit is measured in the same rounds as its value, unless it says that it is fixed: only the ratios of the former mean
// something on another machine.

const { fork } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

const casesFolder = path.join(__dirname, 'cases');
const outFolder = path.join(__dirname, 'out');

function runCase(name) {
  return new Promise((resolve, reject) => {
    const child = fork(path.join(__dirname, 'run_case.js'), [name], { stdio: ['ignore', 'ignore', 'inherit', 'ipc'] });
    let rows;
    child.on('message', (message) => {
      rows = message;
    });
    child.on('exit', (code) => (rows ? resolve(rows) : reject(new Error(`the case ${name} ended with ${code}`))));
  });
}

const number = (value) => (value === null ? '' : value >= 100 ? value.toFixed(0) : value.toPrecision(3));

const quantity = (value, unit) => (value === null ? '' : `${number(value)} ${unit}`);

function print(row) {
  const met = row.ratio === null || row.goal === null ? '' : meets(row) ? 'reached' : 'MISSED';
  const goal = row.goal === null ? '' : `${row.goal.kind === 'least' ? '>=' : '<='} ${Number(row.goal.ratio.toPrecision(3))}`;
  console.log(
    row.name.padEnd(52), quantity(row.value, row.unit).padStart(16), quantity(row.limit, row.unit).padStart(16),
    number(row.ratio).padStart(8), goal.padStart(8), met.padStart(8));
}

function meets(row) {
  return row.goal.kind === 'least' ? row.ratio >= row.goal.ratio : row.ratio <= row.goal.ratio;
}

async function main() {
  const all = fs.readdirSync(casesFolder).map((file) => path.basename(file, '.js')).sort();
  const wanted = process.argv.slice(2);
  const unknown = wanted.filter((name) => !all.includes(name));
  if (unknown.length > 0) throw new Error(`no benchmark ${unknown.join(', ')}; there are: ${all.join(', ')}`);

  fs.mkdirSync(outFolder, { recursive: true });
  const file = path.join(outFolder, 'results.json');
  const kept = wanted.length > 0 && fs.existsSync(file) ? JSON.parse(fs.readFileSync(file, 'utf8')) : [];
  const results = new Map(kept.map((row) => [row.name, row]));
  console.log('benchmark'.padEnd(52), 'value'.padStart(16), 'limit'.padStart(16), 'ratio'.padStart(8), 'goal'.padStart(8));
  for (const name of wanted.length > 0 ? wanted : all) {
    for (const row of await runCase(name)) {
      print(row);
      results.set(row.name, row);
    }
  }
  fs.writeFileSync(file, `${JSON.stringify([...results.values()], null, 2)}\n`);
}

main().catch((error) => {
  console.error(`bench: ${error.message}`);
  process.exitCode = 1;
});
