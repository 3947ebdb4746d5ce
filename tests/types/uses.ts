// Compiled, never run: each line marked as an error must be refused, and every
// other line accepted. Compiled as a CommonJS module and as an ES module.
import {
  BrindleError, buildBlock, calcNgConfigHash, crc32, fromJSON, joinBlocks, packMetaBlock,
  parseConfigBlob, parseMetaBlock, specFromBlock, toJSON, unwrap, validateBlock,
} from 'brindle';
import type {
  BlockInfo, BlockSpec, BlockValues, ErrorCode, ErrorInfo, FieldSpec, FieldTypeName, FieldValue,
  MetaBlockDTO, MetaBlockJSON, MetaFieldSpec, MetaValuesOf, NestedSpec, Result, ValuesInputOf,
  ValuesOf,
} from 'brindle';

type Same<A, B> =
  (<T>() => T extends A ? 1 : 2) extends (<T>() => T extends B ? 1 : 2) ? true : false;
const same = <A, B>(_: Same<A, B>): void => {};

const named = { name: 'n' };
const bytes = Buffer.alloc(32);
const words: readonly string[] = ['a', 'b'];
const nested: NestedSpec = { metaName: 'point', fields: [{ ...named, type: 'int32' }] };

same<ReturnType<typeof calcNgConfigHash>, Result<Buffer>>(true);
same<ReturnType<typeof parseConfigBlob>, Result<MetaBlockDTO[]>>(true);
same<ReturnType<typeof validateBlock>, Result<BlockInfo>>(true);

// Callers' own switches over these stay complete.
same<FieldTypeName, 'int8' | 'int16' | 'int32' | 'int64' | 'uint8' | 'uint16' | 'uint32'
  | 'uint64' | 'float' | 'string' | 'enum' | 'bool' | 'datamap'>(true);
same<ErrorCode, 'INVALID_ARGUMENT' | 'SIZE_LIMIT_EXCEEDED' | 'CORRUPTED_META' | 'INTERNAL'
  | 'TRUNCATED' | 'BLOCK_TOO_LARGE' | 'INVALID_MAGIC' | 'UNKNOWN_FIELD_TYPE'
  | 'NOT_IMPLEMENTED'>(true);

// ---- Results

// A result gives its value or its error, and only after `ok` was looked at.
const parsed = parseMetaBlock(bytes);
// @ts-expect-error: may have been refused
parsed.value;
// @ts-expect-error: may have succeeded
parsed.error;
if (parsed.ok) {
  // @ts-expect-error: no error beside a value
  parsed.error;
  same<typeof parsed.value.uuid, string | undefined>(true);
  // @ts-expect-error: may be any type of value, or absent
  const target: number = parsed.value.values['target'];
  parsed.value.values['counter'] = 2n ** 60n;
  packMetaBlock(parsed.value);
} else {
  same<typeof parsed.error, ErrorInfo>(true);
}
same<ReturnType<typeof unwrap<BlockInfo>>, BlockInfo>(true);
try {
  unwrap(parsed);
} catch (error) {
  // @ts-expect-error: anything may have been thrown
  error.code;
  if (error instanceof BrindleError) same<typeof error.code, ErrorCode>(true);
}

// A value as read is narrowed step by step.
function asText(value: FieldValue): string {
  if (Array.isArray(value)) return value.map(asText).join();
  return typeof value === 'object' ? Object.keys(value).join() : value.toString();
}
asText([1, 2n, 'x', true, { inner: [1n] }]);
// @ts-expect-error: a parsed value is never null
asText(null);

// Bytes: any Uint8Array is copied in, but only a Buffer has a checksum.
validateBlock(new Uint8Array(32));
parseMetaBlock(new Uint8ClampedArray(32));
// @ts-expect-error: crc32 answers 0 for it
crc32(new Uint8Array(32));
// @ts-expect-error: a string is no Buffer
parseMetaBlock('4d484353');
// @ts-expect-error: would be read as bytes, not numbers
parseConfigBlob(new Uint16Array(32));

// ---- Fields by type

const fields: FieldSpec[] = [
  ...(['int8', 'int16', 'int32', 'int64', 'uint8', 'uint16', 'uint32', 'uint64'] as const)
    .flatMap((type): FieldSpec[] => [5, 5n].map((value) => ({ ...named, type, value }))),
  { ...named, type: 'float', value: 0.5 },
  { ...named, type: 'string', repeated: true, value: words },
  { ...named, type: 'bool', repeated: false, value: null },
  { ...named, type: 'uint8', repeated: undefined, value: undefined },
  { ...named, type: 'enum', value: 0, enumOptions: [{ key: 'off', code: 0 }] },
  { ...named, type: 'datamap', nested, value: { x: 1, gone: null, deep: { list: [1n] } } },
  { ...named, type: 'datamap', nested, repeated: true, value: [{ x: 1 }] },
];
const badFields: FieldSpec[] = [
  // @ts-expect-error: integers are never given as text
  { ...named, type: 'int32', value: '5' },
  // @ts-expect-error: a bigint is no float
  { ...named, type: 'float', value: 1n },
  // @ts-expect-error: a number is no boolean
  { ...named, type: 'bool', value: 1 },
  // @ts-expect-error: enum values are codes
  { ...named, type: 'enum', value: 'off', enumOptions: [{ key: 'off', code: 0 }] },
  // @ts-expect-error: an enum needs its options
  { ...named, type: 'enum', value: 0 },
  // @ts-expect-error: a record needs its schema
  { ...named, type: 'datamap', value: {} },
  // @ts-expect-error: one value for an array field
  { ...named, type: 'uint8', repeated: true, value: 1 },
  // @ts-expect-error: an array for a single field
  { ...named, type: 'uint8', value: [1] },
  // @ts-expect-error: a Buffer is no array
  { ...named, type: 'uint8', repeated: true, value: bytes },
  // @ts-expect-error: options that nothing would use
  { name: 'n', type: 'int8', enumOptions: [{ key: 'off', code: 0 }] },
  // @ts-expect-error: the name of no type
  { ...named, type: 'data_map', nested },
  // @ts-expect-error: a field has a name
  { type: 'int8' },
];

// Constants have a value and are no records.
const constants: MetaFieldSpec[] = [
  { name: '__uuid', type: 'string', value: '6f1c1f5e-0000-4000-8000-000000000001' },
  { name: '__instance', type: 'uint16', value: 1 },
  { ...named, type: 'float', repeated: true, value: [0, 1] },
  // @ts-expect-error: the value is missing
  { ...named, type: 'uint8' },
  // @ts-expect-error: null is no constant
  { ...named, type: 'uint8', value: null },
  // @ts-expect-error: a record cannot be a constant
  { ...named, type: 'datamap', nested, value: {} },
];

// Nested schemas have neither values nor a trailer; those would be ignored or
// make the block unreadable.
const badNested: NestedSpec[] = [
  // @ts-expect-error: a value that nothing would store
  { metaName: 'p', fields: [{ ...named, type: 'int8', value: 1 }] },
  // @ts-expect-error: no trailer inside a block
  { metaName: 'p', hasCrc: true },
];

// ---- Specs

buildBlock({ metaName: 'm', hasCrc: true, fields, metaFields: constants });
// @ts-expect-error: the name is missing
buildBlock({ fields });
// @ts-expect-error: only true sets the flag
buildBlock({ metaName: 'm', hasCrc: 1 });
// @ts-expect-error: null is no list
buildBlock({ metaName: 'm', fields: null });
// @ts-expect-error: a misspelt key would be ignored
buildBlock({ metaName: 'm', metafields: constants });
// @ts-expect-error: so would one of a field
buildBlock({ metaName: 'm', fields: [{ name: 'n', type: 'int8', repeatd: true }] });

// @ts-expect-error: and one of a nested schema
buildBlock({ metaName: 'm', fields: [{ name: 'n', type: 'datamap', nested: { metaName: 'p', feilds: [] } }] });
// @ts-expect-error: the block could not be read
buildBlock({ metaName: 'm', fields: [{ name: 'n', type: 'int8', nested: { metaName: 'p' } }] });
const either = [{ name: 'n', type: 'int8' as const },
  { name: 'p', type: 'datamap' as const, nested: { metaName: 'p', fields: [] } }];
buildBlock({ metaName: 'm', fields: either });

const thermostat = {
  metaName: 'thermostat',
  hasCrc: true,
  fields: [
    { name: 'target', type: 'float', value: 21.5 },
    { name: 'mode', type: 'enum', value: 1,
      enumOptions: [{ key: 'off', code: 0 }, { key: 'heat', code: 1 }] },
    { name: 'uptime', type: 'uint64', value: 5 },
    { name: 'room', type: 'string' },
    { name: 'active', type: 'bool', value: null },
    { name: 'counts', type: 'int64', repeated: true, value: [1, 2n] },
    { name: 'place', type: 'datamap', value: { x: 1 }, nested: { metaName: 'place', fields: [
      { name: 'x', type: 'int32' }, { name: 'y', type: 'int64' }] } },
    { name: 'slots', type: 'datamap', repeated: true, value: [{ hour: 1 }, { hour: 2, on: [true] }],
      nested: { metaName: 'slot', fields: [
        { name: 'hour', type: 'uint8' }, { name: 'on', type: 'bool', repeated: true }] } },
  ],
  metaFields: [
    { name: '__instance', type: 'uint16', value: 1 },
    { name: 'limits', type: 'float', repeated: true, value: [5, 30] },
  ],
} as const satisfies BlockSpec;
buildBlock(thermostat);

type Values = ValuesOf<typeof thermostat>;
type Constants = MetaValuesOf<typeof thermostat>;
same<Values, {
  target: number; mode: 0 | 1; uptime: bigint; room?: string; active?: boolean; counts: bigint[];
  place: { x: number; y?: bigint }; slots: { hour: number; on?: boolean[] }[];
}>(true);
same<Constants, { __instance: number; limits: number[] }>(true);
same<ValuesOf<{ metaName: 'empty' }>, {}>(true);
same<ValuesOf<BlockSpec>, BlockValues>(true);

const typed = unwrap(parseMetaBlock<Values, Constants>(bytes));
same<typeof typed, MetaBlockDTO<Values, Constants>>(true);
// @ts-expect-error: the entry has another code
typed.values.mode = 2;
// @ts-expect-error: may be absent
typed.values.room.length;
// @ts-expect-error: no such field
typed.values.mood;

const edits: ValuesInputOf<typeof thermostat> =
  { uptime: 7, mode: 0, place: { y: 4 }, counts: [1n], slots: null };
packMetaBlock({ ...typed, values: edits });
// @ts-expect-error: a bigint is no float
const badEdits: ValuesInputOf<typeof thermostat> = { target: 1n };

// Literal values are checked against what the BlockSpec says of them.
const one = (field: FieldSpec) => ({ metaName: 'm', fields: [field] });
const level: number = bytes.length;
const enumOptions = [{ key: 'off', code: 0 }, { key: 'on', code: 1 }] as const;
const point = { metaName: 'point', fields: [{ name: 'x', type: 'int8' }] } as const;
buildBlock(one(badFields[0]!));
buildBlock({ metaName: 'm', fields: [
  { ...named, type: 'enum', enumOptions, value: level },
  { ...named, type: 'enum', enumOptions, repeated: true, value: [0, 1n] },
  { ...named, type: 'datamap', nested: point, value: { x: level } },
  { ...named, type: 'datamap', nested: point, repeated: true, value: [{ x: null }, {}] },
] });
// @ts-expect-error: no entry has the code
buildBlock({ metaName: 'm', fields: [{ name: 'e', type: 'enum', enumOptions, value: 2 }] });
// @ts-expect-error: the field of the record is an integer
buildBlock({ metaName: 'm', fields: [{ name: 'p', type: 'datamap', nested: point, value: { x: 'a' } }] });
// @ts-expect-error: the record has no such field
buildBlock({ metaName: 'm', fields: [{ name: 'p', type: 'datamap', nested: point, value: { y: 1 } }] });

// ---- Edits

interface Edits { target: number; place: { x: bigint }; list?: string[] }
declare const interfaceEdits: Edits;
packMetaBlock({ rawBytes: bytes, values: interfaceEdits });
packMetaBlock({ rawBytes: bytes, values: { target: 19.5, list: words, kept: null } });
packMetaBlock({ rawBytes: bytes });
// @ts-expect-error: only the stored bytes can be repacked
packMetaBlock({ values: { target: 19.5 } });
// @ts-expect-error: a Date is no value
packMetaBlock({ rawBytes: bytes, values: { target: new Date() } });
// @ts-expect-error: nor is a symbol
packMetaBlock({ rawBytes: bytes, values: { target: Symbol() } });
// @ts-expect-error: a Buffer is no array
packMetaBlock({ rawBytes: bytes, values: { list: bytes } });

// ---- Helpers

same<ReturnType<typeof specFromBlock>, BlockSpec>(true);
buildBlock(specFromBlock(typed));
specFromBlock({ rawBytes: bytes, values: interfaceEdits });
// @ts-expect-error: the schema is read from the bytes
specFromBlock({ values: typed.values });
same<ReturnType<typeof joinBlocks>, Buffer>(true);
joinBlocks(new Set([bytes, new Uint8Array(32)]));
// @ts-expect-error: blocks, not what they were parsed to
joinBlocks([typed]);
const json: MetaBlockJSON = toJSON(typed);
// @ts-expect-error: 64-bit values are strings in JSON
json.values['uptime'] = 5n;
same<ReturnType<typeof fromJSON>, MetaBlockDTO>(true);
fromJSON(JSON.parse(JSON.stringify(json)));
