// npm run bench -- [--workload NAME] [--rounds N] [--quick | --smoke] [--json]
//   [--picture FILE]
import { writeFileSync } from 'node:fs';
import { cpus } from 'node:os';
import { parseArgs } from 'node:util';
import { buildBlock, specs } from './block_jobs.mjs';
import { countedGoals, timedGoals } from './goals.mjs';
import { jobs } from './jobs.mjs';
import { picture } from './picture.mjs';
import { percent, ratio, table, time } from './table.mjs';
import { race } from './timing.mjs';

const { values: options } = parseArgs({ options: {
  workload: { type: 'string', multiple: true },
  rounds: { type: 'string' },
  quick: { type: 'boolean' },
  smoke: { type: 'boolean' },
  json: { type: 'boolean' },
  picture: { type: 'string' },
} });

function effort() {
  if (options.smoke) return { rounds: 1, sliceMs: 0, limitMs: 0 };
  const rounds = Number(options.rounds ?? (options.quick ? 15 : 75));
  return { rounds, sliceMs: 2, limitMs: options.quick ? 5_000 : 20_000 };
}

function chosenWorkloads() {
  const names = options.workload ?? Object.keys(jobs);
  const unknown = names.find((name) => !(name in jobs));
  if (unknown === undefined) return names;
  throw new Error(`no workload '${unknown}': ${Object.keys(jobs).join(', ')}`);
}

function measure(workload) {
  return Object.entries(jobs[workload]()).flatMap(([job, makeWorks]) =>
    race(makeWorks(), effort()).map((lane) => ({ workload, job, ...lane })));
}

const HEADER = ['job', 'by', 'median', '±', 'times brindle'];

function workloadTable(results) {
  const rows = results.map(({ job, name, median, spread, ratio: times }) =>
    [job, name, time(median), percent(spread), ratio(times)]);
  return table(HEADER, rows);
}

function goalTable(goals) {
  const rows = goals.map(({ goal, limit, measured }) => [goal, ratio(limit),
    ratio(measured), measured <= limit ? 'met' : 'missed']);
  return table(['brindle / other', 'at most', 'measured', ''], rows);
}

// For codec_bench and count_driver.
function writeBlocks() {
  for (const [name, spec] of Object.entries(specs)) {
    const file = new URL(`../build/bench/${name}.bin`, import.meta.url);
    writeFileSync(file, buildBlock(spec));
  }
}

const say = (text) => options.json || console.log(text);

writeBlocks();
const machine = `${cpus()[0].model.trim()}, ${cpus().length} cores, ` +
  `Node.js ${process.versions.node}, ${process.platform} ${process.arch}`;
say(machine);
const results = chosenWorkloads().flatMap((workload) => {
  const measured = measure(workload);
  say(`\n## ${workload}\n\n${workloadTable(measured)}`);
  return measured;
});
const goals = [...timedGoals(results), ...await countedGoals()];
// One round says nothing about these.
if (!options.smoke) say(`\n## Must show\n\n${goalTable(goals)}`);
if (options.json) {
  console.log(JSON.stringify({ machine, results, goals }, null, 2));
}
if (options.picture !== undefined) {
  const today = new Date().toISOString().slice(0, 10);
  writeFileSync(options.picture, picture(results, machine, today));
}
