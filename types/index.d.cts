/// <reference types="node" />

import type {
  BlockInfo, MetaBlockDTO, MetaBlockJSON, PackInput, SpecInput,
} from './blocks.cjs';
import type { Result } from './results.cjs';
import type { BlockSpec } from './spec.cjs';
import type { CheckedSpec } from './typed_spec.cjs';
import type { BlockValues, Bytes, ValuesLike } from './values.cjs';

export { BrindleError, unwrap } from './results.cjs';
export type { Err, ErrorCode, ErrorInfo, Ok, Result } from './results.cjs';
export type {
  BlockValues, Bytes, FieldTypeName, FieldValue, Integer, IntegerTypeName,
  ValueInput, ValuesInput,
} from './values.cjs';
export type {
  BlockSpec, EnumOption, FieldDeclaration, FieldSpec, MetaFieldSpec, NestedSpec,
} from './spec.cjs';
export type { MetaValuesOf, ValuesInputOf, ValuesOf } from './typed_spec.cjs';
export type {
  BlockInfo, FieldDTO, JSONValue, JSONValues, MetaBlockDTO, MetaBlockJSON, MetaDTO,
  PackInput, SpecInput,
} from './blocks.cjs';

// ---- Functions of the native module ----------------------------------------

/**
 * The version of this interface.
 *
 * @example
 * abiVersion(); // '0.1.0'
 */
export declare function abiVersion(): string;

/**
 * CRC-32/JAMCRC, 0 to 4,294,967,295: the bitwise complement of the CRC-32 of
 * zip and PNG. Answers 0 for anything but a Buffer, and 0xFFFFFFFF for an
 * empty one.
 *
 * @example
 * crc32(Buffer.from('123456789')); // 0x340bc6d9
 */
export declare function crc32(buffer: Buffer): number;

/**
 * Checks the schema of one block of 32 to 65,536 bytes. The record that may
 * follow the schema is not examined.
 *
 * Refusals: `INVALID_ARGUMENT`, `TRUNCATED`, `BLOCK_TOO_LARGE`,
 * `INVALID_MAGIC`, `CORRUPTED_META`.
 *
 * @example
 * const isBlock = validateBlock(bytes).ok;
 */
export declare function validateBlock(block: Bytes): Result<BlockInfo>;

/**
 * Reads one block of 32 to 65,536 bytes. A record that cannot be read leaves
 * `values` empty and is no error.
 *
 * Refusals: `INVALID_ARGUMENT`, `TRUNCATED`, `BLOCK_TOO_LARGE`,
 * `CORRUPTED_META`.
 *
 * @typeParam Values - what the caller expects in `values`; nothing checks it.
 *
 * @example
 * const result = parseMetaBlock<ValuesOf<typeof thermostat>>(bytes);
 * if (result.ok) console.log(result.value.values.target.toFixed(1));
 */
export declare function parseMetaBlock<
  Values extends object = BlockValues,
  MetaValues extends object = BlockValues,
>(block: Bytes): Result<MetaBlockDTO<Values, MetaValues>>;

/**
 * Reads a blob: blocks of 32 to 65,535 bytes, each after its length in 16 bits,
 * little-endian; at most 1,048,576 bytes in all. Answers the blocks in blob
 * order, or the first fault with its `blockIndex` and `offset`.
 *
 * Refusals: `INVALID_ARGUMENT`, `SIZE_LIMIT_EXCEEDED`, `TRUNCATED`,
 * `CORRUPTED_META`.
 *
 * @example
 * for (const { meta, values } of unwrap(parseConfigBlob(blob))) {
 *   console.log(meta.name, values);
 * }
 */
export declare function parseConfigBlob(blob: Bytes): Result<MetaBlockDTO[]>;

/**
 * Packs a parsed block again, with the values in `values` in place of the
 * stored ones; without `values` it answers a copy of `rawBytes`, unchecked.
 * Constants, unknown names, `null` and `undefined` change nothing. Not for
 * blocks built with `hasCrc`: the trailer is not written anew and the result
 * cannot be parsed; build these again from `specFromBlock`.
 *
 * Refusals: `INVALID_ARGUMENT`, `NOT_IMPLEMENTED` (no `rawBytes`), `TRUNCATED`,
 * `BLOCK_TOO_LARGE`, `CORRUPTED_META`, `INTERNAL`.
 *
 * @example
 * const edited = packMetaBlock({ ...block, values: { target: 19 } });
 */
export declare function packMetaBlock<Values extends ValuesLike<Values>>(
  dto: PackInput<Values>,
): Result<Buffer>;

/**
 * Builds a block of at most 65,536 bytes. What can be told from the type of the
 * BlockSpec is checked; a function that is generic in it passes it as a `BlockSpec`.
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
export declare function buildBlock<const Spec extends BlockSpec>(
  spec: Spec & (Spec extends CheckedSpec<Spec> ? unknown : CheckedSpec<Spec>),
): Result<Buffer>;

/**
 * The SHA-256 of a blob's blocks, 32 bytes. It does not depend on the order of
 * blocks with different identifiers and changes with any byte of any block.
 * Every block needs the constants `__uuid` and `__instance`.
 *
 * Refusals: `INVALID_ARGUMENT`, `SIZE_LIMIT_EXCEEDED`, `CORRUPTED_META`.
 *
 * @example
 * unwrap(calcNgConfigHash(blob)).toString('hex');
 */
export declare function calcNgConfigHash(blob: Bytes): Result<Buffer>;

// ---- Helpers; they throw BrindleError --------------------------------------

/**
 * The BlockSpec that builds a parsed block again, byte for byte, with whatever
 * has been edited in `values` and `metaValues`. The schema, its order and
 * `hasCrc` are those of `rawBytes`; `values` and `metaValues` are as stored if
 * they are left out. This is how a block with `hasCrc` is edited. Unlike the
 * edits of `packMetaBlock`, `values` is the whole record: a field that it lacks,
 * or that is null there, has no value any more.
 *
 * Bytes that mean nothing are not built again: constants come after the fields,
 * trailers of the data packet and of nested schemas and bytes after the packet
 * are left out, and a block without a data packet gets an empty one.
 *
 * @throws {BrindleError} of any code that `parseMetaBlock` answers;
 * `CORRUPTED_META` for a record that cannot be read, and so would be lost;
 * `INVALID_ARGUMENT` for a name in `values` or `metaValues` that the schema does
 * not have there; `NOT_IMPLEMENTED` for what no BlockSpec can describe: unknown
 * types and flags, constant records, strings that are not UTF-8 or hold a U+0000.
 *
 * @example
 * block.values.target = 19;
 * const edited = buildBlock(specFromBlock(block));
 */
export declare function specFromBlock<
  Values extends ValuesLike<Values>,
  MetaValues extends ValuesLike<MetaValues>,
>(dto: SpecInput<Values, MetaValues>): BlockSpec;

/**
 * A blob of blocks in the given order: what `parseConfigBlob` reads and
 * `calcNgConfigHash` takes. The blocks are copied; only their lengths are
 * looked at.
 *
 * @throws {BrindleError} `TRUNCATED` or `BLOCK_TOO_LARGE` for a block that has
 * not 32 to 65,535 bytes, `INVALID_ARGUMENT` for what is no Buffer, each with its
 * `blockIndex`; `SIZE_LIMIT_EXCEEDED` for more than 1,048,576 bytes in all.
 *
 * @example
 * const blob = joinBlocks([thermostat, network]);
 */
export declare function joinBlocks(blocks: Iterable<Bytes>): Buffer;

/**
 * A parsed block as an object for `JSON.stringify`; nothing is lost.
 *
 * @throws {BrindleError} `INVALID_ARGUMENT` with the path to a value that has
 * been edited and does not fit its field, such as `values.channels[2].gain`.
 *
 * @example
 * const text = JSON.stringify(toJSON(block), null, 2);
 */
export declare function toJSON<
  Values extends ValuesLike<Values>,
  MetaValues extends ValuesLike<MetaValues>,
>(dto: MetaBlockDTO<Values, MetaValues>): MetaBlockJSON;

/**
 * The parsed block that `toJSON` made an object of, for `packMetaBlock` or
 * `specFromBlock`. The values are checked against `meta`; that `meta` and the
 * rest belong to `rawBytes` is not.
 *
 * @throws {BrindleError} `INVALID_ARGUMENT` with the path to what does not fit.
 *
 * @example
 * const block = fromJSON(JSON.parse(text));
 */
export declare function fromJSON(json: unknown): MetaBlockDTO;
