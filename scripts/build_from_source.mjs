// Builds build/Release/brindle.node in this package, on any platform: in an
// installed package too, where the loader says so when it finds no module.
// Needs CMake, a C++20 compiler and, unless node-addon-api and
// node-api-headers are installed already, npm to fetch these two.
import { spawnSync } from 'node:child_process';
import { mkdirSync, readFileSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { availableParallelism } from 'node:os';
import { delimiter, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('..', import.meta.url));
const buildFolder = join(root, 'build', 'Release');
const headerFolder = join(root, 'build', 'headers');
const headers = ['node-addon-api', 'node-api-headers'];

const isOnPath = (program) => !spawnSync(program, ['--version'], { stdio: 'ignore' }).error;

function fail(message) {
  console.error(`brindle: ${message}`);
  process.exit(1);
}

function run(command, args, options) {
  const { status, error } = spawnSync(command, args, { cwd: root, stdio: 'inherit', ...options });
  if (status !== 0) fail(`${command} ${args[0]}: ${error?.message ?? 'failed, see above'}`);
}

function hasHeaders() {
  const { resolve } = createRequire(join(root, 'package.json'));
  try {
    return headers.every((name) => resolve(`${name}/package.json`));
  } catch {
    return false;
  }
}

// Beside the build, not in the package's own node_modules, which belongs to
// whatever installed the package. CMake asks Node.js, which looks there too.
function fetchHeaders() {
  const { devDependencies } = JSON.parse(readFileSync(join(root, 'package.json'), 'utf8'));
  mkdirSync(headerFolder, { recursive: true });
  // On Windows npm is a script, which only a shell starts.
  run('npm', ['install', '--prefix', '.', '--no-save', '--ignore-scripts', '--no-audit',
    '--no-fund', ...headers.map((name) => `${name}@${devDependencies[name]}`)],
  { cwd: headerFolder, shell: process.platform === 'win32' });
  process.env.NODE_PATH = [join(headerFolder, 'node_modules'), process.env.NODE_PATH]
    .filter(Boolean).join(delimiter);
}

if (!isOnPath('cmake')) {
  fail('CMake is missing. Install CMake 3.21 or later and a C++20 compiler, for example by\n' +
    '    apt-get install -y cmake g++ make        (Debian, Ubuntu)\n' +
    '    apk add cmake g++ make                   (Alpine)\n' +
    '    brew install cmake; xcode-select --install    (macOS)\n' +
    '    winget install Kitware.CMake             (Windows, beside Visual Studio)');
}
if (!hasHeaders()) fetchHeaders();
// CMake refuses what it prepared for a package that then moved.
rmSync(buildFolder, { recursive: true, force: true });
run('cmake', ['-S', root, '-B', buildFolder, '-DCMAKE_BUILD_TYPE=Release']);
run('cmake', ['--build', buildFolder, '--config', 'Release',
  '--parallel', String(availableParallelism())]);
console.log(`brindle: built ${join(buildFolder, 'brindle.node')}`);
