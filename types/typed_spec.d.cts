// ---- What a BlockSpec says about values ------------------------------------
//
// Types that are computed from the literal type of a BlockSpec. For one that is
// not literal they are the general ones: BlockValues and ValuesInput.

import type { BlockSpec, FieldSpec, MetaFieldSpec, NestedSpec } from './spec.cjs';
import type { BlockValues, FieldValue, Integer, IntegerTypeName, ValuesInput } from './values.cjs';

/** Shown as one object in editors. */
type Flat<T> = { [Key in keyof T]: T[Key] } & {};

type Listed<List> = List extends readonly (infer Field)[] ? Field : never;
type FieldsOf<S> = S extends { readonly fields?: infer List } ? Listed<List> : never;
type ConstantsOf<S> = S extends { readonly metaFields?: infer List } ? Listed<List> : never;

type NameOf<Field> = Field extends { readonly name: infer Name extends string } ? Name : never;
type Named<Field, Name> = Extract<Field, { readonly name: Name }>;
type ValueIn<Field> = Field extends { readonly value: infer V } ? V : undefined;

/** Whether the names of the fields are known. */
type IsLiteral<Field> = string extends NameOf<Field> ? false : true;

/** The codes of an enum's entries, if they are known. */
type CodeOf<Options> = Options extends readonly { readonly code: infer Code extends number }[]
  ? `${Code}` extends `${bigint}` ? Code : number
  : number;

interface ParsedByType {
  int8: number;
  int16: number;
  int32: number;
  int64: bigint;
  uint8: number;
  uint16: number;
  uint32: number;
  uint64: bigint;
  float: number;
  string: string;
  bool: boolean;
}

type InputByType = {
  [Type in keyof ParsedByType]: Type extends IntegerTypeName ? Integer : ParsedByType[Type];
};

// ---- As parsed

type Parsed<Field, Given> = Repeat<Field, ParsedOne<Field, Given>, ParsedOne<Field, Listed<Given>>>;

type Repeat<Field, One, Item> = Field extends { readonly repeated: infer Repeated }
  ? boolean extends Repeated ? One | Item[] : Repeated extends true ? Item[] : One
  : One;

type ParsedOne<Field, Given> = Field extends { readonly type: 'enum'; readonly enumOptions: infer O }
  ? CodeOf<O>
  : Field extends { readonly type: 'datamap'; readonly nested: infer Nested }
    ? ParsedRecord<FieldsOf<Nested>, Given>
    : Field extends { readonly type: infer Type extends keyof ParsedByType }
      ? ParsedByType[Type]
      : FieldValue;

/** Whether an object certainly has a value under a name. */
type Gives<Given, Name extends PropertyKey> =
  [Given] extends [{ readonly [Key in Name]: {} }] ? true : false;

type ParsedRecord<Field, Given> = IsLiteral<Field> extends false
  ? BlockValues
  : Flat<
      {
        [Name in NameOf<Field> as Gives<Given, Name> extends true ? Name : never]:
          Parsed<Named<Field, Name>, ValueUnder<Given, Name>>;
      } & {
        [Name in NameOf<Field> as Gives<Given, Name> extends true ? never : Name]?:
          Parsed<Named<Field, Name>, ValueUnder<Given, Name>>;
      }
    >;

type ValueUnder<Given, Name extends PropertyKey> =
  Given extends { readonly [Key in Name]: infer V } ? V : undefined;

/** The values that a list of fields gives, as an object. */
type GivenBy<Field> = { [Name in NameOf<Field>]: ValueIn<Named<Field, Name>> };

/**
 * The exact type of `values` after parsing a block that was built from a BlockSpec:
 * fields with a value are there, those without are optional, as edits may have
 * added them. Needs one declared `as const satisfies BlockSpec`.
 *
 * | type | parsed |
 * |---|---|
 * | `int64`, `uint64` | `bigint` |
 * | `enum` | the codes of its entries, such as `0 \| 1` |
 * | `datamap` | an object with the fields of `nested` |
 * | others | `number`, `string`, `boolean` |
 * | repeated | an array of these |
 *
 * @example
 * type Values = ValuesOf<typeof thermostat>; // { target: number; mode: 0 | 1 }
 */
export type ValuesOf<S extends BlockSpec | NestedSpec> =
  ParsedRecord<FieldsOf<S>, GivenBy<FieldsOf<S>>>;

/**
 * The same for `metaValues`, the constants.
 *
 * @example
 * type Constants = MetaValuesOf<typeof thermostat>; // { __instance: number }
 */
export type MetaValuesOf<S extends BlockSpec | NestedSpec> =
  ParsedRecord<ConstantsOf<S>, GivenBy<ConstantsOf<S>>>;

// ---- As given

type Input<Field> = Repeat<Field, InputOne<Field>, InputOne<Field>> extends infer T
  ? T extends (infer Item)[] ? readonly Item[] : T
  : never;

type InputOne<Field> = Field extends { readonly type: 'enum'; readonly enumOptions: infer O }
  ? CodeOf<O> | bigint
  : Field extends { readonly type: 'datamap'; readonly nested: infer Nested }
    ? RecordInput<FieldsOf<Nested>>
    : Field extends { readonly type: infer Type extends keyof InputByType }
      ? InputByType[Type]
      : never;

type RecordInput<Field> = IsLiteral<Field> extends false
  ? ValuesInput
  : { readonly [Name in NameOf<Field>]?: Input<Named<Field, Name>> | null | undefined };

/**
 * The values that may be given for the fields of a BlockSpec, all of them optional:
 * for edits by `packMetaBlock`, and for records.
 *
 * @example
 * const edits: ValuesInputOf<typeof thermostat> = { target: 19 };
 */
export type ValuesInputOf<S extends BlockSpec | NestedSpec> = RecordInput<FieldsOf<S>>;

// ---- Checks that BlockSpec itself cannot make

type KeyOf<Union> = Union extends unknown ? keyof Union : never;

/** The keys of fields that only those of one type have. */
interface KeyByType {
  enum: 'enumOptions';
  datamap: 'nested';
}
type KeyOfType<Field> =
  Field extends { readonly type: infer Type extends keyof KeyByType } ? KeyByType[Type] : never;

/**
 * A BlockSpec as it should be, for the parameter of `buildBlock`: with values of
 * records that fit their `nested` schema and codes that its enums have, as far
 * as the values are literals, and without keys that nothing reads.
 */
export type CheckedSpec<S> = {
  readonly [Key in keyof S]: Key extends 'fields'
    ? CheckedFields<S[Key], KeyOf<FieldSpec>>
    : Key extends 'metaFields'
      ? CheckedFields<S[Key], KeyOf<MetaFieldSpec>>
      : Key extends keyof BlockSpec ? S[Key] : never;
};

type CheckedFields<List, Known> = {
  readonly [Index in keyof List]: CheckedField<List[Index], Known>;
};

type Fitting<V, Expected> = V extends Expected ? V : MustBe<Expected>;

/** For the compiler's message: what `V & Expected` comes to is often never. */
interface MustBe<Expected> {
  readonly mustBe: Expected;
}

type CheckedField<Field, Known> = {
  readonly [Key in keyof Field]: Key extends 'value'
    ? CheckedValue<Field, Field[Key]>
    : Key extends KeyByType[keyof KeyByType]
      ? Key extends KeyOfType<Field>
        ? CheckedDetail<Key, Field[Key]>
        : Fitting<Field[Key], undefined>
      : Key extends Known ? Field[Key] : never;
};

type CheckedDetail<Key, V> = Key extends 'nested' ? CheckedSpec<V> : V;

type CheckedValue<Field, V> = Field extends { readonly type: 'datamap'; readonly nested: infer Nested }
  ? V extends readonly unknown[]
    ? { readonly [Index in keyof V]: CheckedRecord<FieldsOf<Nested>, V[Index]> }
    : CheckedRecord<FieldsOf<Nested>, V>
  : number extends V | Listed<V> ? V : Fitting<V, Input<Field> | null | undefined>;

type CheckedRecord<Field, V> = IsLiteral<Field> extends false
  ? V
  : {
      readonly [Name in keyof V]: Name extends NameOf<Field>
        ? CheckedValue<Named<Field, Name>, V[Name]>
        : never;
    };
