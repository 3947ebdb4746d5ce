import { bytes, packet, schemaBytes } from './encode.mjs';
import { bomb, unlistable } from './hostile.mjs';
import brindle, { assert, assertRefused, test, valueOf } from './module.mjs';

const { buildBlock, packMetaBlock, parseMetaBlock } = brindle;
const metaName = 'a block';

const n = (type, more) => ({ name: 'n', type, ...more });
const zero = (type, more) => ({ name: 'n\0n', type, ...more });
const field = (element) => ({ metaName, fields: [element] });
const constant = (element) => ({ metaName, metaFields: [element] });
const levels = (names) =>
  [...names].reduce((nested) => field(n('datamap', { nested })), { metaName });
const record = (value) => zero('datamap', { value, nested: field(n('int8')) });

// A description that changes while it is read: a field comes late.
const late = (fields, name, ...metaFields) => ({ metaName, fields, get metaFields() {
  return fields.push({ name, value: 1 }) && metaFields;
} });

const unreadable = (key) => ({ metaName, [key]: bomb(0, []) });
const notObjects = [null, undefined, 5, 'x'];
const notLists = [null, {}, 'x', Buffer.alloc(1)];
const noStrings = [[], { name: 5, type: 'x' }, n(5),
  ...['name', 'type'].map((key) => bomb(key, n('int8')))];
const badOptions = [bomb('enumOptions', zero('datamap')), ...[
  {}, 'x', 5, [5], [{ code: 1 }], [{ key: 5, code: 1 }], [{ key: 'a' }], bomb(0, []),
  [bomb('key', { code: 1 })], [bomb('code', { key: 'a' })],
  ...[256, 255.5, -1, -0.5, NaN, Infinity, '3', 3n].map((code) => [{ key: 'b', code }]),
].map((enumOptions) => zero('datamap', { enumOptions }))];

// Many hold a second fault, which must not be the one reported; "bomb" makes
// a property that throws, which is never the same as leaving it out.
const refusals = {
  INVALID_ARGUMENT: {
    'buildBlock expects a BlockSpec object': notObjects,
    'BlockSpec.metaName must be a string': [
      { fields: 1 }, [], bomb('metaName'), ...unlistable,
      ...['datamap', 'enum', 'int8'].map((type) => field(n(type, { nested: {} })))],
    'BlockSpec.fields must be an array (or omitted)': [bomb('fields', { metaName }),
      ...notLists.map((fields) => ({ metaName, fields, metaFields: 5 }))],
    'BlockSpec.fields[i] must be an object': [...notObjects.map(field), unreadable('fields')],
    'field.name / field.type must be strings': noStrings.map(field),
    "invalid enumOptions on field 'n\0n'": badOptions.map(field),
    "datamap field 'n\0n' requires nested BlockSpec": [bomb('nested', zero('datamap')),
      ...notObjects.map((nested) => zero('datamap', { nested }))].map(field),
    'BlockSpec.metaFields must be an array (or omitted)': [bomb('metaFields', { metaName }),
      ...notLists.map((metaFields) => ({ ...field(n('int8', { value: 'x' })), metaFields }))],
    'metaFields[i] must be an object': [...notObjects.map(constant), unreadable('metaFields')],
    'metaField.name / type must be strings': noStrings.map(constant),
    "invalid enumOptions on metaField 'n\0n'": badOptions.map(constant),
    "metaField 'n\0n' value type mismatch": [
      zero('int8'), bomb('value', zero('int8')), record({}),
      ...[null, 128].map((value) => zero('int8', { value })), zero('enum', { value: 256 }),
      ...['int8', 'datamap'].map((type) => zero(type, { value: {}, repeated: true })),
      zero('datamap', { value: [], repeated: true }),
    ].map(constant),
    "value type mismatch for field 'n\0n'": [
      zero('int8', { value: 'x' }), zero('int8', { repeated: true, value: bomb(0, []) }),
      bomb('value', zero('int8')), ...[bomb('n'), ...unlistable].map(record)].map(field),
  },
  UNKNOWN_FIELD_TYPE: Object.fromEntries(
    ['Int8', 'int 8', 'int8\0', 'data_map', '', 'b\u00f6ol'].flatMap((type) => [
      [`unknown field type: ${type}`, [field(n(type, { enumOptions: 5 }))]],
      [`unknown meta-field type: ${type}`, [constant(n(type, { enumOptions: 5 }))]]])),
  INTERNAL: {
    'Meta::pack() returned empty buffer': [levels('12345')],
    "Meta::addField failed for 'n\0n'": [field(zero('enum', { value: 'x' })),
      { metaName, fields: [n('int8'), zero('uint8')] }],
    "Meta::addMetaField failed for 'n\0n'": [constant(zero('enum', { value: 1 }))],
    'field lookup failed post-addField: late': [late([], 'late')],
    'Serializer::serialize() returned empty buffer': [late([], 'n', n('int8', { value: 1 }))],
  },
};

for (const [code, rows] of Object.entries(refusals)) {
  test(`buildBlock is exact about ${code}`, () => {
    for (const [message, specs] of Object.entries(rows)) {
      for (const spec of specs) assertRefused(buildBlock(spec), code, message);
    }
  });
}

// Ten thousand, or a hundred times a hundred, of the same.
const many = (value) => Array(10000).fill(value);
const squared = (record) => Array(100).fill({ n: Array(100).fill(record) });
test('what stands in an object very many times is too large, and soon found to be', () => {
  const text = 'x'.repeat(1000);
  const lists = (type) => ({ repeated: true, nested: field(n('datamap', {
    repeated: true, nested: field(n(type)) })) });
  const specs = [
    { metaName, fields: many({ ...n('int8'), name: text }) },
    { metaName, fields: many(n('enum', { enumOptions: many({ key: 'k', code: 1 }) })) },
    { metaName, fields: many(n('datamap', { nested: { metaName, fields: many(n('int8')) } })) },
    constant(n('string', { repeated: true, value: many(text) })),
    field(n('string', { repeated: true, value: many(text) })),
    field(n('datamap', { value: squared({ [text.repeat(100)]: 0 }), ...lists('int8') })),
    field(n('datamap', { value: squared({ n: text }), ...lists('string') })),
    field(n('datamap', { value: new Uint8Array(1e6), nested: field(n('int8')) }))];
  const message = (how) => `${how} block exceeds MAX_META_BLOCK_BYTES (65536)`;
  for (const spec of specs) assertRefused(buildBlock(spec), 'BLOCK_TOO_LARGE', message('built'));
  const rawBytes = valueOf(buildBlock(field(n('string', { repeated: true }))));
  for (const values of [{ n: many(text) }, new Uint8Array(1e6)]) {
    assertRefused(packMetaBlock({ rawBytes, values }), 'BLOCK_TOO_LARGE', message('repacked'));
  }
});

test('records with few of many long names are not too large', () => {
  const names = Array.from({ length: 100 }, (_, i) => String(i).padStart(254, 'x'));
  const row = Object.fromEntries(names.map((name, i) => [name, i === 7 ? 5 : null]));
  const value = Array(5000).fill(row);
  const nested = { metaName, fields: names.map((name) => ({ name, type: 'uint8' })) };
  const spec = field(n('datamap', { repeated: true, nested, value }));
  const { values } = valueOf(parseMetaBlock(valueOf(buildBlock(spec))));
  assert.deepEqual(values.n, Array(5000).fill({ [names[7]]: 5 }));
});

test('what may be omitted or odd makes no difference', () => {
  const spec = field(n('uint8', { value: 5 }));
  const specs = [Object.create(spec), Object.assign(() => {}, spec),
    { ...spec, metaName: `${metaName}\0cut`, metaFields: undefined, other: 1 },
    ...[1, 'true', null, {}].map((hasCrc) => ({ ...spec, hasCrc })),
    ...['hasCrc', 'other'].map((key) => bomb(key, { ...spec })),
    ...['repeated', 'nested'].map((key) => field(bomb(key, n('uint8', { value: 5 })))),
    ...[{ name: 'n\0cut' }, { repeated: 'yes' }, { repeated: 1 }, { nested: 'x' },
      ...[null, [{ key: 'a', code: 1 }]].map((enumOptions) => ({ enumOptions })),
    ].map((more) => field(n('uint8', { value: 5, ...more })))];
  const block = (more) => bytes(schemaBytes({ name: metaName, fields: [n(4, more)] }), packet(0, 5));
  for (const spec of specs) assert.deepEqual(valueOf(buildBlock(spec)), block());
  // Except a nested schema, which counts for any type.
  const nesting = field(n('uint8', { value: 5, nested: { metaName } }));
  assert.deepEqual(valueOf(buildBlock(nesting)), block({ nested: { name: metaName } }));
});

test('a name given twice has one field with the later value', () => {
  const list = (options) => Object.entries(options).map(([key, code]) => ({ key, code }));
  const choice = (value, options) => n('enum', { value, enumOptions: list(options) });
  const fields = [choice(1, { a: 1.9, b: 255, 'c\0c': -0 }),
    { name: 'o', type: 'bool', value: true }, choice(2n, { a: 9, d: 2 })];
  const { meta, values } = valueOf(parseMetaBlock(valueOf(buildBlock({ metaName, fields }))));
  assert.deepEqual(meta.fields.map(({ name }) => name), ['n', 'o']);
  assert.deepEqual(meta.fields[0].enumMapping, { a: 1, b: 255, c: 0, d: 2 });
  assert.equal(JSON.stringify(values), '{"n":2,"o":true}');
});

const schema = { name: 'schema', fields: [...['a', 'b', 'c'].map((name) => ({ name, type: 4 })),
  { name: 'k', type: 4, flags: 1, constant: [7] }, { name: 's', type: 9 }] };
const head = schemaBytes(schema);
const rawBytes = bytes(head, packet(0, 1, 1, 2));
const edit = (rawBytes, values = {}) => ({ rawBytes, values });
const repacked = (rawBytes, values) => valueOf(packMetaBlock({ rawBytes, values }));

test('packMetaBlock is exact about its refusals', () => {
  const rows = [
    ['INVALID_ARGUMENT', 'packMetaBlock expects a MetaBlockDTO object', undefined, null, 'dto'],
    ['NOT_IMPLEMENTED', 'packMetaBlock from DTO without rawBytes is not supported. ' +
      'Pass the DTO\'s rawBytes (verbatim or with edited values).',
    {}, { values: 5 }, edit('text'), edit([1]), bomb('rawBytes'), unlistable[0]],
    ['INVALID_ARGUMENT', 'failed to copy-in rawBytes', edit(new DataView(new ArrayBuffer(40)))],
    ['TRUNCATED', 'rawBytes smaller than minimum header size', edit(rawBytes.subarray(0, 31))],
    ['BLOCK_TOO_LARGE', 'rawBytes exceeds size cap', edit(Buffer.alloc(65537))],
    ['CORRUPTED_META', 'Meta::unpack returned null', edit(Buffer.alloc(32), { a: 'x' })],
    ['INVALID_ARGUMENT', "value type mismatch for field 'a'", edit(rawBytes, bomb('a')),
      ...[256, '1', [1], true].map((a) => edit(rawBytes, { c: 1, a }))],
    // A record with a constant, which only a schema may hold.
    ['INTERNAL', 'Serializer::serialize() returned empty buffer',
      edit(bytes(head, packet(3, 7)))],
    ['INTERNAL', 'packMetaBlock internal failure', bomb('values', { rawBytes }),
      ...unlistable.map((values) => edit(rawBytes, values))]];
  for (const [code, message, ...dtos] of rows) {
    for (const dto of dtos) assertRefused(packMetaBlock(dto), code, message);
  }
});

test('without an object of values the bytes are copied unread', () => {
  for (const data of [bytes('junk'), Buffer.alloc(65537), rawBytes]) {
    const copies = [undefined, null, [], 5, 'x', true].map((values) => repacked(data, values));
    for (const copy of copies) assert.deepEqual(copy, data);
    for (const { buffer } of copies) assert.notEqual(buffer, data.buffer);
  }
});

test('edits lie over the record, new values behind it', () => {
  const hidden = Object.create({ a: 9 }, { s: { value: 9 } });
  const listed = Object.assign(hidden, { c: 3, k: 9, b: 5n, [Symbol('a')]: 9 });
  const rows = [
    [rawBytes, bomb('other', listed), packet(0, 1, 1, 5, 2, 3)],
    [rawBytes, { a: null, b: undefined, 'c\0c': 3 }, packet(0, 1, 1, 2, 2, 3)],
    [rawBytes, {}, packet(0, 1, 1, 2)], [bytes(head, 'garbage'), {}, packet()],
    [head, {}, ''], [head, { b: null, k: 1 }, ''], [head, { b: 2 }, packet(1, 2)],
    // The flag of the trailer stays, the trailer does not.
    [schemaBytes({ ...schema, flags: 1 }), { b: 2 }, packet(1, 2)]];
  for (const [data, values, payload] of rows) {
    const before = bytes(data);
    assert.deepEqual(repacked(data, values), bytes(data.subarray(0, head.length), payload));
    assert.deepEqual(data, before);
  }
  const deepest = valueOf(buildBlock(levels('1234')));
  assert.deepEqual(repacked(deepest, {}), deepest);
});

test('bytes that vanish while a block is read do no harm', () => {
  const detach = ({ buffer }) => void structuredClone(buffer, { transfer: [buffer] });
  const [early, late] = [1, 2].map(() => Buffer.from(Uint8Array.from(rawBytes).buffer));
  const dto = { rawBytes: early, get values() { return detach(early) ?? {}; } };
  assertRefused(packMetaBlock(dto), 'TRUNCATED', 'rawBytes smaller than minimum header size');
  const values = { get b() { return detach(late) ?? 6; } };
  assert.deepEqual(repacked(late, values), bytes(head, packet(0, 1, 1, 6)));
});
