// The message carries its Avro schema, from which the reader makes the type.
import avsc from 'avsc';
import { open, seal } from './envelope.mjs';

const TYPES = {
  int8: 'int', int16: 'int', int32: 'int', uint8: 'int', uint16: 'int',
  uint32: 'long', enum: 'int', float: 'float', bool: 'boolean', string: 'string',
};

// Avro's long, as a BigInt.
const bigintType = (wrap) => avsc.types.LongType.__with({
  fromBuffer: (buffer) => wrap(64, buffer.readBigInt64LE()),
  toBuffer: (value) => {
    const buffer = Buffer.alloc(8);
    buffer.writeBigInt64LE(BigInt.asIntN(64, value));
    return buffer;
  },
  fromJSON: BigInt,
  toJSON: String,
  isValid: (value) => typeof value === 'bigint',
  compare: (a, b) => Number(a > b) - Number(a < b),
});
const BIGINTS = {
  int64: bigintType(BigInt.asIntN), uint64: bigintType(BigInt.asUintN),
};

const record = (name, fields) => ({ type: 'record', name, fields });

function fieldSchema({ name, type, repeated, nested }) {
  const items = nested === undefined
    ? TYPES[type] ?? type
    : record(`${name}Record`, nested.fields.map(fieldSchema));
  return { name, type: repeated ? { type: 'array', items } : items };
}

function schemaOf({ uuid, uuidRawBytes, instance, meta }) {
  const fieldsWhere = (isMeta) =>
    meta.fields.filter((field) => field.isMeta === isMeta).map(fieldSchema);
  return record('Block', [
    ...uuid === undefined ? [] : [{ name: 'uuid', type: 'string' }],
    ...uuidRawBytes === undefined
      ? [] : [{ name: 'uuidRawBytes', type: 'bytes' }],
    ...instance === undefined ? [] : [{ name: 'instance', type: 'long' }],
    { name: 'values', type: record('Values', fieldsWhere(false)) },
    { name: 'metaValues', type: record('MetaValues', fieldsWhere(true)) },
  ]);
}

const typeOf = (schema) => avsc.Type.forSchema(schema,
  { registry: { ...BIGINTS }, omitRecordMethods: true });

function encode(information) {
  const schema = schemaOf(information);
  return seal({ schema, meta: information.meta },
    typeOf(schema).toBuffer(information));
}

function decode(message) {
  const { description, values } = open(message);
  const block = typeOf(description.schema).fromBuffer(values);
  return { ...block, meta: description.meta };
}

export const avro = { name: 'avsc', plain: false, encode, decode };
