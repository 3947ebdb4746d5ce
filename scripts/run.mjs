// node scripts/run.mjs <task>. Every task does the set-up that it needs, so
// that each can be the first command in a new checkout.
import { readdirSync } from 'node:fs';
import { cpus } from 'node:os';
import { join } from 'node:path';
import {
  build, fail, needDebianPackages, needNpmPackages, root, run, runQuietly,
} from './setup.mjs';

function buildWithTests(preset, folder = preset) {
  needDebianPackages('cmake', 'ninja-build', 'g++', 'libgtest-dev');
  needNpmPackages();
  return build(preset, folder);
}

function runNativeTests(folder, env = process.env) {
  const output = runQuietly('ctest', ['--test-dir', folder,
    '--output-on-failure', '--no-tests=error',
    '--parallel', String(cpus().length)], { env });
  console.log(output.slice(output.search(/^100% tests passed/m)));
}

function test() {
  runNativeTests(buildWithTests('dev', 'Release'));
}

const cppFiles = () =>
  ['foundation', 'schema', 'serialization', 'binding', 'tests'].flatMap(
    (folder) => readdirSync(join(root, folder), { recursive: true })
      .filter((name) => /\.(h|cpp)$/.test(name))
      .map((name) => join(folder, name)));

function format() {
  needDebianPackages('clang-format');
  run('clang-format', ['-i', ...cppFiles()]);
}

const tasks = { test, format };

const task = tasks[process.argv[2]];
if (task === undefined) fail(`tasks: ${Object.keys(tasks).join(', ')}`);
task();
