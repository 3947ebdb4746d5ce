// ---- Types of fields, and their values in JavaScript -----------------------

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

/** A whole number as it may be given, for every integer type and for enums. */
export type Integer = number | bigint;

/**
 * Bytes as the functions take them. Other views are refused by the types, as
 * their bytes, not their elements, would be read.
 */
export type Bytes = Uint8Array | Uint8ClampedArray;

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

/**
 * The values of one record by field name; a field that it lacks is absent.
 *
 * @example
 * const { target } = values; // FieldValue | undefined
 */
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
 *
 * @example
 * const values: ValuesInput = { target: 19, uptime: 5n, slots: [{ hour: 7 }] };
 */
export interface ValuesInput {
  readonly [name: string]: ValueInput | null | undefined;
}

/**
 * Accepts every type of object whose properties are values, interfaces too,
 * which have no index signature. For `values: V`.
 */
export type ValuesLike<V> = { readonly [Name in keyof V]: ValueLike<V[Name]> };

type ValueLike<T> = T extends Integer | string | boolean | null | undefined
  ? T
  : T extends readonly (infer Item)[]
    ? readonly ValueLike<Item>[]
    : T extends symbol | ((...args: never) => unknown)
      ? never
      : ValuesLike<T>;
