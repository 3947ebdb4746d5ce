// What the tests run of the product, measured by clang on the source: lines,
// branches, functions and regions by folder, and a list of what is left.
//
// Functions that a template makes count once: a line, a region or one outcome
// of a branch is covered as soon as any instantiation in any program ran it.
// Branches that an instantiation decides when it is compiled do not count.
import { mkdirSync, readdirSync, rmSync } from 'node:fs';
import { join, relative, sep } from 'node:path';
import { fail, root, run, runQuietly } from './setup.mjs';

const thresholds = { lines: 97, branches: 90 };  // per cent of the total
const folders = ['foundation', 'schema', 'serialization', 'binding'];
const kinds = ['lines', 'branches', 'functions', 'regions'];

const sources = folders.flatMap((folder) => readdirSync(join(root, folder))
  .filter((name) => /\.(h|cpp)$/.test(name))
  .map((name) => join(root, folder, name)));

// The programs that are tests, and the module.
function instrumented(build) {
  const { tests } = JSON.parse(runQuietly('ctest',
    ['--test-dir', build, '--show-only=json-v1']));
  const programs = tests.flatMap(({ command }) => command ?? [])
    .filter((path) => path.startsWith(build + sep));
  const objects = [...new Set(programs), join(build, 'brindle.node')];
  return objects.flatMap((path, i) => (i === 0 ? [path] : ['-object', path]));
}

// One map per file and kind, from places to whether they were covered.
class Findings {
  files = new Map(sources.map((file) => [file,
    Object.fromEntries(kinds.map((kind) => [kind, new Map()]))]));

  add(kind, file, place, covered) {
    const places = this.files.get(file)?.[kind];
    places?.set(place, covered || (places.get(place) ?? false));
  }

  // Lines and branches, as "12|  34|text" and "Branch (12:3): [True: 1, ...".
  readListing(listing) {
    let file;
    for (const line of listing.split('\n')) {
      const executed = line.match(/^ *(\d+)\| *([\d.]+)\w?\|/);
      const branch = line.match(
        /Branch \((\d+:\d+)\): \[True: ([\d.]+).*False: ([\d.]+)/);
      if (line.endsWith(':') && this.files.has(line.slice(0, -1))) {
        file = line.slice(0, -1);
      } else if (executed) {
        this.add('lines', file, executed[1], Number(executed[2]) > 0);
      } else if (branch) {
        this.add('branches', file, `${branch[1]} true`, Number(branch[2]) > 0);
        this.add('branches', file, `${branch[1]} false`, Number(branch[3]) > 0);
      }
    }
  }

  readFunctions(functions) {
    const CODE = 0;
    for (const { count, filenames, regions } of functions) {
      this.add('functions', filenames[0],
        regions[0].slice(0, 2).join(':'), count > 0);
      for (const region of regions.filter((each) => each[7] === CODE)) {
        this.add('regions', filenames[region[5]],
          region.slice(0, 4).join(':'), region[4] > 0);
      }
    }
  }

  // Of the files in a folder, or of all.
  count(folder, kind) {
    const covered = [...this.files]
      .filter(([file]) => relative(root, file).startsWith(folder))
      .flatMap(([, found]) => [...found[kind].values()]);
    const hit = covered.filter(Boolean).length;
    return { hit, all: covered.length, percent: 100 * hit / covered.length };
  }

  uncovered(file, kind) {
    return [...this.files.get(file)[kind]]
      .filter(([, covered]) => !covered).map(([place]) => place);
  }
}

function printTable(findings) {
  console.log(['', ...kinds].map((kind) => kind.padEnd(20)).join(''));
  for (const folder of [...folders, '']) {
    const cells = kinds.map((kind) => {
      const { hit, all, percent } = findings.count(folder, kind);
      return `${percent.toFixed(2).padStart(6)}% ${hit}/${all}`;
    });
    console.log([folder || 'total', ...cells]
      .map((cell) => cell.padEnd(20)).join('').trimEnd());
  }
}

// [3, 4, 5, 9] gives "3-5 9".
function ranges(lines) {
  const found = [];
  for (const line of lines.map(Number)) {
    if (found.at(-1)?.[1] === line - 1) found.at(-1)[1] = line;
    else found.push([line, line]);
  }
  return found.map(([from, to]) => (from === to ? from : `${from}-${to}`))
    .join(' ');
}

function printUncovered(findings) {
  for (const file of sources) {
    const lines = findings.uncovered(file, 'lines');
    // Those of a line that never ran say nothing new.
    const branches = findings.uncovered(file, 'branches')
      .filter((place) => !lines.includes(place.split(':')[0]));
    const name = relative(root, file);
    if (lines.length !== 0) console.log(`${name}: lines ${ranges(lines)}`);
    for (const place of branches) console.log(`${name}:${place}: never`);
  }
}

function checkThresholds(findings) {
  for (const [kind, wanted] of Object.entries(thresholds)) {
    const { percent } = findings.count('', kind);
    if (!(percent >= wanted)) {
      fail(`covers ${percent.toFixed(2)} % of the ${kind}, not ${wanted} %`);
    }
  }
}

// `runTests` is called with the environment that the tests have to run in.
export function measureCoverage(build, runTests) {
  const profiles = join(build, 'profiles');
  const merged = join(build, 'merged.profdata');
  const html = join(build, 'html');
  rmSync(profiles, { recursive: true, force: true });
  mkdirSync(profiles);
  runTests(
    { ...process.env, LLVM_PROFILE_FILE: join(profiles, '%p-%m.profraw') });
  runQuietly('llvm-profdata', ['merge', '-sparse', '-o', merged,
    ...readdirSync(profiles).map((name) => join(profiles, name))]);
  rmSync(profiles, { recursive: true });

  const subject = [...instrumented(build), `-instr-profile=${merged}`];
  const show = ['show', ...subject, '-show-branches=count',
    '-show-instantiations=false'];
  const findings = new Findings();
  findings.readListing(runQuietly('llvm-cov', [...show, ...sources]));
  findings.readFunctions(JSON.parse(
    runQuietly('llvm-cov', ['export', ...subject])).data[0].functions);
  run('llvm-cov', [...show, '-format=html', `-output-dir=${html}`, ...sources],
    { stdio: 'ignore' });

  printUncovered(findings);
  printTable(findings);
  console.log(`line by line: ${relative(root, join(html, 'index.html'))}`);
  checkThresholds(findings);
}
