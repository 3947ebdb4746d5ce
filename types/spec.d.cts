// ---- Describing a block ----------------------------------------------------

import type { FieldTypeName, Integer, IntegerTypeName, ValuesInput } from './values.cjs';

/**
 * One entry of an enum's mapping.
 *
 * @example
 * const off: EnumOption = { key: 'off', code: 0 };
 */
export interface EnumOption {
  /** The entry's name, at most 254 bytes of UTF-8. */
  readonly key: string;
  /** 0 to 255; a fraction is cut off. */
  readonly code: number;
}

/** Any type that needs no further description. */
interface PlainType<Name extends FieldTypeName> {
  readonly type: Name;
}

interface EnumType {
  readonly type: 'enum';
  /** At least one entry. */
  readonly enumOptions: readonly EnumOption[];
}

interface RecordType {
  readonly type: 'datamap';
  readonly nested: NestedSpec;
}

/**
 * One value, or an array of them. An empty array survives only for the 16-, 32-
 * and 64-bit integers; of any other type it makes the stored record unreadable.
 */
type MaybeValue<T> =
  | { readonly repeated?: false | undefined; readonly value?: T | null | undefined }
  | { readonly repeated: true; readonly value?: readonly T[] | null | undefined };

/** As `MaybeValue`, but there must be one. */
type Constant<T> =
  | { readonly repeated?: false | undefined; readonly value: T }
  | { readonly repeated: true; readonly value: readonly T[] };

interface Named {
  /** At most 254 bytes of UTF-8; cut at a U+0000. */
  readonly name: string;
}

/**
 * A field without a value, as the schema of a nested record lists it: the
 * values stand in the record.
 */
export type FieldDeclaration = Named & {
  readonly repeated?: boolean | undefined;
  readonly value?: undefined;
} & (PlainType<Exclude<FieldTypeName, 'enum' | 'datamap'>> | EnumType | RecordType);

/**
 * A field of a block and, if it has one, its value. `float` is rounded to 32
 * bits, so a number beyond that range becomes infinite; `enum` takes the code,
 * never the name; `string` is cut at a U+0000.
 *
 * A field may be listed twice, with and without a value: the schema has it
 * where it stands first, and the record where its value stands.
 *
 * @example
 * const field: FieldSpec = { name: 'target', type: 'float', value: 21.5 };
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
 *
 * @example
 * const instance: MetaFieldSpec = { name: '__instance', type: 'uint16', value: 1 };
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
 *
 * @example
 * const slot: NestedSpec = {
 *   metaName: 'slot',
 *   fields: [{ name: 'hour', type: 'uint8' }, { name: 'celsius', type: 'float' }],
 * };
 */
export interface NestedSpec {
  /** The schema's name, at most 254 bytes of UTF-8; may be empty. */
  readonly metaName: string;
  /** Only a whole block has a trailer; with the flag set it could not be read. */
  readonly hasCrc?: false | undefined;
  readonly fields?: readonly FieldDeclaration[] | undefined;
  readonly metaFields?: readonly MetaFieldSpec[] | undefined;
}

/**
 * Everything `buildBlock` needs: the schema and the values. A block with more
 * than 100 fields and constants together cannot be read back.
 *
 * Declared `as const satisfies BlockSpec`, a BlockSpec also types what is parsed:
 * see `ValuesOf`.
 *
 * @example
 * const thermostat = {
 *   metaName: 'thermostat',
 *   fields: [
 *     { name: 'target', type: 'float', value: 21.5 },
 *     { name: 'mode', type: 'enum', value: 1,
 *       enumOptions: [{ key: 'off', code: 0 }, { key: 'heat', code: 1 }] },
 *   ],
 * } as const satisfies BlockSpec;
 */
export interface BlockSpec {
  /** The schema's name, at most 254 bytes of UTF-8; may be empty. */
  readonly metaName: string;
  /**
   * Ends the packed schema with a CRC-16. To edit such a block, build it anew
   * from `specFromBlock`; `packMetaBlock` makes it unreadable.
   */
  readonly hasCrc?: boolean | undefined;
  /** In the order in which they are stored. */
  readonly fields?: readonly FieldSpec[] | undefined;
  /** Stored after all `fields`. */
  readonly metaFields?: readonly MetaFieldSpec[] | undefined;
}
