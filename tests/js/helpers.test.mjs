import { readSpec } from '../../examples/read_spec.mjs';
import * as helpers from '../../lib/index.mjs';
import { blob, bytes, jamcrc, le, packet, schemaBytes } from './encode.mjs';
import { assert, test } from './module.mjs';

const { BrindleError, buildBlock, fromJSON, joinBlocks, packMetaBlock, parseConfigBlob,
  parseMetaBlock, specFromBlock, toJSON, unwrap, validateBlock } = helpers;

const build = (spec) => unwrap(buildBlock(spec));
const parse = (block) => unwrap(parseMetaBlock(block));

function assertThrown(call, code, message, place = {}) {
  assert.throws(call, (error) => {
    assert.ok(error instanceof BrindleError && error instanceof Error);
    assert.equal(`${error}`, `BrindleError: ${message}`);
    assert.deepEqual({ ...error }, { code, ...place });
    return true;
  });
}

test('a refusal that is unwrapped is thrown with its code and place', () => {
  assert.equal(unwrap({ ok: true, value: undefined }), undefined);
  const good = build({ metaName: 'm'.repeat(32) });
  assertThrown(() => unwrap(parseMetaBlock('')), 'INVALID_ARGUMENT', 'parseMetaBlock expects a Buffer');
  assertThrown(() => unwrap(parseConfigBlob(bytes(0, 0))), 'CORRUPTED_META', 'block size is zero',
    { blockIndex: 0 });
  assertThrown(() => unwrap(parseConfigBlob(bytes(blob(good), 0, 0))), 'CORRUPTED_META',
    'block size is zero', { blockIndex: 1, offset: good.length + 2 });
});

// A field of every kind, with what objects would lose: names that look like
// indices in another order, and an entry given twice.
const nested = { metaName: 'inner', fields: [{ name: 'x', type: 'int64', repeated: true }],
  metaFields: [{ name: 'c', type: 'int16', value: -300 }, { name: 't', type: 'string', value: 'é' },
    { name: 'l', type: 'uint64', repeated: true, value: [2n ** 63n] }] };
const spec = { metaName: 'example', hasCrc: true, fields: [
  { name: 'baud', type: 'enum', value: 2, enumOptions: [
    { key: '9600', code: 2 }, { key: '300', code: 1 }, { key: 'auto', code: 0 },
    { key: 'auto', code: 7 }] },
  { name: '7', type: 'float', repeated: true, value: [NaN, -0, Infinity, 0.1] },
  { name: 'unset', type: 'uint8' },
  { name: 'inner', type: 'datamap', nested, value: { x: [-(2n ** 63n)] } },
  { name: '1', type: 'bool', value: true },
], metaFields: [{ name: '__instance', type: 'uint16', value: 3 }] };

test('a block with a trailer is edited by building it again', () => {
  const block = build(spec);
  const dto = parse(block);
  assert.ok(build(specFromBlock(dto)).equals(block));
  assert.ok(build(specFromBlock({ rawBytes: block })).equals(block));
  dto.values.baud = 1;
  dto.values['1'] = null;
  dto.values.unset = 9n;
  dto.metaValues.__instance = 4;
  const edited = build(specFromBlock(dto));
  unwrap(validateBlock(edited));
  const { instance, values } = parse(edited);
  assert.deepEqual(values, { 7: [NaN, -0, Infinity, Math.fround(0.1)], baud: 1,
    inner: { x: [-(2n ** 63n)] }, unset: 9 });
  assert.equal(instance, 4);
});

test('the examples are built again byte for byte, with a trailer and without', () => {
  for (const name of ['network_interface', 'sensor_array', 'thermostat']) {
    const example = readSpec(new URL(`../../examples/${name}.json`, import.meta.url));
    for (const hasCrc of [false, true]) {
      const block = build({ ...example, hasCrc });
      assert.ok(build(specFromBlock(parse(block))).equals(block), name);
    }
  }
});

test('a record keeps its own order', () => {
  const plain = build({ ...spec, hasCrc: false });
  // Put at the end of the record, though first but one in the schema.
  const block = unwrap(packMetaBlock({ rawBytes: plain, values: { unset: 1 } }));
  assert.ok(build(specFromBlock(parse(block))).equals(block));
  assert.ok(build(specFromBlock({ rawBytes: plain, values: { ...parse(plain).values, unset: 1 } }))
    .equals(block));
});

function detached() {
  const view = new Uint8Array(32);
  structuredClone(view, { transfer: [view.buffer] });
  return view;
}

test('of the length of a record 16 bits count', () => {
  // Objects have these in their own order.
  const fields = ['0', '1'].map((name) => ({ name, type: 9 }));
  // 2^64 - 2^16 + 4 in ten bytes: in 16 bits the length of the four behind it.
  const length = bytes(0x84, 0x80, 0xfc, Array(6).fill(0xff), 1);
  const rawBytes = bytes(schemaBytes({ name: 'n'.repeat(20), fields }), 10, 0, length, 1, 0, 0, 0);
  const names = specFromBlock({ rawBytes }).fields.map(({ name }) => name);
  assert.deepEqual(names, ['0', '1', '1', '0']);
});

test('a spec that would lose something is not made', () => {
  const dto = parse(build(spec));
  const rows = [
    [null, 'INVALID_ARGUMENT', 'the block must be an object'],
    [{ ...dto, values: [] }, 'INVALID_ARGUMENT', 'values must be an object'],
    [{ ...dto, rawBytes: new DataView(new ArrayBuffer(40)) }, 'INVALID_ARGUMENT',
      'rawBytes must be a Buffer'],
    [{ rawBytes: Buffer.alloc(31) }, 'TRUNCATED', 'block smaller than minimum header size'],
    [{ rawBytes: detached() }, 'TRUNCATED', 'block smaller than minimum header size'],
    [{ ...dto, values: { buad: 1 } }, 'INVALID_ARGUMENT', "values: no field 'buad' belongs there"],
    [{ ...dto, values: { inner: { c: 1 } } }, 'INVALID_ARGUMENT',
      "values.inner: no field 'c' belongs there"],
    [{ ...dto, values: { __instance: 1 } }, 'INVALID_ARGUMENT',
      "values: no field '__instance' belongs there"],
    [{ ...dto, metaValues: {} }, 'INVALID_ARGUMENT',
      "metaValues: the constant '__instance' has no value"],
    [{ rawBytes: dto.rawBytes.subarray(0, -1) }, 'CORRUPTED_META',
      'the record of the block cannot be read'],
  ];
  const field = (more) => ({ name: 'f', type: 9, ...more });
  const block = (field, ...record) => ({ rawBytes:
    bytes(schemaBytes({ name: 'n'.repeat(20), fields: [field] }), packet(...record)) });
  const kind = "field 'f' is of a kind that no BlockSpec can describe";
  const text = 'a string cannot be kept in JavaScript: 0x';
  const constant = { nested: { fields: [{ name: 'x', type: 4 }] }, constant: bytes(5, 10, 0, 2, 0, 7),
    constantCrc: jamcrc(bytes('x', le(jamcrc(bytes(7)), 4))) };
  for (const [raw, message] of [
    [block(field({ type: 13 })), kind],
    [block(field({ flags: 4 })), kind],
    [block(field({ type: 12, flags: 1, ...constant })), kind],
    [{ rawBytes: schemaBytes({ name: 'n'.repeat(20), flags: 2 }) },
      'a schema has flags that no BlockSpec can set'],
    [block(field({ name: bytes(0xff) })), `${text}ff`],
    [block(field(), 0, 2, 'a\0'), `${text}6100`],
  ]) rows.push([raw, 'NOT_IMPLEMENTED', message]);
  for (const row of rows) assertThrown(() => specFromBlock(row[0]), ...row.slice(1));
});

test('blocks are joined within the limits of a blob', () => {
  const blocks = [Buffer.alloc(32, 1), new Uint8Array(65535).fill(2)];
  assert.ok(joinBlocks(blocks).equals(blob(...blocks)));
  assert.equal(joinBlocks([]).length, 0);
  const most = Array(15).fill(blocks[1]);  // leaves room for 65519 bytes and their length
  assert.equal(joinBlocks([...most, Buffer.alloc(65519)]).length, 1048576);
  const rows = [
    [[...most, Buffer.alloc(65520)], 'SIZE_LIMIT_EXCEEDED',
      'the blob would have 1048577 bytes, more than 1048576'],
    [[blocks[0], Buffer.alloc(31)], 'TRUNCATED', 'block 1 has 31 bytes, fewer than 32',
      { blockIndex: 1 }],
    [[Buffer.alloc(65536)], 'BLOCK_TOO_LARGE', 'block 0 has 65536 bytes, more than 65535 in a blob',
      { blockIndex: 0 }],
    [['4d'], 'INVALID_ARGUMENT', 'block 0 must be a Buffer', { blockIndex: 0 }],
    [null, 'INVALID_ARGUMENT', 'joinBlocks expects an array of Buffers'],
  ];
  for (const [list, ...refusal] of rows) assertThrown(() => joinBlocks(list), ...refusal);
});

test('a parsed block in JSON has strings for what JSON lacks', () => {
  const dto = parse(build(spec));
  const json = JSON.parse(JSON.stringify(toJSON(dto)));
  assert.deepEqual(json, { ...dto, rawBytes: dto.rawBytes.toString('hex'), values: { ...dto.values,
    7: ['NaN', '-0', 'Infinity', Math.fround(0.1)], inner: { x: ['-9223372036854775808'] } } });
  assert.deepEqual(fromJSON(json), dto);
  // Numbers that JSON has kept exactly, and bigints where numbers are usual.
  assert.deepEqual(fromJSON({ ...json, values: { inner: { x: [5] }, baud: null } }).values,
    { inner: { x: [5n] }, baud: null });
  const edited = toJSON({ ...dto, values: { baud: 1n, unset: undefined } });
  assert.deepEqual(edited.values, { baud: 1 });
});

test('what does not fit is refused with the path to it, in JSON and before', () => {
  const dto = parse(build(spec));
  const json = toJSON(dto);
  const [baud, ...fields] = json.meta.fields;
  const withMeta = (field) => ({ meta: { name: '', fields: [field, ...fields] } });
  const cyclic = { name: 'inner', type: 'datamap', repeated: false, isMeta: false };
  cyclic.nested = { name: '', fields: [cyclic] };
  const code = 'a whole number from 0 to 255';
  const record = [
    [{ 1: 1 }, 'values.1 must be true or false'],
    [{ baud: 'auto' }, `values.baud must be ${code}`],
    [{ baud: 256 }, `values.baud must be ${code}`],
    [{ unset: -1n }, `values.unset must be ${code}`],
    [{ 7: 1 }, 'values.7 must be an array'],
    [{ inner: 5 }, 'values.inner must be an object'],
    [{ inner: { y: 1 } }, 'values.inner.y must be a field of the schema'],
  ].map(([values, message]) => [{ values }, message]);
  const decimal = 'values.inner.x[0] must be a whole number';
  const range = `${decimal} from -9223372036854775808 to 9223372036854775807`;
  const digits = `${decimal} in decimal digits, as a string`;
  const deep = (levels) => `meta${'.fields[0].nested'.repeat(levels)}`;
  const both = [...record,
    [withMeta({ ...baud, type: 'int' }), 'meta.fields[0].type must be a field type'],
    [withMeta({ ...baud, enumMapping: { a: 256 } }), `meta.fields[0].enumMapping.a must be ${code}`],
    [withMeta(cyclic), `${deep(5)} must be at most 5 levels deep`],
    [{ raw: null }, 'raw must be an object'],
  ];
  const onlyJson = [
    [{ values: { inner: { x: [2 ** 53] } } }, digits],
    [{ values: { inner: { x: ['0x10'] } } }, digits],
    [{ values: { inner: { x: ['9223372036854775808'] } } }, range],
    [{ values: { 7: ['nan'] } },
      'values.7[0] must be a number or one of NaN, Infinity, -Infinity, -0'],
    [{ rawBytes: 'abc' }, 'rawBytes must be bytes as a string of hex digits'],
  ];
  const refused = (call, message) => assertThrown(call, 'INVALID_ARGUMENT', message);
  for (const [change, message] of both) refused(() => toJSON({ ...dto, ...change }), message);
  for (const [change, message] of [...both, ...onlyJson]) {
    refused(() => fromJSON({ ...json, ...change }), message);
  }
  refused(() => toJSON({ ...dto, values: { inner: { x: [2n ** 63n] } } }), range);
  refused(() => toJSON({ ...dto, values: { 7: ['NaN'] } }), 'values.7[0] must be a number');
  refused(() => fromJSON(), 'the block must be an object');
});
