// A million mixed calls in one process, whose memory has to stay flat. Prints
// calls per second and the memory in use; exit code 1 when it grows.
//
//   node fuzz/js/soak.mjs [calls]
import { spawnSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import brindle, { assert } from '../../tests/js/module.mjs';
import { blob } from '../../tests/js/encode.mjs';
import { bomb, unlistable } from '../../tests/js/hostile.mjs';

const { buildBlock, calcNgConfigHash, packMetaBlock, parseConfigBlob, parseMetaBlock } = brindle;

const GROWTH_LIMIT = { rss: 4, heapUsed: 0.5, external: 0.5 };  // MiB
const SAMPLES = 40;

const nested = { metaName: 'point', fields: ['x', 'y'].map((name) => ({ name, type: 'int16' })) };
const spec = (count) => ({ metaName: 'soak', fields: [
  { name: 'n', type: 'int64', value: -5n }, { name: 'f', type: 'float', value: 0.1 },
  { name: 's', type: 'string', repeated: true, value: Array(count).fill('text') },
  { name: 'u', type: 'uint32', repeated: true, value: Array(count).fill(70000) },
  { name: 'e', type: 'enum', value: 1, enumOptions: [{ key: 'a', code: 1 }] },
  { name: 'r', type: 'datamap', nested, repeated: true,
    value: Array(count).fill({ x: 1, y: -1 }) }],
metaFields: [{ name: '__uuid', type: 'string', value: '01020304-0506-0708-090a-0b0c0d0e0f10' },
  { name: '__instance', type: 'uint16', value: 3 }] });

// Calls, each behind whether it succeeds.
function makeCalls(count) {
  const description = spec(count);
  const { value: block } = buildBlock(description);
  const { value: dto } = parseMetaBlock(block);
  const entries = blob(...Array(count > 10 ? 20 : 2).fill(block));
  const damaged = Buffer.from(block).fill(1, 20, 30);
  const withField = (more) =>
    ({ ...description, fields: [...description.fields, { name: 'z', ...more }] });
  const inner = { ...nested, hasCrc: true };
  return [
    ...['validateBlock', 'parseMetaBlock'].flatMap((name) => [[true, () => brindle[name](block)],
      [false, () => brindle[name](damaged)], [false, () => brindle[name]('text')]]),
    [true, () => buildBlock(description)], [true, () => packMetaBlock(dto)],
    [true, () => packMetaBlock({ rawBytes: block, values: { n: 1, s: ['x'] } })],
    [true, () => parseConfigBlob(entries)], [true, () => calcNgConfigHash(entries)],
    [false, () => parseConfigBlob(entries.subarray(0, -1))],
    [false, () => calcNgConfigHash(entries.subarray(1))],
    [false, () => buildBlock(withField({ type: 'int8', value: 999 }))],
    [false, () => buildBlock(withField({ type: 'x' }))],
    [false, () => buildBlock(bomb('fields', { metaName: 'm' }))],
    [false, () => packMetaBlock(unlistable[0])],
    [false, () => packMetaBlock(bomb('values', { rawBytes: block }))],
    [false, () => packMetaBlock({ rawBytes: block, values: { s: [5] } })],
    [true, () => buildBlock(withField({ type: 'datamap', nested: inner }))],
    [true, () => ({ ok: brindle.abiVersion().length === 5 && brindle.crc32(block) !== 0 })],
    [false, () => ({ ok: brindle.crc32([block]) !== 0 })],
  ];
}

// 40 small calls to each large one.
const small = makeCalls(2);
const large = makeCalls(400);
function call(i) {
  const list = i % 41 === 0 ? large : small;
  const [ok, run] = list[i % list.length];
  assert.equal(run().ok, ok);
}

function memory() {
  // Finalizers of the first collection free what the second finds.
  for (let i = 0; i < 2; i++) globalThis.gc();
  const usage = process.memoryUsage();
  return Object.keys(GROWTH_LIMIT).map((kind) => usage[kind] / 2 ** 20);
}

const median = (numbers) => numbers.sort((a, b) => a - b)[numbers.length >> 1];
const cell = (value) => (typeof value === 'number' ? value.toFixed(2) : value).padStart(12);
const printRow = (...values) => console.error(values.map(cell).join(''));

// The child that works; its standard output is the core's, and not read.
function soak(calls) {
  const samples = [];
  const started = performance.now();
  for (let i = 0; i < calls; i++) {
    call(i);
    if ((i + 1) % Math.ceil(calls / SAMPLES) === 0) samples.push(memory());
  }
  const seconds = (performance.now() - started) / 1000;
  const kinds = Object.keys(GROWTH_LIMIT);
  const quarters = [0, 1, 2, 3].map((q) => samples.slice(q * SAMPLES / 4, (q + 1) * SAMPLES / 4));
  const medians = quarters.map((quarter) =>
    kinds.map((_, k) => median(quarter.map((row) => row[k]))));
  const growth = kinds.map((_, k) => medians[3][k] - medians[1][k]);
  console.error(`${calls} calls, ${(calls / seconds).toFixed()} a second; MiB in each quarter:`);
  printRow('', ...kinds);
  medians.forEach((row, q) => printRow(`quarter ${q + 1}`, ...row));
  printRow('growth', ...growth);
  const grown = kinds.filter((kind, k) => growth[k] > GROWTH_LIMIT[kind]);
  if (grown.length !== 0) console.error(`grows: ${grown.join(', ')}`);
  process.exitCode = grown.length === 0 ? 0 : 1;
}

const [calls = '1000000', child] = process.argv.slice(2);
if (child) soak(Number(calls));
else {
  // The lines that the catch-all prints are dropped as well. A nursery that
  // grows half-way through would look like a leak.
  const quietly = '"$@" 2>&1 >/dev/null | grep -v "^\\[brindle\\] "; exit ${PIPESTATUS[0]}';
  const args = ['-c', quietly, 'bash', process.execPath, '--expose-gc',
    '--min-semi-space-size=16', '--max-semi-space-size=16',
    fileURLToPath(import.meta.url), calls, 'child'];
  process.exitCode = spawnSync('bash', args, { stdio: 'inherit' }).status ?? 1;
}
