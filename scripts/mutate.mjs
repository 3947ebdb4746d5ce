// npm run mutate -- [options] [glob...]: plants small faults in the product,
// one at a time, and asks whether the tests notice.
//
//   --sample N    so many mutants, spread evenly over the code (default 300)
//   --seed S      another sample of the same size (default 1)
//   --all         every mutant
//   --workers W   how many at a time (default: one per processor)
//   --minutes M   begin none after that time; headers, which are slow, are last
//   --files GLOB  only in these files, as the bare GLOBs do
//
// Work is done in copies below build/mutate, never in the checkout.
import { mkdirSync, readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { availableParallelism } from 'node:os';
import { join } from 'node:path';
import { parseArgs } from 'node:util';
import { mutantsOf } from './mutation/mutants.mjs';
import { Workplace } from './mutation/workplace.mjs';
import { needDebianPackages, needNpmPackages, root } from './setup.mjs';

const folders = ['foundation', 'schema', 'serialization', 'binding'];
const workFolder = join(root, 'build', 'mutate');

function readOptions(args) {
  const { values, positionals } = parseArgs({ args, allowPositionals: true,
    options: {
      sample: { type: 'string', default: '300' },
      seed: { type: 'string', default: '1' },
      all: { type: 'boolean', default: false },
      workers: { type: 'string', default: String(availableParallelism()) },
      minutes: { type: 'string', default: 'Infinity' },
      files: { type: 'string', multiple: true, default: [] },
    } });
  return {
    sample: values.all ? Infinity : Number(values.sample),
    seed: Number(values.seed),
    workers: Number(values.workers),
    minutes: Number(values.minutes),
    globs: [...values.files, ...positionals],
  };
}

function matches(file, glob) {
  const pattern = glob.replace(/[.+^${}()|[\]\\]/g, '\\$&')
    .replaceAll('*', '.*').replaceAll('?', '.');
  return new RegExp(`^${pattern}$`).test(file);
}

function allMutants(globs) {
  const files = folders.flatMap((folder) => readdirSync(join(root, folder))
    .filter((name) => /\.(h|cpp)$/.test(name))
    .map((name) => `${folder}/${name}`))
    .filter((file) => globs.length === 0 ||
      globs.some((glob) => matches(file, glob)));
  return files.flatMap((file) =>
    mutantsOf(readFileSync(join(root, file), 'utf8'))
      .map((mutant) => ({ file, ...mutant })));
}

// Numbers from 0 to 1, always the same for one seed.
function* random(seed) {
  for (let state = seed; ; ) {
    state = (Math.imul(state ^ (state >>> 15), 0x2C1B3C6D) + 0x6D2B79F5) | 0;
    let mixed = Math.imul(state ^ (state >>> 12), 0x297A2D39);
    mixed ^= mixed >>> 15;
    yield (mixed >>> 0) / 2 ** 32;
  }
}

// One out of each of n stretches of equal length, so that every file is
// represented by its share.
function sampleOf(mutants, n, seed) {
  if (n >= mutants.length) return mutants;
  const numbers = random(seed);
  const stretch = mutants.length / n;
  return Array.from({ length: n }, (_, i) =>
    mutants[Math.floor((i + numbers.next().value) * stretch)]);
}

// All of one file go to one worker: only the file has to be built again.
function byFile(mutants) {
  const files = [...new Set(mutants.map(({ file }) => file))];
  const groups = files.map((wanted) =>
    mutants.filter(({ file }) => file === wanted));
  const isHeader = ([{ file }]) => file.endsWith('.h');
  return groups.sort((a, b) =>
    isHeader(a) - isHeader(b) || b.length - a.length);
}

function summaryOf(results) {
  const count = (wanted) =>
    results.filter(({ outcome }) => outcome === wanted).length;
  const killed = count('killed');
  const survived = count('survived');
  return { killed, survived, equivalent: count('equivalent'),
    invalid: count('invalid'), score: 100 * killed / (killed + survived) };
}

function describe({ killed, survived, equivalent, invalid, score }) {
  return `${killed} killed, ${survived} survived (${score.toFixed(1)} %); ` +
    `${equivalent} equivalent, ${invalid} do not compile`;
}

function printSurvivors(results) {
  const survivors = results.filter(({ outcome }) => outcome === 'survived');
  const order = (a, b) => a.file.localeCompare(b.file) || a.line - b.line;
  for (const { file, line, column, original, mutated } of
    survivors.sort(order)) {
    console.log(`${file}:${line}:${column}\n  - ${original}\n  + ${mutated}`);
  }
}

async function work(workplace, groups, results, deadline) {
  for (let group; (group = groups.shift()) !== undefined; ) {
    for (const mutant of group) {
      if (Date.now() > deadline) return;
      const start = Date.now();
      const judgement = await workplace.judge(mutant);
      const seconds = (Date.now() - start) / 1000;
      results.push({ ...mutant, ...judgement, seconds });
    }
  }
}

async function judgeAll(mutants, { workers, minutes }) {
  const workplaces = Array.from({ length: workers },
    (_, i) => new Workplace(join(workFolder, String(i))));
  console.log(`${mutants.length} mutants, ${workers} at a time; ` +
    'building what they change');
  await Promise.all(workplaces.map((workplace) => workplace.prepare()));
  const results = [];
  const report = () => console.log(
    `${results.length}/${mutants.length}: ${describe(summaryOf(results))}`);
  const timer = setInterval(report, 30000);
  const groups = byFile(mutants);
  const deadline = Date.now() + minutes * 60000;
  await Promise.all(workplaces.map((workplace) =>
    work(workplace, groups, results, deadline)));
  clearInterval(timer);
  return results;
}

export async function mutate(...args) {
  const options = readOptions(args);
  needDebianPackages('cmake', 'ninja-build', 'g++', 'libgtest-dev', 'clang');
  needNpmPackages();
  for (const signal of ['SIGINT', 'SIGTERM']) {
    process.on(signal, () => process.exit(1));
  }
  mkdirSync(workFolder, { recursive: true });
  const mutants = sampleOf(allMutants(options.globs), options.sample,
    options.seed);
  const results = await judgeAll(mutants, options);
  const summary = summaryOf(results);
  const report = join(workFolder, 'report.json');
  writeFileSync(report, JSON.stringify({ options, summary, results }, null, 1));
  printSurvivors(results);
  console.log(describe(summary));
  const left = mutants.length - results.length;
  if (left !== 0) console.log(`${left} not judged for want of time`);
  console.log(`all of them: ${report}`);
}
