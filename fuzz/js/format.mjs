// The block format for every type, apart from the library: what the bytes of a
// block are, and which blocks cannot be read back. See docs/format.md.
//
// A schema here is { name, hasCrc, fields }, a field { name, type, repeated,
// isMeta, options, nested, constant }, and a record a Map from names to values
// as parsing answers them, with Maps for nested records.
import { bytes, crc, jamcrc, le } from '../../tests/js/encode.mjs';

const typeCodes = ['int8', 'int16', 'int32', 'int64', 'uint8', 'uint16', 'uint32', 'uint64',
  'float', 'string', 'enum', 'bool', 'datamap'];

const withTrailer = (data) => bytes(data, le(crc(data, 0xffff, 0xa001), 2));

function varint(value) {
  const groups = [];
  for (let rest = BigInt(value); groups.length === 0 || rest > 0n; rest >>= 7n) {
    groups.push(Number(rest & 127n) | (rest > 127n ? 128 : 0));
  }
  return bytes(groups);
}
const zigzag = (value) => BigInt(value) < 0n ? -2n * BigInt(value) - 1n : 2n * BigInt(value);
const counted = (part) => bytes(varint(part.length), part);

function float32(value) {
  const buffer = Buffer.alloc(4);
  buffer.writeFloatLE(value);
  return buffer;
}

function wide(value, width) {
  const buffer = Buffer.alloc(8);
  buffer.writeBigUInt64LE(BigInt.asUintN(64, BigInt(value)));
  return buffer.subarray(0, width);
}
const widthOf = (type) => Number(type.replace(/\D+/, '')) / 8;

function packOne(field, value) {
  switch (field.type) {
    case 'float': return float32(value);
    case 'string': return counted(bytes(value));
    case 'datamap': return counted(packetBytes(field.nested, value));
    case 'int8': case 'uint8': case 'bool': case 'enum': return bytes(Number(value) & 255);
    default: return varint(field.type.startsWith('int') ? zigzag(value) : value);
  }
}
const packValue = (field, value) => !field.repeated ? packOne(field, value) :
  bytes(varint(value.length), ...value.map((item) => packOne(field, item)));

export function packetBytes(schema, record, trailer = false) {
  const body = bytes(...[...record].flatMap(([name, value]) => {
    const index = schema.fields.findIndex((field) => field.name === name);
    return [varint(index), packValue(schema.fields[index], value)];
  }));
  const packet = bytes(10, trailer ? 1 : 0, counted(body));
  return trailer ? withTrailer(packet) : packet;
}

// The bytes of a constant that its checksum covers.
function plainOne({ type, nested }, value) {
  switch (type) {
    case 'datamap': return bytes(...[...value].flatMap(([name, item]) =>
      [name, le(valueCrc(fieldNamed(nested, name), item), 4)]));
    case 'float': return float32(value);
    case 'string': return bytes(value);
    case 'bool': case 'enum': return bytes(Number(value));
    default: return wide(value, widthOf(type));
  }
}
const fieldNamed = ({ fields }, wanted) => fields.find(({ name }) => name === wanted);
// An array of records counts with the checksum of each.
const plainItem = (field, item) => field.type === 'datamap' ?
  le(jamcrc(plainOne(field, item)), 4) : plainOne(field, item);
const valueCrc = (field, value) => jamcrc(field.repeated ?
  bytes(...value.map((item) => plainItem(field, item))) : plainOne(field, value));

const flagsOf = ({ isMeta, repeated }) => (isMeta ? 1 : 0) + (repeated ? 2 : 0);
const schemaCrc = (schema) => jamcrc(bytes(schema.name, schema.hasCrc ? 1 : 0,
  ...schema.fields.flatMap((field) => [field.name, typeCodes.indexOf(field.type), flagsOf(field),
    ...(field.type === 'enum' ? field.options.flat() : []),
    field.nested ? le(schemaCrc(field.nested), 4) : '',
    field.isMeta ? le(valueCrc(field, field.constant), 4) : ''])));

const sized = (part) => bytes(le(bytes(part).length, 4), part);
const packedOptions = (options) =>
  bytes(le(options.length, 4), ...options.flatMap(([key, code]) => [sized(key), code]));
const descriptor = (field) => bytes(
  sized(field.name), typeCodes.indexOf(field.type), flagsOf(field),
  field.type === 'enum' ? packedOptions(field.options) : '',
  field.nested ? sized(schemaBytes(field.nested)) : '',
  field.isMeta ? packValue(field, field.constant) : '');

// With HAS_CRC the trailer follows, unless it is to be left out.
export function schemaBytes(schema, trailer = schema.hasCrc) {
  const name = bytes(schema.name).subarray(0, 254);
  const body = bytes(name, ...schema.fields.map(descriptor));
  const block = bytes('MHCS', 10, schema.hasCrc ? 1 : 0, le(body.length, 2),
    le(schemaCrc(schema), 4), le(schema.fields.length, 4), name.length, body);
  return trailer ? withTrailer(block) : block;
}

const emptyArrays = new Set(['int16', 'int32', 'int64', 'uint16', 'uint32', 'uint64']);

function isReadableValue(field, value) {
  if (field.repeated && value.length === 0) return emptyArrays.has(field.type);
  return [value].flat().every((item) => {
    if (field.type === 'enum') return field.options.some(([, code]) => code === item);
    return field.type !== 'datamap' || item.size !== 0 && isReadableRecord(field.nested, item);
  });
}

export const isReadableRecord = (schema, record) => [...record].every(([name, value]) =>
  isReadableValue(fieldNamed(schema, name), value));

const isShort = (name) => Buffer.byteLength(name) <= 254;
export const isReadableSchema = ({ name, fields }) => isShort(name) && fields.length <= 100 &&
  fields.every((field) => isShort(field.name) &&
    (field.type !== 'enum' || field.options.every(([key]) => isShort(key))) &&
    (!field.nested || isReadableSchema(field.nested)) &&
    (!field.isMeta || isReadableValue(field, field.constant)));
