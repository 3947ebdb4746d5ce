'use strict';

// Reads from a block what parsing does not answer: the order of enum entries
// and of the record's values, which objects lose for names like '10', flags,
// the constants of nested schemas, and strings that are not text. Only for
// blocks that parseMetaBlock has accepted.

const Cursor = require('./cursor.cjs');
const { refuse } = require('./errors.cjs');
const fieldTypes = require('./field_types.cjs');

const HEADER_SIZE = 17;
const HAS_CRC = 1;
const META = 1;
const REPEATED = 2;

// The schema at the start of a block: its name and flag, its fields in order
// with the values of constants, and how many bytes it takes.
function readSchema(bytes) {
  const cursor = new Cursor(bytes);
  cursor.take(5);  // magic, version
  const flags = cursor.uint8();
  if ((flags & ~HAS_CRC) !== 0) refuse('NOT_IMPLEMENTED', 'a schema has flags that no BlockSpec can set');
  const hasCrc = flags !== 0;
  const size = HEADER_SIZE + cursor.uint16() + (hasCrc ? 2 : 0);
  cursor.take(4);  // checksum
  const count = cursor.uint32();
  const metaName = cursor.text(cursor.uint8());
  const fields = new Map();
  for (let i = 0; i < count; i++) readField(cursor, fields);
  return { metaName, hasCrc, fields: [...fields.values()], size };
}

// Adds one field. A second one of its name only brings enum entries.
function readField(cursor, fields) {
  const described = readDescriptor(cursor);
  const field = fields.get(described.name) ?? described;
  fields.set(field.name, field);
  if (field !== described) addMissing(field.enumOptions, described.enumOptions);
  if (field.isMeta) field.value = readValue(cursor, field);
}

function readDescriptor(cursor) {
  const name = cursor.text(cursor.uint32());
  const type = fieldTypes[cursor.uint8()];
  const flags = cursor.uint8();
  const isUnknown = type === undefined || (flags & ~(META | REPEATED)) !== 0;
  if (isUnknown || (type === 'datamap' && (flags & META) !== 0)) {
    refuse('NOT_IMPLEMENTED', `field '${name}' is of a kind that no BlockSpec can describe`);
  }
  return {
    name,
    type,
    repeated: (flags & REPEATED) !== 0,
    isMeta: (flags & META) !== 0,
    enumOptions: type === 'enum' ? readEnumOptions(cursor) : [],
    nested: type === 'datamap' ? readSchema(cursor.take(cursor.uint32())) : undefined,
  };
}

function readEnumOptions(cursor) {
  return Array.from({ length: cursor.uint32() }, () => {
    const key = cursor.text(cursor.uint32());
    return { key, code: cursor.uint8() };
  });
}

function addMissing(options, more) {
  for (const option of more) {
    if (!options.some(({ key }) => key === option.key)) options.push(option);
  }
}

// The values of a data packet, each with the name of its field, as stored.
function readRecord(packet, { fields }) {
  const cursor = new Cursor(packet);
  cursor.take(2);  // version, flags
  const end = (cursor.unsigned(16) + cursor.offset) & 0xffff;
  const values = [];
  while (cursor.offset < end) {
    const field = fields[cursor.unsigned(16)];
    values.push([field.name, readValue(cursor, field)]);
  }
  return values;
}

function readValue(cursor, field) {
  const read = valueReaders[field.type];
  if (!field.repeated) return read(cursor, field);
  return Array.from({ length: cursor.size() }, () => read(cursor, field));
}

const valueReaders = {
  int8: (cursor) => cursor.int8(),
  int16: (cursor) => cursor.zigzag(16),
  int32: (cursor) => cursor.zigzag(32),
  int64: (cursor) => cursor.zigzag(64),
  uint8: (cursor) => cursor.uint8(),
  uint16: (cursor) => cursor.unsigned(16),
  uint32: (cursor) => cursor.unsigned(32),
  uint64: (cursor) => cursor.unsigned(64),
  float: (cursor) => cursor.float(),
  string: (cursor) => cursor.text(cursor.size()),
  enum: (cursor) => cursor.uint8(),
  bool: (cursor) => cursor.uint8() !== 0,
  datamap: (cursor, { nested }) =>
    Object.fromEntries(readRecord(cursor.take(cursor.size()), nested)),
};

module.exports = { readRecord, readSchema };
