// Compiles tests/types and the examples in the documents under every resolution
// that users have: what all of them share once as a CommonJS module and once as
// an ES module.
import { copyFileSync, mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { documents, examplesIn } from './documents.mjs';
import { needNpmPackages, root, run } from './setup.mjs';

const resolutions = {
  node16: { module: 'node16', moduleResolution: 'node16' },
  nodenext: { module: 'nodenext', moduleResolution: 'nodenext' },
  bundler: { module: 'preserve', moduleResolution: 'bundler' },
};
const kinds = {
  CommonJS: { 'uses.ts': 'uses.cts', 'require.cts': 'require.cts' },
  'ES module': { 'uses.ts': 'uses.mts', 'import.mts': 'import.mts' },
};

export function checkTypes() {
  needNpmPackages();
  const folder = join(root, 'build', 'types');
  mkdirSync(folder, { recursive: true });
  compileTypes(folder);
}

// In a folder from where `brindle` is found.
export function compileTypes(folder) {
  const examples = writeExamples(folder);
  for (const [kind, files] of Object.entries(kinds)) {
    for (const [from, to] of Object.entries(files)) {
      copyFileSync(join(root, 'tests/types', from), join(folder, to));
    }
    for (const [resolution, compilerOptions] of Object.entries(resolutions)) {
      compile(folder, [...Object.values(files), ...examples], compilerOptions);
      console.log(`types: ${kind}, ${resolution}: good uses compile, bad ones do not`);
    }
  }
}

// Each in a file of its own; returns their names.
function writeExamples(folder) {
  return documents.flatMap((path) => examplesIn(path, 'ts')).map((code, i) => {
    const file = `example_${i}.mts`;
    writeFileSync(join(folder, file), code);
    return file;
  });
}

function compile(folder, files, compilerOptions) {
  const project = join(folder, 'tsconfig.json');
  writeFileSync(project, JSON.stringify({
    extends: join(root, 'tests/types/tsconfig.json'),
    files,
    compilerOptions: { ...compilerOptions, typeRoots: [join(root, 'node_modules/@types')] },
  }));
  run(process.execPath, ['node_modules/typescript/bin/tsc', '-p', project]);
}
