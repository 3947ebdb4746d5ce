// ---- What every function answers -------------------------------------------

/**
 * Why a call was refused.
 *
 * - `INVALID_ARGUMENT`: wrong kind of argument, or a value that does not fit
 *   its field.
 * - `SIZE_LIMIT_EXCEEDED`: a blob of more than 1,048,576 bytes.
 * - `BLOCK_TOO_LARGE`: a block of more than 65,536 bytes, given or produced;
 *   in a blob, of more than 65,535.
 * - `TRUNCATED`: fewer bytes than a block needs; the least is 32.
 * - `INVALID_MAGIC`: the bytes do not begin with a block header.
 * - `CORRUPTED_META`: a schema that cannot be read, or a blob that cannot be
 *   hashed.
 * - `UNKNOWN_FIELD_TYPE`: a type name other than the thirteen.
 * - `NOT_IMPLEMENTED`: repacking without `rawBytes`, or a block that no
 *   BlockSpec can describe.
 * - `INTERNAL`: a step failed that should not; a field that the schema refuses
 *   ends here too.
 *
 * @example
 * const isOurFault = (code: ErrorCode) => code === 'INVALID_ARGUMENT';
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

/**
 * A refusal: what went wrong and, inside a blob, where.
 *
 * @example
 * // { code: 'CORRUPTED_META', message: 'Meta::unpack failed', blockIndex: 1, offset: 549 }
 */
export interface ErrorInfo {
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
  error: ErrorInfo;
}

/**
 * What the six functions that handle data answer; bad data throws nothing.
 * Besides the refusals named with each function, any may answer `INTERNAL`, as
 * when memory runs out. Look at `ok` first, or use `unwrap`.
 *
 * @example
 * const result = parseMetaBlock(block);
 * if (result.ok) console.log(result.value.meta.name);
 * else console.error(`${result.error.code}: ${result.error.message}`);
 */
export type Result<T> = Ok<T> | Err;

/**
 * A refusal as an exception: what `unwrap` throws, and the other helpers when
 * they cannot do what they are asked for.
 *
 * @example
 * try {
 *   unwrap(parseConfigBlob(blob));
 * } catch (error) {
 *   if (!(error instanceof BrindleError)) throw error;
 *   console.error(`block ${error.blockIndex}: ${error.message}`);
 * }
 */
export declare class BrindleError extends Error implements ErrorInfo {
  constructor(info: ErrorInfo);
  /** Always `'BrindleError'`. */
  name: string;
  code: ErrorCode;
  /** As in `ErrorInfo`; `joinBlocks` sets it too. */
  blockIndex?: number;
  /** As in `ErrorInfo`. */
  offset?: number;
}

/**
 * The value of a successful result.
 *
 * @throws {BrindleError} with the refusal's code, message and place.
 *
 * @example
 * const { values } = unwrap(parseMetaBlock(block));
 */
export declare function unwrap<T>(result: Result<T>): T;
