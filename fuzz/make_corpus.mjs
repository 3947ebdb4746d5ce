// node fuzz/make_corpus.mjs: writes the seeds of fuzz/corpus, built by the
// module from the examples and from small specifications that name every type.
// What fuzzing has found lies beside them and is left alone.
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { readSpec } from '../examples/read_spec.mjs';
import { buildBlock } from '../lib/index.mjs';

const root = fileURLToPath(new URL('.', import.meta.url));

function write(target, name, bytes) {
  const folder = join(root, 'corpus', target);
  mkdirSync(folder, { recursive: true });
  writeFileSync(join(folder, `seed-${name}`), bytes);
}

function build(spec) {
  const { ok, value, error } = buildBlock(spec);
  if (!ok) throw new Error(`${spec.metaName}: ${error.message}`);
  return value;
}

const samples = {
  int8: -2, int16: -300, int32: -70000, int64: -(2n ** 40n), uint8: 200,
  uint16: 300, uint32: 4000000000, uint64: 2n ** 63n, float: -1.5,
  string: 'text', bool: true, enum: 1, datamap: { inner: 7 },
};

function field(type, repeated) {
  const value = samples[type];
  return {
    name: repeated ? `${type}s` : type,
    type,
    repeated,
    value: repeated ? [value, value] : value,
    ...(type === 'enum' &&
      { enumOptions: [{ key: 'off', code: 0 }, { key: 'on', code: 1 }] }),
    ...(type === 'datamap' &&
      { nested: { metaName: 'n', fields: [{ name: 'inner', type: 'uint8' }] } }),
  };
}

const identity = (instance) => [
  { name: '__uuid', type: 'string', value: `00112233-4455-6677-8899-aabbccddee0${instance}` },
  { name: '__instance', type: 'uint16', value: instance },
];

const all = Object.keys(samples).flatMap(
  (type) => [field(type, false), field(type, true)]);
const specs = {
  values: { metaName: 'values', fields: all },
  constants: { metaName: 'constants', hasCrc: true, fields: [],
    metaFields: [...identity(1), ...all.filter(({ type }) => type !== 'datamap')] },
  flagged: { metaName: 'flagged', hasCrc: true, fields: all.slice(0, 4),
    metaFields: [{ name: 'descriptor_uuid', type: 'string', value: 'any' }] },
};
// More names than are found by walking a list.
const many = Array.from({ length: 40 }, (_, i) => i);
specs.many = {
  metaName: 'many',
  fields: many.map((i) => ({ name: `f${i}`, type: 'uint8', value: i })),
  metaFields: [{ name: 'e', type: 'enum', value: 39,
    enumOptions: many.map((code) => ({ key: `k${code}`, code })) }],
};
const longest = 'n'.repeat(254);
specs.longest = { metaName: longest, fields: [{ name: longest, type: 'uint8' }] };
for (const name of ['thermostat', 'network_interface', 'sensor_array']) {
  specs[name] = readSpec(join(root, '../examples', `${name}.json`));
}

const u16 = (n) => Buffer.from([n & 255, n >> 8]);
const entry = (bytes) => Buffer.concat([u16(bytes.length), bytes]);

function splitBlock(block) {
  const size = 17 + block.readUInt16LE(6) + (block[5] & 1 ? 2 : 0);
  return [block.subarray(0, size), block.subarray(size)];
}

for (const [name, spec] of Object.entries(specs)) {
  const block = build(spec);
  const [schema, packet] = splitBlock(block);
  write('block_fuzz', name, block);
  write('schema_fuzz', name, schema);
  write('packet_fuzz', name, Buffer.concat([entry(schema), packet]));
}

const small = [3, 1, 2].map((instance) => entry(build(
  { metaName: 'small', fields: [], metaFields: identity(instance) })));
write('blob_fuzz', 'small', Buffer.concat(small));
write('blob_fuzz', 'same', Buffer.concat([small[0], small[1], small[0]]));
write('blob_fuzz', 'example', entry(build(specs.thermostat)));

// Scripts and texts: the other targets find their way from little.
for (const target of ['string_fuzz', 'text_fuzz', 'checksum_fuzz', 'digest_fuzz']) {
  write(target, 'text', Buffer.from(
    '\x08 \x01\x02\x03\x04\x0c -12.345678 \x0600112233-4455-6677-8899-aabbccddeeff\0'));
}
// A number to round, between none and three decimals.
write('text_fuzz', 'rounding', Buffer.concat([0, 1, 2, 3].map((decimals) =>
  Buffer.from(`${String.fromCharCode(decimals)}0000\x081.555512\x0012`))));
