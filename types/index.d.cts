/// <reference types="node" />

// Without this line every declaration here would be exported, the helpers too.
export {};

// ---- Results ---------------------------------------------------------------

/**
 * Why a call was refused.
 *
 * - `INVALID_ARGUMENT`: wrong kind of argument, or a value that does not fit
 *   its field.
 * - `SIZE_LIMIT_EXCEEDED`: a blob of more than 1,048,576 bytes.
 * - `BLOCK_TOO_LARGE`: a block of more than 65,536 bytes, given or produced.
 * - `TRUNCATED`: fewer bytes than a block needs; the least is 32.
 * - `INVALID_MAGIC`: the bytes do not begin with a block header.
 * - `CORRUPTED_META`: a schema that cannot be read, or a blob that cannot be
 *   hashed.
 * - `UNKNOWN_FIELD_TYPE`: a type name other than the thirteen.
 * - `NOT_IMPLEMENTED`: repacking without `rawBytes`.
 * - `INTERNAL`: a step failed that should not; a field that the schema refuses
 *   ends here too.
 */
export type ErrorCode =
  | 'INVALID_ARGUMENT'
  | 'SIZE_LIMIT_EXCEEDED'
  | 'CORRUPTED_META'
  | 'INTERNAL'
  | 'TRUNCATED'
  | 'BLOCK_TOO_LARGE'
  | 'INVALID_MAGIC'
  | 'UNKNOWN_FIELD_TYPE'
  | 'NOT_IMPLEMENTED';

/** A refusal: what went wrong and, inside a blob, where. */
export interface BrindleError {
  code: ErrorCode;
  message: string;
  /** Index of the blob entry at fault, from 0. Set by `parseConfigBlob` only. */
  blockIndex?: number;
  /** Position in the blob, in bytes. Never 0: a fault at the start has no offset. */
  offset?: number;
}

/** A successful call. */
export interface Ok<T> {
  ok: true;
  value: T;
}

/** A refused call. */
export interface Err {
  ok: false;
  error: BrindleError;
}

/**
 * What every function that handles data answers; bad data throws nothing.
 * Besides the refusals named with each function, any may answer `INTERNAL`, as
 * when memory runs out.
 *
 * @example
 * const result = parseMetaBlock(block);
 * if (!result.ok) throw new Error(`${result.error.code}: ${result.error.message}`);
 * console.log(result.value.meta.name);
 */
export type Result<T> = Ok<T> | Err;

// ---- Types and values ------------------------------------------------------

/** Types whose values are whole numbers. */
export type IntegerTypeName =
  | 'int8'
  | 'int16'
  | 'int32'
  | 'int64'
  | 'uint8'
  | 'uint16'
  | 'uint32'
  | 'uint64';

/** The thirteen field types; `datamap` is a nested record. */
export type FieldTypeName =
  IntegerTypeName | 'float' | 'string' | 'enum' | 'bool' | 'datamap';

/**
 * A value as parsing answers it:
 *
 * | type | value |
 * |---|---|
 * | `int64`, `uint64` | `bigint` |
 * | other integers | `number` |
 * | `float` | `number`, exactly the 32-bit float that is stored |
 * | `enum` | `number`, the code; its name is in `FieldDTO.enumMapping` |
 * | `string`, `bool` | `string`, `boolean` |
 * | `datamap` | `BlockValues` |
 * | any repeated field | an array of these |
 */
export type FieldValue =
  number | bigint | string | boolean | BlockValues | FieldValue[];

/** The values of one record by field name; a field that it lacks is absent. */
export interface BlockValues {
  [name: string]: FieldValue | undefined;
}

/**
 * A value as building and repacking accept it. Nothing is coerced: `'5'` is no
 * integer and `1` no boolean. Integers of every width, and enum codes, may be
 * numbers or bigints, and must be whole and in range.
 */
export type ValueInput =
  number | bigint | string | boolean | ValuesInput | readonly ValueInput[];

/**
 * The values of one record to be written. `null` and `undefined` mean "not
 * given"; names that the schema does not have are ignored.
 */
export interface ValuesInput {
  readonly [name: string]: ValueInput | null | undefined;
}

// ---- Describing a block ----------------------------------------------------

/** One entry of an enum's mapping. */
export interface EnumOption {
  /** The entry's name, at most 254 bytes of UTF-8. */
  key: string;
  /** 0 to 255; a fraction is cut off. */
  code: number;
}

/** Any type that needs no further description. */
interface PlainType<Name extends FieldTypeName> {
  type: Name;
}

interface EnumType {
  type: 'enum';
  /** At least one entry. */
  enumOptions: readonly EnumOption[];
}

interface RecordType {
  type: 'datamap';
  nested: NestedSpec;
}

/**
 * One value, or an array of them. An empty array survives only for the 16-, 32-
 * and 64-bit integers; of any other type it makes the stored record unreadable.
 */
type MaybeValue<T> =
  | { repeated?: false; value?: T | null | undefined }
  | { repeated: true; value?: readonly T[] | null | undefined };

/** As `MaybeValue`, but there must be one. */
type Constant<T> =
  { repeated?: false; value: T } | { repeated: true; value: readonly T[] };

type Integer = number | bigint;

interface Named {
  /** At most 254 bytes of UTF-8; cut at a U+0000. */
  name: string;
}

/** A field without a value, as the schema of a nested record lists it. */
export type FieldDeclaration = Named & { repeated?: boolean; value?: never } & (
    | PlainType<Exclude<FieldTypeName, 'enum' | 'datamap'>>
    | EnumType
    | RecordType
  );

/**
 * A field of a block and, if it has one, its value. `float` is rounded to 32
 * bits, so a number beyond that range becomes infinite; `enum` takes the code,
 * never the name; `string` is cut at a U+0000.
 */
export type FieldSpec = Named &
  (
    | (PlainType<IntegerTypeName> & MaybeValue<Integer>)
    | (PlainType<'float'> & MaybeValue<number>)
    | (PlainType<'string'> & MaybeValue<string>)
    | (PlainType<'bool'> & MaybeValue<boolean>)
    | (EnumType & MaybeValue<Integer>)
    | (RecordType & MaybeValue<ValuesInput>)
  );

/**
 * A constant: its value belongs to the schema, so edits never change it.
 * Records cannot be constants.
 *
 * A few names mean something: `__uuid` (a `string` of 36 characters) and
 * `__instance` (`uint8`, `uint16` or `uint32`) identify the block, and the
 * configuration hash needs both; `__uuidDescr` or, without it,
 * `descriptor_uuid` (a `string`) names the descriptor.
 */
export type MetaFieldSpec = Named &
  (
    | (PlainType<IntegerTypeName> & Constant<Integer>)
    | (PlainType<'float'> & Constant<number>)
    | (PlainType<'string'> & Constant<string>)
    | (PlainType<'bool'> & Constant<boolean>)
    | (EnumType & Constant<Integer>)
  );

/**
 * The schema of a nested record. Five levels of schema are possible, the
 * block's own included.
 */
export interface NestedSpec {
  /** The schema's name, at most 254 bytes of UTF-8; may be empty. */
  metaName: string;
  /** Only a whole block has a trailer; with the flag set it could not be read. */
  hasCrc?: false;
  fields?: readonly FieldDeclaration[];
  metaFields?: readonly MetaFieldSpec[];
}

/**
 * Everything `buildBlock` needs: the schema and the values. A block with more
 * than 100 fields and constants together cannot be read back.
 */
export interface BlockSpec {
  /** The schema's name, at most 254 bytes of UTF-8; may be empty. */
  metaName: string;
  /** Ends the packed schema with a CRC-16. Such a block must not be edited. */
  hasCrc?: boolean;
  /** In the order in which they are stored. */
  fields?: readonly FieldSpec[];
  /** Stored after all `fields`. */
  metaFields?: readonly MetaFieldSpec[];
}

// ---- Parsed blocks ---------------------------------------------------------

/** One field of a parsed schema. */
export interface FieldDTO {
  name: string;
  /** `unknown` for a type code that this version does not know. */
  type: FieldTypeName | 'unknown';
  repeated: boolean;
  /** A constant: its value is in `metaValues`, not in `values`. */
  isMeta: boolean;
  /** Codes by entry name; enum fields only. */
  enumMapping?: Record<string, number>;
  /** The schema of the nested record; `datamap` fields only. */
  nested?: MetaDTO;
}

/** A parsed schema. */
export interface MetaDTO {
  name: string;
  /** In stored order, the constants included. */
  fields: FieldDTO[];
}

/** A parsed block; edit `values` and hand it to `packMetaBlock`. */
export interface MetaBlockDTO {
  /** The constant `__uuid` in lower case, if it is a valid identifier. */
  uuid?: string;
  /** The 16 bytes of `uuid`. */
  uuidRawBytes?: Buffer;
  /** The constant `__instance`, if it is an unsigned integer of up to 32 bits. */
  instance?: number;
  /** The constant `__uuidDescr` or else `descriptor_uuid`, as written. */
  descriptorUuid?: string;
  meta: MetaDTO;
  /** In stored order; empty also for a record that cannot be read. */
  values: BlockValues;
  /** The constants. */
  metaValues: BlockValues;
  raw: {
    /** Length of the whole block in bytes. */
    size: number;
    /** `crc32` of the whole block. */
    crc32: number;
  };
  /** A copy of the whole block. */
  rawBytes: Buffer;
}

/** What `packMetaBlock` reads of a `MetaBlockDTO`. */
export interface PackInput {
  rawBytes: Uint8Array;
  /** Values to put in place of the stored ones; others stay as they are. */
  values?: ValuesInput;
}

/** What `validateBlock` finds. */
export interface BlockInfo {
  /** Length of the given bytes. */
  size: number;
  /** Version of the block format. */
  version: number;
}

// ---- Functions -------------------------------------------------------------

/** The version of this interface, for example `"0.1.0"`. */
export declare function abiVersion(): string;

/**
 * CRC-32/JAMCRC, 0 to 4,294,967,295: the bitwise complement of the CRC-32 of
 * zip and PNG. Answers 0 for anything but a Buffer, and 0xFFFFFFFF for an
 * empty one.
 */
export declare function crc32(buffer: Buffer): number;

/**
 * Checks the schema of one block of 32 to 65,536 bytes. The record that may
 * follow the schema is not examined.
 *
 * Refusals: `INVALID_ARGUMENT`, `TRUNCATED`, `BLOCK_TOO_LARGE`,
 * `INVALID_MAGIC`, `CORRUPTED_META`.
 */
export declare function validateBlock(block: Uint8Array): Result<BlockInfo>;

/**
 * Reads one block of 32 to 65,536 bytes. A record that cannot be read leaves
 * `values` empty and is no error.
 *
 * Refusals: `INVALID_ARGUMENT`, `TRUNCATED`, `BLOCK_TOO_LARGE`,
 * `CORRUPTED_META`.
 */
export declare function parseMetaBlock(block: Uint8Array): Result<MetaBlockDTO>;

/**
 * Reads a blob: blocks of 32 to 65,535 bytes, each after its length in 16 bits,
 * little-endian; at most 1,048,576 bytes in all. Answers the blocks in blob
 * order, or the first fault with its `blockIndex` and `offset`.
 *
 * Refusals: `INVALID_ARGUMENT`, `SIZE_LIMIT_EXCEEDED`, `TRUNCATED`,
 * `CORRUPTED_META`.
 */
export declare function parseConfigBlob(blob: Uint8Array): Result<MetaBlockDTO[]>;

/**
 * Packs a parsed block again, with the values in `values` in place of the
 * stored ones; without `values` it answers a copy of `rawBytes`, unchecked.
 * Constants, unknown names, `null` and `undefined` change nothing. Not for
 * blocks built with `hasCrc`: the trailer is not written anew and the result
 * cannot be parsed.
 *
 * Refusals: `INVALID_ARGUMENT`, `NOT_IMPLEMENTED` (no `rawBytes`), `TRUNCATED`,
 * `BLOCK_TOO_LARGE`, `CORRUPTED_META`, `INTERNAL`.
 */
export declare function packMetaBlock(dto: PackInput): Result<Buffer>;

/**
 * Builds a block of at most 65,536 bytes.
 *
 * Refusals: `INVALID_ARGUMENT`, `UNKNOWN_FIELD_TYPE`, `BLOCK_TOO_LARGE`,
 * `INTERNAL` (for example one name with two types).
 *
 * @example
 * const result = buildBlock({
 *   metaName: 'thermostat',
 *   fields: [{ name: 'target', type: 'float', value: 21.5 }],
 * });
 */
export declare function buildBlock(spec: BlockSpec): Result<Buffer>;

/**
 * The SHA-256 of a blob's blocks, 32 bytes. It does not depend on the order of
 * blocks with different identifiers and changes with any byte of any block.
 * Every block needs the constants `__uuid` and `__instance`.
 *
 * Refusals: `INVALID_ARGUMENT`, `SIZE_LIMIT_EXCEEDED`, `CORRUPTED_META`.
 */
export declare function calcNgConfigHash(blob: Uint8Array): Result<Buffer>;
