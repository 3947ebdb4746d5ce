// ---- Parsed blocks ---------------------------------------------------------

import type { BlockValues, Bytes, FieldTypeName } from './values.cjs';

/** One field of a parsed schema. */
export interface FieldDTO {
  name: string;
  /** `unknown` for a type code that this version does not know. */
  type: FieldTypeName | 'unknown';
  repeated: boolean;
  /** A constant: its value is in `metaValues`, not in `values`. */
  isMeta: boolean;
  /**
   * Codes by entry name; enum fields only. As in any object, names that are
   * whole numbers come first; `specFromBlock` has the stored order.
   */
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

/**
 * A parsed block; edit `values` and hand it to `packMetaBlock` or
 * `specFromBlock`.
 *
 * @typeParam Values - for example `ValuesOf<typeof spec>`
 * @typeParam MetaValues - for example `MetaValuesOf<typeof spec>`
 *
 * @example
 * const describe = ({ uuid, instance, meta }: MetaBlockDTO) =>
 *   `${meta.name} ${instance} (${uuid})`;
 */
export interface MetaBlockDTO<
  Values extends object = BlockValues,
  MetaValues extends object = BlockValues,
> {
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
  values: Values;
  /** The constants. */
  metaValues: MetaValues;
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
export interface PackInput<Values = object> {
  readonly rawBytes: Bytes;
  /** Values to put in place of the stored ones; others stay as they are. */
  readonly values?: Values | undefined;
}

/** What `specFromBlock` reads of a `MetaBlockDTO`. */
export interface SpecInput<Values = object, MetaValues = object> extends PackInput<Values> {
  /** Values of all the constants; as stored if left out. */
  readonly metaValues?: MetaValues | undefined;
}

/** What `validateBlock` finds. */
export interface BlockInfo {
  /** Length of the given bytes. */
  size: number;
  /** Version of the block format. */
  version: number;
}

// ---- Parsed blocks as JSON -------------------------------------------------

/**
 * A value in JSON: as in `FieldValue`, but `int64` and `uint64` are decimal
 * strings, and of `float` what JSON has no number for is one of `'NaN'`,
 * `'Infinity'`, `'-Infinity'` and `'-0'`.
 */
export type JSONValue =
  number | string | boolean | null | JSONValues | JSONValue[];

/** The values of one record in JSON. */
export interface JSONValues {
  [name: string]: JSONValue;
}

/**
 * A `MetaBlockDTO` in JSON; bytes are strings of hex digits.
 *
 * @example
 * const text = JSON.stringify(toJSON(block) satisfies MetaBlockJSON);
 */
export interface MetaBlockJSON {
  uuid?: string;
  uuidRawBytes?: string;
  instance?: number;
  descriptorUuid?: string;
  meta: MetaDTO;
  values: JSONValues;
  metaValues: JSONValues;
  raw: { size: number; crc32: number };
  rawBytes: string;
}
