import { once } from 'node:events';
import { createRequire } from 'node:module';
import vm from 'node:vm';
import { Worker } from 'node:worker_threads';
import brindle, { assert, modulePath, test } from './module.mjs';

const spec = { metaName: 'threads', hasCrc: true, fields: [
  { name: 'n', type: 'int64', value: -3 },
  { name: 's', type: 'string', repeated: true, value: ['a', ''] }],
metaFields: [{ name: '__uuid', type: 'string', value: '01020304-0506-0708-090a-0b0c0d0e0f10' },
  { name: '__instance', type: 'uint8', value: 7 }] };

// What all exports answer, as text; the same everywhere.
function answers(brindle, spec) {
  const { value: block } = brindle.buildBlock(spec);
  const entry = Buffer.concat([Buffer.of(block.length, 0), block]);
  const blob = Buffer.concat([entry, entry]);
  const { value: dto } = brindle.parseMetaBlock(block);
  const all = [brindle.abiVersion(), brindle.crc32(block), block, brindle.validateBlock(block), dto,
    brindle.parseConfigBlob(blob), brindle.parseConfigBlob(blob.subarray(1)),
    brindle.calcNgConfigHash(blob), brindle.packMetaBlock({ ...dto, values: { n: 2n ** 40n } })];
  return JSON.stringify(all, (_, value) => typeof value === 'bigint' ? `${value}n` : value);
}
const expected = answers(brindle, spec);

// Eight threads that run the code; the first message of each.
async function inThreads(code, end) {
  const prelude = `const { parentPort } = require('node:worker_threads');
    const [brindle, spec] = [require(${JSON.stringify(modulePath)}), ${JSON.stringify(spec)}];
    ${answers}\n`;
  const run = async () => {
    const worker = new Worker(prelude + code, { eval: true });
    const [[message]] = await Promise.all([once(worker, 'message'), end(worker)]);
    return message;
  };
  return new Set(await Promise.all(Array.from({ length: 8 }, run)));
}

test('eight threads at once answer like one', async () => {
  const code = `const seen = Array.from({ length: 200 }, () => answers(brindle, spec));
    parentPort.postMessage([...new Set(seen)].join());`;
  assert.deepEqual([...await inThreads(code, (worker) => once(worker, 'exit'))], [expected]);
});

test('threads may end in mid-call, and load the module anew', async () => {
  const terminate = (worker) => once(worker, 'message').then(() => worker.terminate());
  for (const code of ['for (;;) answers(brindle, spec);', `brindle.packMetaBlock({
    rawBytes: brindle.buildBlock(spec).value, values: { get n() { for (;;); } } });`]) {
    for (let i = 0; i < 2; i++) await inThreads(`parentPort.postMessage(0); ${code}`, terminate);
  }
  assert.equal(answers(brindle, spec), expected);
});

test('other realms, and a module loaded again, answer the same', () => {
  const require = createRequire(import.meta.url);
  for (let i = 0; i < 20; i++) {
    for (const path of Object.keys(require.cache)) delete require.cache[path];
    const context = vm.createContext({ brindle: require(modulePath), Buffer });
    const code = `(${answers})(brindle, ${JSON.stringify(spec)})`;
    assert.equal(vm.runInContext(code, context), expected);
  }
});
