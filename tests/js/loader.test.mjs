import fs, {
  copyFileSync, cpSync, mkdirSync, mkdtempSync, realpathSync, rmSync, writeFileSync,
} from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { assert, test } from './module.mjs';

const require = createRequire(import.meta.url);
const lib = fileURLToPath(new URL('../../lib/', import.meta.url));
const built = join(lib, '../build/Release/brindle.node');

// In registration order, and the helpers.
const names = ['abiVersion', 'crc32', 'validateBlock', 'parseMetaBlock',
  'parseConfigBlob', 'packMetaBlock', 'buildBlock', 'calcNgConfigHash'];
const helpers = ['unwrap', 'BrindleError', 'specFromBlock', 'joinBlocks', 'toJSON', 'fromJSON'];

test('require and import give the same functions, the native ones without names', async () => {
  const { default: brindle, ...named } = await import('../../lib/index.mjs');
  assert.equal(brindle, require('../../lib/index.cjs'));
  assert.deepEqual(Object.keys(brindle), [...names, ...helpers]);
  assert.deepEqual(names.map((name) => brindle[name].name), names.map(() => ''));
  assert.deepEqual(named, { ...brindle });
  assert.equal(brindle.abiVersion(1, 2, 3), '0.1.0');
});

// A package of its own, with a copy of lib/ and what is given for its modules.
function packageWith(t, modules) {
  const root = realpathSync(mkdtempSync(join(tmpdir(), 'brindle-loader-')));
  t.after(() => rmSync(root, { recursive: true }));
  cpSync(lib, join(root, 'lib'), { recursive: true });
  for (const [folder, put] of Object.entries(modules)) {
    const file = join(root, folder, 'brindle.node');
    mkdirSync(dirname(file), { recursive: true });
    put(file);
  }
  return root;
}

// Longer than the header of a shared library.
const broken = (file) => writeFileSync(file, 'plain text\n'.repeat(99));
const whole = (file) => copyFileSync(built, file);

const loaders = { require: async (file) => require(`${file}.cjs`),
  import: (file) => import(pathToFileURL(`${file}.mjs`)) };
const host = `${process.platform}-${process.arch}`;

test('a prebuilt module is found, also behind one that does not load', async (t) => {
  for (const local of [{}, { 'build/Release': broken }]) {
    const root = packageWith(t, { ...local, [`prebuilds/${host}`]: whole });
    for (const load of Object.values(loaders)) {
      assert.equal((await load(join(root, 'lib', 'index'))).abiVersion(), '0.1.0');
    }
  }
});

// What the loader sees on another machine.
function pretend(t, platform, maps) {
  const own = Object.getOwnPropertyDescriptor(process, 'platform');
  Object.defineProperty(process, 'platform', { ...own, value: platform });
  t.after(() => Object.defineProperty(process, 'platform', own));
  const { readFileSync } = fs;
  t.mock.method(fs, 'readFileSync', (file, ...rest) => {
    if (file !== '/proc/self/maps') return readFileSync(file, ...rest);
    if (maps === null) throw new Error('no such file');
    return maps;
  });
}

const musl = '7f00-7f01 r-xp 0 08:01 9 /lib/ld-musl-x86_64.so.1\n';
const { arch } = process;
const machines = [
  ['linux', '7f00-7f01 r-xp 0 08:01 9 /lib/libc.so.6\n', ', glibc', ''],
  ['linux', musl, ', musl', '-musl'],
  ['linux', null, ', unknown C library', '', '-musl'],
  ['win32', musl, '', ''],
  ['sunos', null, '', ''],
];

for (const [platform, maps, library, ...suffixes] of machines) {
  for (const [how, load] of Object.entries(loaders)) {
    test(`${how} without a module says what was tried on ${platform}${library}`, async (t) => {
      const root = packageWith(t, { 'build/Release': broken });
      pretend(t, platform, maps);
      const file = (folder) => join(root, folder, 'brindle.node');
      const [first, ...others] = ['build/Release',
        ...suffixes.map((suffix) => `prebuilds/${platform}-${arch}${suffix}`)].map(file);
      const reason = platform === 'sunos' ? 'not made for this platform' : 'does not exist';
      await assert.rejects(load(join(root, 'lib', 'index')), ({ message, cause }) => {
        assert.equal(cause.code, 'ERR_DLOPEN_FAILED');
        assert.deepEqual(message.split('\n'), [
          `brindle: no native module could be loaded (${platform}-${arch}${library}). Tried`,
          `  ${first}: ${cause.message}`,
          ...others.map((path) => `  ${path}: ${reason}`),
          'With CMake and a C++20 compiler installed, this builds it from source:',
          `  node "${join(root, 'scripts', 'build_from_source.mjs')}"`]);
        return true;
      });
    });
  }
}
