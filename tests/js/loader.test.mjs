import { cpSync, mkdirSync, mkdtempSync, realpathSync, rmSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { assert, test } from './module.mjs';

const require = createRequire(import.meta.url);

// In registration order.
const names = ['abiVersion', 'crc32', 'validateBlock', 'parseMetaBlock',
  'parseConfigBlob', 'packMetaBlock', 'buildBlock', 'calcNgConfigHash'];

test('require and import give the same functions, none with a name of its own', async () => {
  const { default: brindle, ...named } = await import('../../lib/index.mjs');
  assert.equal(brindle, require('../../lib/index.cjs'));
  assert.deepEqual(Object.entries(brindle).map(([key, f]) => key + f.name), names);
  assert.deepEqual(named, { ...brindle });
  assert.equal(brindle.abiVersion(1, 2, 3), '0.1.0');
});

const loaders = { require: async (file) => require(`${file}.cjs`),
  import: (file) => import(pathToFileURL(`${file}.mjs`)) };

for (const [how, load] of Object.entries(loaders)) {
  // The text is longer than the header of a shared library.
  for (const content of [undefined, 'plain text\n'.repeat(99)]) {
    test(`${how} without a usable binary names platform, path and remedy`, async (t) => {
      // A package of its own, with a copy of lib/.
      const root = realpathSync(mkdtempSync(join(tmpdir(), 'brindle-loader-')));
      t.after(() => rmSync(root, { recursive: true }));
      cpSync(new URL('../../lib/', import.meta.url), join(root, 'lib'), { recursive: true });
      const binary = join(root, 'build', 'Release', 'brindle.node');
      mkdirSync(dirname(binary), { recursive: true });
      if (content) writeFileSync(binary, content);
      const target = `${process.platform}-${process.arch}`;
      const fault = content ? `${binary} cannot be loaded on ${target}`
        : `no native module for ${target}: ${binary} is missing`;
      await assert.rejects(load(join(root, 'lib', 'index')), ({ message, cause }) => {
        assert.equal(message, `brindle: ${fault}. Run "npm run build" in ${root}`);
        assert.equal(cause?.code, content && 'ERR_DLOPEN_FAILED');
        return true;
      });
    });
  }
}
