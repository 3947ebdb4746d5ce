// The inputs that cost most for their size, as far as we know: blocks that hold
// as much as possible of what is cheap to write and dear to read, blobs full of
// them, and objects that stand in themselves very many times.
import { blob, bytes, le, schemaBytes } from '../../tests/js/encode.mjs';

const BLOB = 1048576;
const BODY = 65535;  // the most that fits the 16 bits of a schema's or packet's size

const varint = (n) => (n < 128 ? bytes(n) : bytes(n % 128 + 128, varint(n >> 7)));
const repeat = (part, size) => Buffer.alloc(size - size % part.length, part);
const sized = (part) => bytes(varint(part.length), part);
const label = (i) => i.toString(36).padStart(3, '_');
const list = (count, make) => Array.from({ length: count }, (_, i) => make(i));

// A block of one schema and one packet, which repeats `part` behind `head`.
function filled(fields, part, head = () => '') {
  const schema = schemaBytes({ name: 'a name of some length', fields });
  const elements = repeat(bytes(part), BODY - schema.length - 12);
  const body = bytes(head(elements.length / part.length), elements);
  return bytes(schema, 10, 0, sized(body));
}
const entries = (field, value) => filled([field], [0, ...value]);
const elements = (field, value) =>
  filled([{ ...field, flags: 2 }], value, (count) => bytes(0, varint(count)));

const n = (type, more) => ({ name: 'n', type, ...more });
const long = { name: 'n'.repeat(254) };
const options = (from, to) => list(to - from, (i) => [label(from + i), (from + i) & 255]);
const records = (field) => n(12, { nested: { name: '', fields: [field] } });
const record = [5, 10, 0, 2, 0, 7];  // one value of one byte

// A schema in which several fields of one name share out the options: reading
// merges them, and the checksum is that of the merged schema.
function merging(count, total) {
  const all = options(0, total);
  const field = (part) => bytes(le(1, 4), 'e', 10, 0, le(part.length, 4),
    ...part.flatMap(([key, code]) => [le(key.length, 4), key, code]));
  const per = Math.ceil(total / count);
  const body = bytes(...list(count, (i) => field(all.slice(i * per, (i + 1) * per))));
  const merged = schemaBytes({ name: '', fields: [{ name: 'e', type: 10, options: all }] });
  return bytes('MHCS', 10, 0, le(body.length, 2), merged.subarray(8, 12), le(count, 4), 0, body);
}

// Arrays of records in records, each of which claims more elements than follow,
// around an array of strings that lacks the last one.
function lyingCounts() {
  let schema = { name: '', fields: [n(9, { flags: 2 })] };
  for (let i = 0; i < 4; i++) schema = { name: '', fields: [n(12, { flags: 2, nested: schema })] };
  let body = bytes(0, varint(65001), Buffer.alloc(65000));
  for (let i = 0; i < 4; i++) body = bytes(0, varint(65001), sized(bytes(10, 0, sized(body))));
  return bytes(schemaBytes(schema), 10, 0, sized(body));
}

// Schemas in schemas, as many as fit.
function nestedHeaders() {
  const empty = { name: '', fields: [] };
  const inner = { name: '', fields: list(22, (i) => n(12, { name: label(i), nested: empty })) };
  return schemaBytes({ name: '', fields: list(90, (i) => n(12, { name: label(i), nested: inner })) });
}

const hundred = list(100, (i) => n(4, { name: label(i).padEnd(100, 'x') }));

const blocks = {
  'uint8 entries of a long name': entries(n(4, long), [1]),
  'empty strings of a long name': entries(n(9, long), [0]),
  'empty strings in an array': elements(n(9), [0]),
  'arrays of one empty string': entries(n(9, { flags: 2 }), [1, 0]),
  'arrays of no uint16': entries(n(5, { flags: 2 }), [0]),
  'uint64 in an array': elements(n(7), [1]),
  'booleans in an array': elements(n(11), [1]),
  'floats in an array': elements(n(8), [1, 2, 3, 0x41]),
  'enum entries, 4000 options': entries(n(10, { options: options(0, 4000) }), [249]),
  'records of one value': entries(records(n(4)), record),
  'records in an array': elements(records(n(4)), record),
  'records of a long name in an array': elements(records(n(4, long)), record),
  'arrays that claim more than there is': lyingCounts(),
  'the last of 100 fields': filled(hundred, [99, 1]),
  'all of 100 fields': filled(hundred, list(100, (i) => [i, 1]).flat()),
  'enum options': schemaBytes({ name: '', fields: [n(10, { options: options(0, 8100) })] }),
  'enum options without names':
    schemaBytes({ name: '', fields: [n(10, { options: list(13000, () => ['', 0]) })] }),
  'enum options merged from 2 fields': merging(2, 8000),
  'enum options merged from 99 fields': merging(99, 7900),
  'schemas in schemas': nestedHeaders(),
  'nothing, in 32 bytes': schemaBytes({ name: 'fifteen letters', fields: [] }),
};

const spec = (fields) => ({ metaName: '', fields });
const nest = (levels, make) => (levels === 0 ? spec([{ name: 'n', type: 'int8' }]) :
  spec(make(nest(levels - 1, make))));
const many = (value, count = 1e5) => Array(count).fill(value);
const keyed = (i) => ({ key: label(i), code: 1 });

function aliasedRecords() {
  const { fields } = nest(4, (nested) => [{ name: 'n', type: 'datamap', repeated: true, nested }]);
  let value = { n: 1 };
  for (let i = 0; i < 4; i++) value = { n: many(value, 100) };
  return spec([{ ...fields[0], value: value.n }]);
}
function wideRecord() {
  const names = list(20000, label);
  const nested = spec(names.map((name) => ({ name, type: 'int8' })));
  const value = Object.fromEntries(names.map((name) => [name, 1]));
  return spec([{ name: 'r', type: 'datamap', nested, value }]);
}

const specs = {
  'many fields': () => spec(list(30000, (i) => ({ name: label(i), type: 'int8', value: 1 }))),
  'bytes for a record': () => {
    const nested = spec([{ name: '0', type: 'uint8' }]);
    return spec([{ name: 'r', type: 'datamap', nested, value: new Uint8Array(BLOB) }]);
  },
  'records of many absent values': () => {
    const nested = spec([{ name: 'n', type: 'int8' }]);
    const row = Object.fromEntries(list(420, (i) => [label(i), null]));
    return spec([{ name: 'r', type: 'datamap', repeated: true, nested, value: many(row, 10000) }]);
  },
  'many options': () => spec([{ name: 'e', type: 'enum', enumOptions: list(40000, keyed) }]),
  'options merged one by one': () =>
    spec(list(16000, (i) => ({ name: 'e', type: 'enum', enumOptions: [keyed(i)] }))),
  'a record of many values': wideRecord,
  'one field many times': () => spec(many({ name: 'n', type: 'int8', value: 1 })),
  'one list of options many times': () => {
    const enumOptions = many({ key: 'k', code: 1 });
    return spec(list(10000, (i) => ({ name: label(i), type: 'enum', enumOptions })));
  },
  'one long text many times': () =>
    spec([{ name: 's', type: 'string', repeated: true, value: many('x'.repeat(BLOB)) }]),
  'one text that ends at once many times': () => spec([{ name: 's', type: 'string',
    repeated: true, value: many(`\0${'x'.repeat(BLOB)}`, 200) }]),
  'schemas in themselves': () =>
    nest(4, (nested) => list(100, (i) => ({ name: label(i), type: 'datamap', nested }))),
  'records in themselves': aliasedRecords,
};

// Blobs of 1 MiB and objects of about that: [name, export, make()].
export const inputs = [
  ...Object.entries(blocks).map(([name, block]) =>
    [name, 'parseConfigBlob', () => repeat(blob(block), BLOB)]),
  ...Object.entries(specs).map(([name, make]) => [name, 'buildBlock', make]),
];
