// Calls the exports of the module named by the first argument while each of
// their allocations fails in turn, alone and with all that follow. Writes to
// descriptor 3 what that must have printed on standard error, and how many
// failures each call met.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { blob } from './encode.mjs';

const brindle = createRequire(import.meta.url)(process.argv[2]);
const { buildBlock } = brindle;

const long = 'a text that is longer than the smallest step in which buffers grow';
const uuid = '00010203-0405-0607-0809-0a0b0c0d0e0f';
const define = (name, type, value, more) =>
  ({ name, type, value, repeated: Array.isArray(value), ...more });
const enumOptions = [{ key: 'off', code: 0 }, { key: long, code: 1 }];
const nested = { metaName: 'pt',
  fields: [define('x', 'int16'), define('e', 'enum', null, { enumOptions }), define('s', 'string')] };
const record = { x: -3, e: 1, s: long };
const fields = [
  define('i8', 'int8', -1), define('f', 'float', [1, 2]), define('u64', 'uint64', [1n, 2n ** 40n]),
  define('s', 'string', long), define('ss', 'string', ['', long]),
  define('e', 'enum', 1, { enumOptions }), define('es', 'enum', [1, 0], { enumOptions }),
  define('r', 'datamap', record, { nested }), define('rs', 'datamap', [record, {}], { nested }),
  // Merged into the first "e".
  define('e', 'enum', 2, { enumOptions: [{ key: 'auto', code: 2 }, ...enumOptions] })];
const metaFields = [define('__uuid', 'string', uuid), define('__instance', 'uint8', 1),
  define('descriptor_uuid', 'string', long), define('modes', 'enum', [1, 0], { enumOptions })];
const spec = { metaName: long, hasCrc: true, fields, metaFields };
const { value: rawBytes } = buildBlock(spec);
const { value: plain } = buildBlock({ ...spec, hasCrc: false });
const values = { i8: 5, s: `more than ${long}`, r: { ...record, x: 4 }, rs: [record, record] };

// The last byte of the payload lost; the schema's checksum wrong.
const cut = rawBytes.subarray(0, -1);
const corrupt = Buffer.from(plain);
corrupt[8] ^= 1;

const calls = {
  validateBlock: [rawBytes, corrupt, rawBytes.subarray(0, 9)],
  parseMetaBlock: [rawBytes, cut, corrupt],
  parseConfigBlob: [blob(rawBytes, plain), blob(rawBytes, corrupt), blob(plain, cut).subarray(0, -1)],
  packMetaBlock: [{ rawBytes }, { rawBytes, values }, { rawBytes, values: {} }, { values },
    { rawBytes: cut, values }, { rawBytes: corrupt, values }, { rawBytes, values: { rs: [{ x: '' }] } }],
  buildBlock: [spec, { ...spec, metaFields: [...metaFields, define('n', 'int8', long)] },
    { ...spec, fields: [...fields, define('n', 'enum')] }, { ...spec, fields: [...fields, ...fields] }],
  calcNgConfigHash: [blob(rawBytes, plain), blob(rawBytes, corrupt)],
};

const text = (answer) => JSON.stringify(answer, (_, v) => typeof v === 'bigint' ? `${v}n` : v);
let stderr = '';

// A failure that is answered comes with its line, unless the record refused.
function checkFailure(name, { ok, error }) {
  assert.deepEqual([ok, error?.code], [false, 'INTERNAL'], name);
  const { code, message, ...place } = error;
  if (/^DataMap\.insert_or_assign failed for (field )?'\w+'$/.test(message)) return;
  assert.equal(message, `${name} internal failure`);
  const isBlob = name === 'parseConfigBlob';
  assert.deepEqual(Object.keys(place), isBlob ? ['blockIndex'] : []);
  stderr += `[brindle] ${name}${name === 'validateBlock' ? '/unpack' : ''} threw: std::bad_alloc` +
    `${isBlob ? ` (blockIndex=${place.blockIndex})` : ''}\n`;
}

function countFailures(name, argument, lasting) {
  const call = brindle[name];
  const normal = text(call(argument));
  for (let n = 1; ; n++) {
    brindle.arm(n, lasting);
    const answer = call(argument);
    const reached = brindle.disarm();
    if (!reached) assert.equal(text(answer), normal);
    if (text(answer) !== normal) checkFailure(name, answer);
    assert.equal(text(call(argument)), normal);
    if (!reached) return n - 1;
  }
}

const counts = Object.entries(calls).map(([name, list]) => [name, ...list.map((argument) =>
  countFailures(name, argument, false) + countFailures(name, argument, true))]);
writeFileSync(3, JSON.stringify({ stderr, counts }));
