// node scripts/run.mjs <task>. Every task does the set-up that it needs, so
// that each can be the first command in a new checkout.
import { readdirSync } from 'node:fs';
import { cpus } from 'node:os';
import { join } from 'node:path';
import { bench } from './bench.mjs';
import { fuzz } from './fuzz.mjs';
import { man } from './man.mjs';
import { measureCoverage } from './coverage.mjs';
import { mutate } from './mutate.mjs';
import { makePackage } from './package.mjs';
import {
  build, fail, needDebianPackages, needNpmPackages, root, run, runQuietly,
  wishDebianPackages,
} from './setup.mjs';
import { fuzzJs, runJsFuzz } from './js_fuzz.mjs';
import { sanitizedModuleEnv, sanitizerEnv } from './sanitizer.mjs';
import { takeScreenshots } from './screenshots.mjs';
import { checkTypes } from './types.mjs';

function buildModule() {
  needDebianPackages('cmake', 'ninja-build', 'g++');
  needNpmPackages();
  build('release', 'Release');
}

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

function runJsTests(env = process.env, except = []) {
  wishDebianPackages('chromium');
  // Named one by one: what a folder means to --test depends on the version.
  const files = readdirSync(join(root, 'tests/js'))
    .filter((name) => name.endsWith('.test.mjs') && !except.includes(name))
    .map((name) => join('tests/js', name));
  run(process.execPath, ['--test', '--test-reporter=spec', ...files], { env });
}

function bounds() {
  buildModule();
  run(process.execPath, ['fuzz/bounds/measure.mjs']);
}

function demo() {
  buildModule();
  run(process.execPath, ['examples/demo.mjs']);
}

function screenshots() {
  buildModule();
  return takeScreenshots();
}

function test() {
  runNativeTests(buildWithTests('dev', 'Release'));
  runJsTests();
  runJsFuzz();
  checkTypes();
  man('--check');
}

// With the module that is there, however it was built. The test of failing
// allocations needs another one, which only "test" builds.
function testJs() {
  needNpmPackages();
  runJsTests(process.env, ['allocation.test.mjs']);
  checkTypes();
}

function asan() {
  buildModule();  // for the tests of the loader
  const folder = buildWithTests('asan');
  runNativeTests(folder, sanitizerEnv);
  runJsTests(sanitizedModuleEnv(folder));
}

function soak(...args) {
  buildModule();
  run(process.execPath, ['fuzz/js/soak.mjs', ...args]);
}

function coverage() {
  buildModule();  // for the tests of the loader
  needDebianPackages('clang', 'llvm');
  const folder = buildWithTests('coverage');
  measureCoverage(folder, (env) => {
    runNativeTests(folder, env);
    const moduleEnv = { ...env, BRINDLE_TEST_MODULE: join(folder, 'brindle.node') };
    runJsTests(moduleEnv);
    runJsFuzz(0, moduleEnv);
  });
}

const cppFiles = () =>
  ['foundation', 'schema', 'serialization', 'binding', 'tests', 'fuzz', 'bench']
    .flatMap((folder) => readdirSync(join(root, folder), { recursive: true })
      .filter((name) => /^(?!node_modules).*\.(h|cpp)$/.test(name))
      .map((name) => join(folder, name)));

function format() {
  needDebianPackages('clang-format');
  run('clang-format', ['-i', ...cppFiles()]);
}

function lint() {
  needDebianPackages('cmake', 'ninja-build', 'libgtest-dev', 'clang',
    'clang-format', 'clang-tidy');
  needNpmPackages();
  runQuietly('clang-format', ['--dry-run', '-Werror', ...cppFiles()]);
  console.log('clang-format: clean');
  const folder = build('clang');
  console.log('clang++: no warnings');
  // Not the tests, whose folders have the same names: the macros of GoogleTest
  // would have to be excused one by one.
  const product = '(?<!/tests/native)' +
    '/(foundation|schema|serialization|binding)/\\w+\\.cpp$';
  runQuietly('run-clang-tidy', ['-quiet', '-p', folder, product]);
  console.log('clang-tidy: clean');
}

const tasks = {
  build: buildModule, demo, test, 'test:js': testJs, asan, fuzz, 'fuzz:js': fuzzJs, bounds, soak,
  coverage, mutate, bench, lint, format, package: makePackage, man, screenshots,
};

const task = tasks[process.argv[2]];
if (task === undefined) fail(`tasks: ${Object.keys(tasks).join(', ')}`);
await task(...process.argv.slice(3));
