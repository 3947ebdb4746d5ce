'use strict';

// Reads blocks element by element, with the checks of the native reader except
// for checksums. It knows what parsing does not answer: where each element
// stands, the order of enum entries and of the record's values, which objects
// lose for names like '10', flags, the constants of nested schemas, and strings
// that are not text.

const { readRecord, readValue } = require('./record_reader.cjs');
const fieldTypes = require('./field_types.cjs');
const { DEEPEST } = require('./limits.cjs');

const MAGIC = 0x5343484d;
const VERSION = 10;
const HEADER_SIZE = 17;
const MOST_FIELDS = 100;
const LONGEST_NAME = 254;
const HAS_CRC = 1;
const META = 1;
const REPEATED = 2;

// A whole block: its schema and the entries of its record, if there is one.
function readBlock(cursor) {
  const schema = cursor.group('schema', () => readSchema(cursor));
  if (cursor.offset === cursor.end) return { schema, record: [] };
  return { schema, record: cursor.group('record', () => readRecord(cursor, schema)) };
}

// Its name and flags, and its fields in order with the values of constants.
function readSchema(cursor, level = 1) {
  const start = cursor.offset;
  if (level > DEEPEST) cursor.fail(start, `schemas nest at most ${DEEPEST} levels deep`);
  const header = cursor.group('header', () => readHeader(cursor));
  const metaName = cursor.element('name', () => readName(cursor, header.nameLength));
  const fields = new Map();
  for (let i = 0; i < header.count; i++) {
    cursor.group('field', () => readField(cursor, fields, level));
  }
  cursor.endOfSchema(start);
  const end = start + HEADER_SIZE + header.bodySize;
  if (cursor.offset < end) cursor.element('unused', () => cursor.take(end - cursor.offset));
  cursor.offset = end;  // also when fields have gone beyond
  if ((header.flags & HAS_CRC) !== 0) cursor.trailer(start);
  return { metaName, flags: header.flags, fields: [...fields.values()] };
}

function readHeader(cursor) {
  const start = cursor.offset;
  const magic = cursor.element('magic', () => cursor.uint32(), hex32);
  const version = cursor.element('version', () => cursor.uint8());
  const flags = cursor.element('flags', () => cursor.uint8());
  const bodySize = cursor.element('bodySize', () => cursor.uint16());
  cursor.element('checksum', () => cursor.uint32(), hex32);
  const count = cursor.element('fieldsCount', () => cursor.uint32());
  const nameLength = cursor.element('nameLength', () => cursor.uint8());
  if (magic !== MAGIC) cursor.fail(start, 'no block begins here: the magic is not MHCS');
  if (version !== VERSION) cursor.fail(start + 4, `version ${version} instead of ${VERSION}`);
  if (bodySize > cursor.end - cursor.offset) {
    cursor.fail(start + 6, `a body of ${bodySize} bytes, of which ${cursor.end - cursor.offset} are there`);
  }
  if (count > MOST_FIELDS) cursor.fail(start + 12, `${count} fields, more than ${MOST_FIELDS}`);
  return { flags, bodySize, count, nameLength };
}

const hex32 = (value) => `0x${value.toString(16).padStart(8, '0')}`;

// Adds one field. A second one of its name only brings enum entries, and its
// constant is the first one's.
function readField(cursor, fields, level) {
  const start = cursor.offset;
  const described = readDescriptor(cursor, level);
  const field = fields.get(described.name) ?? described;
  if (field.type !== described.type) {
    cursor.fail(start, `a second field '${field.name}', of another type`);
  }
  fields.set(field.name, field);
  if (field !== described) addMissing(field.enumOptions, described.enumOptions);
  if (field.isMeta) {
    field.value = cursor.group('constant', () => readValue(cursor, field));
  }
}

function readDescriptor(cursor, level) {
  const name = readSizedName(cursor, 'name');
  const code = cursor.element('type', () => cursor.uint8(), (code) => typeName(code));
  const flags = cursor.element('flags', () => cursor.uint8(), showFlags);
  const type = fieldTypes[code];
  return {
    name,
    type,
    code,
    flags,
    repeated: (flags & REPEATED) !== 0,
    isMeta: (flags & META) !== 0,
    enumOptions: type === 'enum' ? readEnumOptions(cursor) : [],
    nested: type === 'datamap' ? readNested(cursor, level) : undefined,
  };
}

const typeName = (code) => fieldTypes[code] ?? `unknown type ${code}`;
const showFlags = (flags) => `${flags}` + (flags & META ? ', constant' : '') +
  (flags & REPEATED ? ', repeated' : '');

function readSizedName(cursor, what) {
  const length = cursor.element(`${what} length`, () => cursor.uint32());
  return cursor.element(what, () => readName(cursor, length));
}

function readName(cursor, length) {
  if (length > LONGEST_NAME) {
    cursor.fail(cursor.offset, `a name of ${length} bytes, more than ${LONGEST_NAME}`);
  }
  return cursor.text(length);
}

function readEnumOptions(cursor) {
  const start = cursor.offset;
  const count = cursor.element('entries', () => cursor.uint32());
  if (count === 0) cursor.fail(start, 'an enum without entries');
  const options = [];
  while (options.length < count) {
    const key = readSizedName(cursor, 'entry');
    options.push({ key, code: cursor.element('code', () => cursor.uint8()) });
  }
  return options;
}

function addMissing(options, more) {
  for (const option of more) {
    if (!options.some(({ key }) => key === option.key)) options.push(option);
  }
}

function readNested(cursor, level) {
  const start = cursor.offset;
  const size = cursor.element('schema size', () => cursor.uint32());
  if (size === 0) cursor.fail(start, 'a nested schema of no bytes');
  const part = cursor.part(size);
  return part.group('nested schema', () => {
    const schema = readSchema(part, level + 1);
    if (part.offset < part.end) part.element('unused', () => part.take(part.end - part.offset));
    return schema;
  });
}

module.exports = { HAS_CRC, KNOWN_FLAGS: META | REPEATED, readBlock, readSchema };
