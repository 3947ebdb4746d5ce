// A copy of the project in which mutants are built and tested.
import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import {
  copyFileSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync,
  symlinkSync, writeFileSync,
} from 'node:fs';
import { basename, dirname, join, relative, sep } from 'node:path';
import { fail, root } from '../setup.mjs';
import { execute } from './execute.mjs';
import { apply } from './mutants.mjs';

const DATA_LIMIT = 3 * 2 ** 30;  // bytes
const WALL_FACTOR = 10;  // for processes that wait; one that runs has less
const precompiled = join(root, 'scripts/mutation/precompiled.cmake');

const hashOf = (path) =>
  createHash('sha256').update(readFileSync(path)).digest('hex');

// Where a command of compile_commands.json puts the object.
const outputOf = ({ command }) => command.match(/ -o (\S+) /)[1];

// The module that a file of JavaScript tests loads.
const moduleOf = (name) =>
  name.startsWith('allocation.') ? 'brindle_failing.node' : 'brindle.node';

// Files of the checkout, without what the build makes.
function projectFiles() {
  return execFileSync('git',
    ['ls-files', '-z', '--cached', '--others', '--exclude-standard'],
    { cwd: root, encoding: 'utf8' }).split('\0')
    .filter((name) => name !== '' && existsSync(join(root, name)));
}

export class Workplace {
  // { name, target, command, args, seconds, kills }, of which `seconds` is what
  // the test takes without a mutant, and `kills` counts by file.
  tests = [];

  constructor(folder) {
    this.path = join(folder, 'checkout');
    this.cwd = this.path;
    this.build = join(folder, 'build');
    this.env = { ...process.env,
      BRINDLE_TEST_MODULE: join(this.build, 'brindle.node') };
  }

  // Only files that differ, so that what has been built can be used again.
  copyProject() {
    mkdirSync(this.path, { recursive: true });
    const names = projectFiles();
    readdirSync(this.path, { recursive: true, withFileTypes: true })
      .filter((entry) => entry.isFile())
      .map((entry) => join(entry.path, entry.name))
      .filter((path) => !names.includes(relative(this.path, path)))
      .forEach((path) => rmSync(path));
    for (const name of names) {
      const to = join(this.path, name);
      if (existsSync(to) && hashOf(to) === hashOf(join(root, name))) continue;
      mkdirSync(dirname(to), { recursive: true });
      copyFileSync(join(root, name), to);
    }
    const packages = join(this.path, 'node_modules');
    if (existsSync(packages)) return;
    symlinkSync(join(root, 'node_modules'), packages);
  }

  ninja(...targets) {
    return execute('ninja', ['-C', this.build, '-j1', ...targets], this);
  }

  async prepare() {
    this.copyProject();
    const configured = await execute('cmake', ['-S', this.path,
      '-B', this.build, '-G', 'Ninja', '-DBRINDLE_TESTS=ON',
      '-DCMAKE_CXX_COMPILER=clang++', '-DCMAKE_BUILD_TYPE=None',
      '-DCMAKE_CXX_FLAGS=-O0 -w -fuse-ld=gold',
      `-DCMAKE_PROJECT_INCLUDE=${precompiled}`], this);
    if (!configured.ok) fail(configured.output);
    const built = await this.ninja();
    if (!built.ok) fail(built.output);
    this.commands = JSON.parse(readFileSync(
      join(this.build, 'compile_commands.json'), 'utf8'));
    await this.findTests();
  }

  // One for each program that CTest runs, whatever the number of its cases,
  // and for each file of JavaScript tests.
  async findTests() {
    const listed = await execute('ctest',
      ['--test-dir', this.build, '--show-only=json-v1'], this);
    const programs = new Map();
    for (const { command } of JSON.parse(listed.output).tests) {
      const [path, ...args] = command ?? [];
      if (!path?.startsWith(this.build + sep)) continue;
      const isGoogleTest = args.some((arg) => arg.startsWith('--gtest_filter'));
      const all =
        isGoogleTest ? ['--gtest_brief=1', '--gtest_fail_fast'] : args;
      programs.set([path, ...all].join(' '), { name: basename(path),
        target: basename(path), command: path, args: all });
    }
    const scripts = ['tests/js', 'fuzz/js'].flatMap((folder) =>
      readdirSync(join(this.path, folder))
        .filter((name) => name.endsWith('.test.mjs'))
        .map((name) => ({ name, target: moduleOf(name),
          command: process.execPath,
          args: ['--expose-gc', join(folder, name)] })));
    for (const test of [...programs.values(), ...scripts]) {
      const { ok, seconds } = await this.runTest({ ...test, seconds: 60 });
      if (ok) this.tests.push({ ...test, seconds, kills: {} });
      else console.log(`${test.name} fails without a mutant: left out`);
    }
  }

  // The limit of processor time does not depend on what else the machine does.
  runTest({ command, args, seconds }) {
    const limit = Math.ceil(2 + 3 * seconds);
    return execute('prlimit', [`--cpu=${limit}`, `--data=${DATA_LIMIT}`,
      '--core=0', command, ...args],
    { cwd: this.path, env: this.env, seconds: WALL_FACTOR * limit });
  }

  // The likely killers first: those of the area, then those that have killed
  // mutants of this file; native tests before JavaScript.
  testsFor(file) {
    const area = dirname(file);
    const rank = (test) => (test.name.startsWith(area) ? -2 : 0) +
      (test.command === process.execPath ? 1 : 0);
    return [...this.tests].sort((a, b) => rank(a) - rank(b) ||
      (b.kills[file] ?? 0) - (a.kills[file] ?? 0) || a.seconds - b.seconds);
  }

  // The source files that a mutant of `file` can change.
  async dependents(file) {
    if (file.endsWith('.cpp')) return [file];
    const { output } = await execute('ninja',
      ['-C', this.build, '-t', 'deps'], this);
    const changed = new Set(output.split('\n\n')
      .filter((block) => block.includes(`${join(this.path, file)}\n`))
      .map((block) => block.match(/^(\S+): #deps/m)[1]));
    return this.commands.filter((entry) => changed.has(outputOf(entry)))
      .map((entry) => entry.file.slice(this.path.length + 1));
  }

  // What an optimizing compiler makes of a source file.
  async optimized(source) {
    const entry = this.commands.find(
      ({ file }) => file === join(this.path, source));
    const object = join(this.path, 'optimized.o');
    // The precompiled headers were made for another level.
    const line = entry.command.replace(`-o ${outputOf(entry)}`, `-o ${object}`)
      .replace(/-Winvalid-pch .*? -o /, '-o ').replace('-O0', '-O2');
    const { ok } = await execute('sh', ['-c', line],
      { cwd: entry.directory, env: this.env });
    return ok ? hashOf(object) : null;
  }

  async isEquivalent(file, original, mutated) {
    for (const source of await this.dependents(file)) {
      this.write(file, original);
      const before = await this.optimized(source);
      this.write(file, mutated);
      if (before === null || before !== await this.optimized(source)) {
        return false;
      }
    }
    return true;
  }

  write(file, text) { writeFileSync(join(this.path, file), text); }

  async runTests(file) {
    for (const test of this.testsFor(file)) {
      const built = await this.ninja(test.target);
      if (!built.ok) return { outcome: 'invalid' };
      const { ok } = await this.runTest(test);
      if (ok) continue;
      test.kills[file] = (test.kills[file] ?? 0) + 1;
      return { outcome: 'killed', by: test.name };
    }
    return { outcome: 'survived' };
  }

  // Leaves the file as it was.
  async judge({ file, ...mutant }) {
    const original = readFileSync(join(root, file), 'utf8');
    const mutated = apply(original, mutant);
    this.write(file, mutated);
    try {
      const result = await this.runTests(file);
      if (result.outcome === 'survived' &&
          await this.isEquivalent(file, original, mutated)) {
        return { outcome: 'equivalent' };
      }
      return result;
    } finally {
      this.write(file, original);
    }
  }
}
