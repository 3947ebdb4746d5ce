import { spawnSync } from 'node:child_process';
import { closeSync, existsSync, mkdirSync, openSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { documents, examplesIn, readDocument } from '../../scripts/documents.mjs';
import { root } from '../../scripts/setup.mjs';
import brindle, { assert, test, valueOf } from './module.mjs';

test('the block that format.md shows byte by byte is the one that is built', () => {
  const [code] = examplesIn('docs/format.md', 'js');
  const block = valueOf(new Function('buildBlock', `return ${code}`)(brindle.buildBlock));
  const [, table] = readDocument('docs/format.md').split('gives these 87 bytes:');
  let shown = '';
  for (const [, offset, cell] of table.matchAll(/^\| (\d+) \| (.*?) \|/gm)) {
    assert.equal(shown.length / 2, Number(offset));
    shown += cell.replace(/[` ]/g, '').toLowerCase();
  }
  assert.equal(shown, block.toString('hex'));
});

// Of a program: what stands behind console.log, and comments right below code.
function announced(code) {
  return code.split('\n').flatMap((line, i, lines) => {
    const comment = lines[i - 1] ? /^ *\/\/ ?(.*)/.exec(line) : null;
    return (comment ?? /console\.log\(.*\);? \/\/ (.*)/.exec(line) ?? []).slice(1);
  });
}

// To a file, which keeps the order of what Node.js and the module print.
function outputOf(file) {
  const descriptor = openSync(`${file}.txt`, 'w');
  const options = { stdio: ['ignore', descriptor, 'pipe'], encoding: 'utf8', timeout: 60000 };
  const { status, stderr } = spawnSync(process.execPath, [file], options);
  closeSync(descriptor);
  assert.equal(status, 0, stderr);
  return readFileSync(`${file}.txt`, 'utf8').trimEnd().split(/\r?\n/);
}

test('the examples run as one program and print what they say', () => {
  const folder = join(root, 'build/docs');  // from where brindle is found
  mkdirSync(folder, { recursive: true });
  for (const [i, path] of ['README.md', 'docs/api.md', 'docs/troubleshooting.md'].entries()) {
    const code = examplesIn(path, 'js').join('\n');
    const file = join(folder, `${i}.mjs`);
    writeFileSync(file, code);
    assert.deepEqual(outputOf(file), announced(code), path);
  }
});

// Of all languages, without comments and what only the compiler says.
const code = ['foundation', 'schema', 'serialization', 'binding', 'lib'].flatMap((folder) =>
  readdirSync(join(root, folder))
    // What the readers say is for the command: docs/cli.md has it.
    .filter((name) => /\.(cpp|h|cjs)$/.test(name) && !/_reader\.cjs$/.test(name))
    .map((name) => readFileSync(join(root, folder, name), 'utf8'))).join('\n')
  .replace(/(^|\s)\/\/.*|^#include.*|^static_assert\([^;]*|R"\(.*?\)"/gm, '').replace(/"\s+"/g, '');

// Each literal that has words in it, as the parts between what varies.
const messages = [...code.matchAll(/(["'`])((?:\\.|(?!\1)[^\\\n])*)\1/g)].map(([, , text]) => text)
  .filter((text) => /\w\W? [\w%$]/.test(text) && text !== 'use strict')
  .map((text) => text.split(/%\w+|\$\{[^}]*\}|\\n/));

test('every message in the code stands in api.md or cli.md', () => {
  assert.ok(messages.length >= 142, `only ${messages.length} are found`);
  const documented = ['docs/api.md', 'docs/cli.md'].map(readDocument).join('\n');
  const spans = [...documented.replace(/^```[^]*?^```/gm, '')
    .matchAll(/`([^`]+)`/g)].map(([, span]) => span);
  // A part of a message may stand inside a span, also one that the code puts together.
  const stands = (part, isPart) => spans.some((span) => span === part ||
    span === `PATH must be ${part}` || (isPart && span.includes(part)));
  const missing = messages.flatMap((parts) => parts.filter((part) => /[a-z]/i.test(part) &&
    !stands(part, parts.length > 1 || /^ |[ ']$/.test(part))));
  assert.deepEqual(missing, []);
});

const anchorsIn = (path) => [...readDocument(path).matchAll(/^#+ (.*)$/gm)]
  .map(([, heading]) => heading.toLowerCase().replace(/[^\w\- ]/g, '').replaceAll(' ', '-'));

test('links between the documents lead somewhere', () => {
  for (const path of documents) {
    for (const [, target, anchor] of readDocument(path).matchAll(/\]\((?!https?:)([^)#\s]*)#?([^)\s]*)\)/g)) {
      const file = target === '' ? path : join(dirname(path), target);
      assert.ok(existsSync(join(root, file)), `${path}: ${target}`);
      if (anchor !== '') assert.ok(anchorsIn(file).includes(anchor), `${path}: ${target}#${anchor}`);
    }
  }
});
