'use strict';

// Reads data packets and the values in them, element by element, with the
// checks of the native reader except for checksums.

const VERSION = 10;
const HAS_TRAILER = 1;
const SMALLEST = 3;

// The values of a packet, each with the name of its field, as stored.
function readRecord(cursor, schema) {
  const start = cursor.offset;
  const { size, hasTrailer } = readHeader(cursor);
  const values = [];
  while (cursor.offset < start + size) values.push(readEntry(cursor, schema));
  if (hasTrailer) {
    cursor.offset = start + size;  // also when the last value has gone beyond
    cursor.trailer(start);
  }
  if (cursor.offset < cursor.end) {
    cursor.element('unused', () => cursor.take(cursor.end - cursor.offset));
  }
  return values;
}

function readHeader(cursor) {
  const start = cursor.offset;
  if (cursor.end - start < SMALLEST) cursor.fail(start, 'too few bytes for a record');
  const version = cursor.element('version', () => cursor.uint8());
  if (version !== VERSION) cursor.fail(start, `a record of version ${version} instead of ${VERSION}`);
  const flags = cursor.element('flags', () => cursor.uint8());
  const hasTrailer = (flags & HAS_TRAILER) !== 0;
  const length = cursor.element('length', () => cursor.varint());
  // In 16 bits, whatever the length.
  const size = Number(length + BigInt(cursor.offset - start) & 0xffffn);
  if (size + (hasTrailer ? 2 : 0) > cursor.end - start) {
    cursor.fail(start + 2, `${length} bytes, of which ${cursor.end - cursor.offset} are there`);
  }
  return { size, hasTrailer };
}

function readEntry(cursor, { fields }) {
  const start = cursor.offset;
  return cursor.group('value', () => {
    const index = cursor.element('index', () => cursor.unsigned(16),
      (index) => fields[index]?.name ?? `${index}`);
    const field = fields[index] ?? cursor.fail(start, `no field has the index ${index}`);
    return [field.name, readValue(cursor, field)];
  });
}

function readValue(cursor, field) {
  const read = valueReaders[field.type] ??
    cursor.fail(cursor.offset, 'a value of an unknown type');
  if (!field.repeated) return read(cursor, field);
  const start = cursor.offset;
  const count = cursor.element('count', () => cursor.size());
  if (count === 0 && !mayBeEmpty.test(field.type)) {
    cursor.fail(start, `an empty array of ${field.type}`);
  }
  // An element takes a byte at least.
  if (count > cursor.end - cursor.offset) {
    cursor.fail(start, `${count} elements in ${cursor.end - cursor.offset} bytes`);
  }
  return Array.from({ length: count }, () => read(cursor, field));
}

const mayBeEmpty = /^u?int(16|32|64)$/;

const scalar = (read) => (cursor) => cursor.element('value', () => read(cursor));

const valueReaders = {
  int8: scalar((cursor) => cursor.int8()),
  int16: scalar((cursor) => cursor.zigzag(16)),
  int32: scalar((cursor) => cursor.zigzag(32)),
  int64: scalar((cursor) => cursor.zigzag(64)),
  uint8: scalar((cursor) => cursor.uint8()),
  uint16: scalar((cursor) => cursor.unsigned(16)),
  uint32: scalar((cursor) => cursor.unsigned(32)),
  uint64: scalar((cursor) => cursor.unsigned(64)),
  float: scalar((cursor) => cursor.float()),
  bool: scalar((cursor) => cursor.uint8() !== 0),
  string: readString,
  enum: readEnum,
  datamap: readNested,
};

function readString(cursor) {
  const length = cursor.element('length', () => cursor.size());
  return cursor.element('value', () => cursor.text(length));
}

function readEnum(cursor, { enumOptions }) {
  const nameOf = (code) => enumOptions.find((option) => option.code === code)?.key;
  const start = cursor.offset;
  const code = cursor.element('value', () => cursor.uint8(),
    (code) => `${code} (${nameOf(code) ?? 'no entry'})`);
  if (nameOf(code) === undefined) cursor.fail(start, `no entry of the enum has the code ${code}`);
  return code;
}

function readNested(cursor, { nested }) {
  const start = cursor.offset;
  const part = cursor.part(cursor.element('record size', () => cursor.size()));
  return part.group('record', () => {
    const values = readRecord(part, nested);
    if (values.length === 0) part.fail(start, 'a nested record without values');
    return Object.fromEntries(values);
  });
}

module.exports = { readRecord, readValue };
