'use strict';

// A parsed block as JSON and back, nothing lost. Both ways lead along the
// schema; `way` is the direction.

const { arrayAt, objectAt, wrong } = require('./arguments.cjs');
const fieldTypes = require('./field_types.cjs');
const { bool, bytes, scalars, string } = require('./json_values.cjs');
const { DEEPEST } = require('./limits.cjs');

const toJSON = (dto) => convertBlock(dto, 'toJSON');
const fromJSON = (json) => convertBlock(json, 'fromJSON');

function convertBlock(block, way) {
  const { uuid, uuidRawBytes, instance, descriptorUuid, ...rest } = objectAt(block, 'the block');
  const meta = convertMeta(rest.meta, 'meta', way, 1);
  const { size, crc32 } = objectAt(rest.raw, 'raw');
  return {
    ...optional('uuid', uuid, string[way]),
    ...optional('uuidRawBytes', uuidRawBytes, bytes[way]),
    ...optional('instance', instance, scalars.uint32[way]),
    ...optional('descriptorUuid', descriptorUuid, string[way]),
    meta,
    values: convertRecord(rest.values, 'values', meta, way),
    metaValues: convertRecord(rest.metaValues, 'metaValues', meta, way),
    raw: {
      size: scalars.uint32[way](size, 'raw.size'),
      crc32: scalars.uint32[way](crc32, 'raw.crc32'),
    },
    rawBytes: bytes[way](rest.rawBytes, 'rawBytes'),
  };
}

function convertMeta(meta, path, way, level) {
  // An object that is no schema may nest forever.
  if (level > DEEPEST) wrong(path, `at most ${DEEPEST} levels deep`);
  const { name, fields } = objectAt(meta, path);
  return {
    name: string[way](name, `${path}.name`),
    fields: arrayAt(fields, `${path}.fields`).map((field, i) =>
      convertField(field, `${path}.fields[${i}]`, way, level)),
  };
}

function convertField(field, path, way, level) {
  const { name, type, repeated, isMeta, enumMapping, nested } = objectAt(field, path);
  if (type !== 'unknown' && !fieldTypes.includes(type)) wrong(`${path}.type`, 'a field type');
  return {
    name: string[way](name, `${path}.name`),
    type,
    repeated: bool[way](repeated, `${path}.repeated`),
    isMeta: bool[way](isMeta, `${path}.isMeta`),
    ...optional('enumMapping', enumMapping, (mapping) => mapEntries(
      objectAt(mapping, `${path}.enumMapping`),
      (code, key) => scalars.enum[way](code, `${path}.enumMapping.${key}`))),
    ...optional('nested', nested, (meta) =>
      convertMeta(meta, `${path}.nested`, way, level + 1)),
  };
}

// Null stands for "not given", as it does when blocks are built.
function convertRecord(record, path, meta, way) {
  const fields = new Map(meta.fields.map((field) => [field.name, field]));
  return mapEntries(objectAt(record, path), (value, name) => {
    const field = fields.get(name) ?? wrong(`${path}.${name}`, 'a field of the schema');
    return value === null ? null : convertValue(value, `${path}.${name}`, field, way);
  });
}

function convertValue(value, path, field, way) {
  if (!field.repeated) return convertOne(value, path, field, way);
  return arrayAt(value, path).map((item, i) => convertOne(item, `${path}[${i}]`, field, way));
}

function convertOne(value, path, { type, nested }, way) {
  if (type in scalars) return scalars[type][way](value, path);
  return nested === undefined ? wrong(path, 'null, as its type has no values') :
    convertRecord(value, path, nested, way);
}

// Every name becomes a property of its own, `__proto__` too.
const mapEntries = (record, convert) => Object.fromEntries(Object.entries(record)
  .filter(([, value]) => value !== undefined)
  .map(([name, value]) => [name, convert(value, name)]));

const optional = (name, value, convert) =>
  value === undefined ? {} : { [name]: convert(value, name) };

module.exports = { fromJSON, toJSON };
