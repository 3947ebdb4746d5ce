// Makes a checkout ready to run: Debian packages, npm packages, native builds.
// Each step first looks whether there is anything to do.
import { spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import {
  existsSync, readFileSync, readdirSync, rmSync, writeFileSync,
} from 'node:fs';
import { delimiter, join } from 'node:path';
import { fileURLToPath } from 'node:url';

export const root = fileURLToPath(new URL('..', import.meta.url));

export function fail(message) {
  console.error(`brindle: ${message}`);
  process.exit(1);
}

// Runs a command in the checkout; if it fails, so does this process.
export function run(command, args, options = {}) {
  const result = spawnSync(command, args,
    { cwd: root, stdio: 'inherit', encoding: 'utf8', ...options });
  if (result.status === 0) return result.stdout;
  // Null unless runQuietly held it back.
  process.stderr.write(`${result.stdout ?? ''}${result.stderr ?? ''}`);
  const reason = result.error?.message ??
    `failed (${result.signal ?? `exit code ${result.status}`})`;
  fail(`${command}: ${reason}`);
}

// The same for a command whose output is shown only when it fails; returns it.
export function runQuietly(command, args, options = {}) {
  return run(command, args, { stdio: 'pipe', maxBuffer: Infinity, ...options });
}

const onPath = (program) => process.env.PATH.split(delimiter)
  .some((folder) => existsSync(join(folder, program)));

// The libraries that clang links for -fsanitize=fuzzer.
function hasFuzzerLibraries() {
  const { stdout } = spawnSync('clang++', ['-print-runtime-dir'],
    { encoding: 'utf8' });
  const folder = stdout?.trim();
  return existsSync(folder ?? '') &&
    readdirSync(folder).some((name) => name.startsWith('libclang_rt.fuzzer'));
}

// Each package with the test that makes installing it unnecessary.
const debianPackages = {
  cmake: () => onPath('cmake'),
  'ninja-build': () => onPath('ninja'),
  'g++': () => onPath('g++'),
  'libgtest-dev': () => existsSync('/usr/include/gtest/gtest.h'),
  'libbenchmark-dev': () => existsSync('/usr/include/benchmark/benchmark.h'),
  valgrind: () => onPath('valgrind'),
  clang: () => onPath('clang++'),
  'libclang-rt-dev': hasFuzzerLibraries,
  llvm: () => onPath('llvm-symbolizer') && onPath('llvm-cov'),
  'clang-format': () => onPath('clang-format'),
  'clang-tidy': () => onPath('run-clang-tidy'),
  chromium: () => onPath('chromium'),
  pngquant: () => onPath('pngquant'),
};

const missingOf = (names) => names.filter((name) => !debianPackages[name]());
const canInstall = () => process.getuid?.() === 0 && onPath('apt-get');

export function needDebianPackages(...names) {
  const missing = missingOf(names);
  if (missing.length === 0) return;
  if (!canInstall()) {
    fail('build tools are missing. On Debian or Ubuntu run\n' +
      `    sudo apt-get install -y ${missing.join(' ')}`);
  }
  install(missing, runQuietly);
}

// For what is of use but not necessary: installs it where that is possible.
export function wishDebianPackages(...names) {
  const missing = missingOf(names);
  if (missing.length !== 0 && canInstall()) install(missing, spawnSync);
}

function install(names, runLast) {
  console.log(`brindle: installing ${names.join(', ')}`);
  const env = { ...process.env, DEBIAN_FRONTEND: 'noninteractive' };
  const args = ['install', '-y', '-qq', '--no-install-recommends', ...names];
  // On a new machine the package lists are absent or out of date.
  if (spawnSync('apt-get', args, { env, stdio: 'ignore' }).status !== 0) {
    runLast('apt-get', ['update', '-qq'], { env });
    runLast('apt-get', args, { env });
  }
}

const readJson = (file) => JSON.parse(readFileSync(join(root, file), 'utf8'));

// npm keeps its own record of what lies in node_modules.
function npmPackagesMatchLock(folder) {
  const record = join(folder, 'node_modules/.package-lock.json');
  if (!existsSync(join(root, record))) return false;
  const installed = readJson(record).packages;
  return Object.entries(readJson(join(folder, 'package-lock.json')).packages).every(
    ([path, { version, optional }]) =>
      path === '' || optional || installed[path]?.version === version);
}

// Those of a folder that has a package of its own.
export function needNpmPackages(folder = '.') {
  if (npmPackagesMatchLock(folder)) return;
  console.log('brindle: installing the npm packages');
  // The "prepare" script would start the build that waits for this step.
  runQuietly('npm', ['ci', '--prefix', folder, '--ignore-scripts',
    '--include=dev', '--no-audit', '--no-fund']);
}

// Stands for what a build folder depends on without its build system noticing:
// the path of the checkout, the presets, and the packages with the headers, as
// npm gives files a date of long ago and a new version then looks old.
function buildKey(preset) {
  const hash = createHash('sha256').update(root);
  for (const file of ['CMakePresets.json', 'package-lock.json']) {
    hash.update(readFileSync(join(root, file)));
  }
  return `${preset} ${hash.digest('hex')}`;
}

// Builds a preset and returns its folder. The key is written only after
// configuring has succeeded; a folder with any other key starts clean.
export function build(preset, folder = preset) {
  const path = join(root, 'build', folder);
  const keyFile = join(path, '.brindle-key');
  const key = existsSync(keyFile) ? readFileSync(keyFile, 'utf8') : '';
  // In one folder, "dev" is "release" with the tests.
  const usable = preset === 'release' ? ['release', 'dev'] : [preset];
  if (!usable.map(buildKey).includes(key)) {
    rmSync(path, { recursive: true, force: true });
    runQuietly('cmake', ['--preset', preset]);
    writeFileSync(keyFile, buildKey(preset));
  }
  runQuietly('cmake', ['--build', path]);
  return path;
}
