'use strict';

const { bytesAt, objectAt } = require('./arguments.cjs');
const { HAS_CRC, KNOWN_FLAGS, readSchema } = require('./block_reader.cjs');
const { Cursor } = require('./cursor.cjs');
const { refuse, unwrap } = require('./errors.cjs');
const { parseMetaBlock } = require('./load.cjs').native;
const { readRecord } = require('./record_reader.cjs');

// The schema is the one in `rawBytes`, where nothing about it is lost; the
// values are those of the object, which may have been edited.
function specFromBlock(dto) {
  const { rawBytes, values, metaValues } = objectAt(dto, 'the block');
  const bytes = bytesAt(rawBytes, 'rawBytes');
  const stored = unwrap(parseMetaBlock(bytes));
  const cursor = new Cursor(bytes);
  const schema = readSchema(cursor);
  const order = storedOrder(stored.values, schema, cursor);
  const { fields, constants } = separate(schema);
  const given = givenValues('values', values ?? stored.values, fields);
  const givenConstants = givenValues('metaValues', metaValues ?? stored.metaValues, constants);
  checkFlags(schema, HAS_CRC);
  return {
    metaName: schema.metaName,
    hasCrc: schema.flags === HAS_CRC,
    fields: recordSpecs(fields, given, order),
    metaFields: constantSpecs(constants, givenConstants),
  };
}

function checkFlags({ flags }, known) {
  if ((flags & ~known) !== 0) refuse('NOT_IMPLEMENTED', 'a schema has flags that no BlockSpec can set');
}

const separate = ({ fields }) => ({
  fields: fields.filter(({ isMeta }) => !isMeta),
  constants: fields.filter(({ isMeta }) => isMeta),
});

// The names of the stored values. Without any, a packet that is not the empty
// one holds a record that is damaged, or that its own writer made unreadable.
function storedOrder(values, schema, cursor) {
  if (Object.keys(values).length !== 0) {
    return readRecord(cursor, schema).map(([name]) => name);
  }
  const packet = cursor.bytes.subarray(cursor.offset);
  const isEmpty = packet.length === 0 || (packet[0] === 10 && packet[2] === 0);
  if (!isEmpty) refuse('CORRUPTED_META', 'the record of the block cannot be read');
  return [];
}

// By name, without those that are null or undefined. Building ignores names
// that it does not know, in nested records too, so their values would be lost.
function givenValues(path, record, fields) {
  const known = new Map(fields.map((field) => [field.name, field]));
  const given = Object.entries(objectAt(record, path)).filter(([, value]) => value != null);
  for (const [name, value] of given) {
    const field = known.get(name) ??
      refuse('INVALID_ARGUMENT', `${path}: no field '${name}' belongs there`);
    if (field.nested !== undefined) checkNested(`${path}.${name}`, value, field.nested);
  }
  return new Map(given);
}

// What is no record at all is left to building, which refuses it.
function checkNested(path, value, nested) {
  const { fields } = separate(nested);
  const items = Array.isArray(value) ? value : [value];
  items.filter((item) => typeof item === 'object' && item !== null)
    .forEach((item) => givenValues(path, item, fields));
}

// Values are written in the order of the fields. A record of another order has
// its fields twice: first all of them without values, which makes the schema,
// and then those with values, which the schema has by then.
function recordSpecs(fields, values, order) {
  const listed = fields.map((field) => fieldSpec(field, values));
  const stored = new Set([...order, ...values.keys()].filter((name) => values.has(name)));
  const byName = new Map(listed.map((field) => [field.name, field]));
  const inOrder = [...stored].map((name) => byName.get(name));
  const bySchema = listed.filter((field) => 'value' in field);
  if (inOrder.every((field, i) => field === bySchema[i])) return listed;
  return [...fields.map((field) => fieldSpec(field, new Map())), ...inOrder];
}

function constantSpecs(fields, values) {
  const missing = fields.find(({ name }) => !values.has(name));
  if (missing !== undefined) {
    refuse('INVALID_ARGUMENT', `metaValues: the constant '${missing.name}' has no value`);
  }
  return fields.map((field) => fieldSpec(field, values));
}

function fieldSpec({ name, type, flags, repeated, isMeta, enumOptions, nested }, values) {
  const isKnown = type !== undefined && (flags & ~KNOWN_FLAGS) === 0;
  if (!isKnown || (isMeta && nested !== undefined)) {
    refuse('NOT_IMPLEMENTED', `field '${name}' is of a kind that no BlockSpec can describe`);
  }
  const spec = { name, type, repeated };
  if (type === 'enum') spec.enumOptions = enumOptions;
  if (nested !== undefined) spec.nested = nestedSpec(nested);
  if (values.has(name)) spec.value = values.get(name);
  return spec;
}

// Its constants stand in the schema, its values in the record.
function nestedSpec(schema) {
  checkFlags(schema, 0);
  const { fields, constants } = separate(schema);
  const values = new Map(constants.map(({ name, value }) => [name, value]));
  return {
    metaName: schema.metaName,
    fields: fields.map((field) => fieldSpec(field, values)),
    metaFields: constantSpecs(constants, values),
  };
}

module.exports = specFromBlock;
