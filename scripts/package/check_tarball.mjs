// What the tarball may hold: all that users and a build need, and nothing else.
import { statSync } from 'node:fs';
import { join } from 'node:path';
import { fail, root, run, runQuietly } from '../setup.mjs';

const LARGEST_WITH_ONE_MODULE = 250_000;

const needed = [
  'README.md', 'CHANGELOG.md', 'package.json', 'CMakeLists.txt', 'cmake/node_api.cmake',
  'lib/index.cjs', 'lib/index.mjs', 'lib/load.cjs', 'types/index.d.cts', 'types/index.d.mts',
  'cli/brindle.mjs', 'cli/brindle.1', 'scripts/build_from_source.mjs', 'binding/addon.cpp', 'foundation/types.h',
];
const allowed = new RegExp('^(?:README\\.md|CHANGELOG\\.md|package\\.json|CMakeLists\\.txt' +
  '|scripts/build_from_source\\.mjs|cmake/\\w+\\.cmake|lib/\\w+\\.[cm]js|cli/(?:\\w+/)?\\w+\\.(?:mjs|js|css)|cli/brindle\\.1|types/\\w+\\.d\\.[cm]ts' +
  '|(?:binding|foundation|schema|serialization)/\\w+\\.(?:h|cpp|map|def)' +
  '|prebuilds/[a-z0-9-]+/brindle\\.node)$');

const tool = (name) => join('scripts/package/node_modules', name);

export function checkTarball(tarball) {
  const files = runQuietly('tar', ['-tzf', tarball]).trim().split('\n')
    .map((name) => name.replace(/^package\//, ''));
  const missing = needed.filter((name) => !files.includes(name));
  if (missing.length !== 0) fail(`the tarball lacks ${missing.join(', ')}`);
  const extra = files.filter((name) => !allowed.test(name));
  if (extra.length !== 0) fail(`the tarball has ${extra.join(', ')}`);
  const modules = files.filter((name) => name.endsWith('.node'));
  checkSize(tarball, files.length, modules.length);
  run(process.execPath, [tool('publint/src/cli.js'), 'run', tarball, '--strict']);
  run(process.execPath, [tool('@arethetypeswrong/cli/dist/index.js'), tarball,
    '--format', 'ascii', '--no-emoji', '--no-color']);
  return modules;
}

function checkSize(tarball, files, modules) {
  const { size } = statSync(join(root, tarball));
  const text = `${size} bytes, ${files} files, ${modules} prebuilt`;
  if (modules === 1 && size > LARGEST_WITH_ONE_MODULE) fail(`the tarball is too large: ${text}`);
  console.log(`tarball: ${text}`);
}
