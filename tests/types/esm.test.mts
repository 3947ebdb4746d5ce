// Compiled, never run: each line marked as an error must be refused, and every
// other line accepted.
import brindle, { buildBlock, crc32, packMetaBlock, parseMetaBlock, validateBlock } from 'brindle';
import type { BlockInfo, BrindleError, ErrorCode, FieldSpec, FieldTypeName } from 'brindle';
import type { FieldValue, MetaBlockDTO, MetaFieldSpec, NestedSpec, Result } from 'brindle';

type Same<A, B> =
  (<T>() => T extends A ? 1 : 2) extends (<T>() => T extends B ? 1 : 2) ? true : false;
const same = <A, B>(_: Same<A, B>): void => {};

const named = { name: 'n' };
const bytes = Buffer.alloc(32);
const words: readonly string[] = ['a', 'b'];
const nested: NestedSpec = { metaName: 'point', fields: [{ ...named, type: 'int32' }] };

// The declared names are those that the module exports.
same<keyof typeof brindle, 'abiVersion' | 'crc32' | 'validateBlock' | 'parseMetaBlock'
  | 'parseConfigBlob' | 'packMetaBlock' | 'buildBlock' | 'calcNgConfigHash'>(true);
same<ReturnType<typeof brindle.abiVersion>, string>(true);
same<ReturnType<typeof brindle.calcNgConfigHash>, Result<Buffer>>(true);
same<ReturnType<typeof brindle.parseConfigBlob>, Result<MetaBlockDTO[]>>(true);
same<ReturnType<typeof brindle.validateBlock>, Result<BlockInfo>>(true);

// Callers' own switches over these stay complete.
same<FieldTypeName, 'int8' | 'int16' | 'int32' | 'int64' | 'uint8' | 'uint16' | 'uint32'
  | 'uint64' | 'float' | 'string' | 'enum' | 'bool' | 'datamap'>(true);
same<ErrorCode, 'INVALID_ARGUMENT' | 'SIZE_LIMIT_EXCEEDED' | 'CORRUPTED_META' | 'INTERNAL'
  | 'TRUNCATED' | 'BLOCK_TOO_LARGE' | 'INVALID_MAGIC' | 'UNKNOWN_FIELD_TYPE'
  | 'NOT_IMPLEMENTED'>(true);

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
  same<typeof parsed.error, BrindleError>(true);
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
// @ts-expect-error: crc32 answers 0 for it
crc32(new Uint8Array(32));
// @ts-expect-error: a string is no Buffer
parseMetaBlock('4d484353');
// @ts-expect-error: would be read as bytes, not numbers
brindle.parseConfigBlob(new Uint16Array(32));

// Every type takes its own values.
const fields: FieldSpec[] = [
  ...(['int8', 'int16', 'int32', 'int64', 'uint8', 'uint16', 'uint32', 'uint64'] as const)
    .flatMap((type): FieldSpec[] => [5, 5n].map((value) => ({ ...named, type, value }))),
  { ...named, type: 'float', value: 0.5 },
  { ...named, type: 'string', repeated: true, value: words },
  { ...named, type: 'bool', repeated: false, value: null },
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

buildBlock({ metaName: 'm', hasCrc: true, fields, metaFields: constants });
// @ts-expect-error: the name is missing
buildBlock({ fields });
// @ts-expect-error: only true sets the flag
buildBlock({ metaName: 'm', hasCrc: 1 });
// @ts-expect-error: null is no list
buildBlock({ metaName: 'm', fields: null });
// @ts-expect-error: a misspelt key would be ignored
buildBlock({ metaName: 'm', metafields: constants });

packMetaBlock({ rawBytes: bytes, values: { target: 19.5, list: words, kept: null } });
// @ts-expect-error: only the stored bytes can be repacked
packMetaBlock({ values: { target: 19.5 } });
// @ts-expect-error: a Date is no value
packMetaBlock({ rawBytes: bytes, values: { target: new Date() } });
