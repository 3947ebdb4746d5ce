import { spawnSync } from 'node:child_process';
import { assert, modulePath, test } from './module.mjs';

const prelude = `
  const { Worker, parentPort } = require('node:worker_threads');
  const brindle = require(${JSON.stringify(modulePath)});
  const say = ({ ok, error }) => console.log(ok ? 'ok' : error.message);
`;
const inWorker = (code) =>
  `const worker = new Worker(${JSON.stringify(prelude + code)}, { eval: true });`;

// Runs the code in a process of its own.
function assertOutput(code, stdout, stderr = '') {
  const options = { encoding: 'utf8', timeout: 60000 };
  const child = spawnSync(process.execPath, ['-e', prelude + code], options);
  assert.deepEqual([child.stdout, child.stderr, child.status], [stdout, stderr, 0]);
}

test('only failures print, in order with other output', () => {
  assertOutput(`
    const spec = { metaName: 'a long name', fields: [{ name: 'n', type: 'uint8', value: 1 }] };
    const { value } = brindle.buildBlock(spec);
    say(brindle.packMetaBlock(brindle.parseMetaBlock(value).value));
    spec.fields[0].type = 'enum';
    say(brindle.buildBlock(spec));
    say(brindle.packMetaBlock({ rawBytes: value, get values() { throw Error('thrown'); } }));
  `, 'ok\nENUM field must have a mapping of possible values.\n' +
    "Meta::addField failed for 'n'\npackMetaBlock internal failure\n",
  '[brindle] packMetaBlock threw: thrown\n');
});

// So many levels, each in as many fields as there are names.
const nest = (levels, names) => `
  let nested = { metaName: '' };
  for (let i = 0; i < ${levels}; i++) {
    const field = { type: 'datamap', nested };
    nested = { metaName: '', fields: [...'${names}'].map((name) => ({ name, ...field })) };
  }`;
const nestInItself = `
  const nested = { metaName: '' };
  nested.fields = [{ name: 'n', type: 'datamap', nested }];`;

test('runaway nesting ends quickly, also on the small stack of a worker', () => {
  for (const nesting of [nest(100000, 'n'), nest(40, 'ab'), nestInItself]) {
    const code = `${nesting} say(brindle.buildBlock(nested));`;
    const output = 'Recursion limit reached\nMeta::pack() returned empty buffer\n';
    for (const run of [code, inWorker(code)]) assertOutput(run, output);
  }
});
