// What the library has to make of a valid BlockSpec: the schema and the record
// it describes, and the object that parsing answers.
import { jamcrc } from '../../tests/js/encode.mjs';
import { isReadableRecord } from './format.mjs';

// Texts end before U+0000, and lone surrogates become U+FFFD.
const textOf = (text) => Buffer.from(text.split('\0')[0]).toString();

function addField({ fields }, field, isMeta) {
  const name = textOf(field.name);
  const known = fields.find((other) => other.name === name);
  const options = (field.enumOptions ?? []).map(({ key, code }) => [textOf(key), Math.trunc(code)]);
  if (known !== undefined) return;  // here only with the same options
  const added = { name, type: field.type, repeated: field.repeated === true, isMeta, options,
    nested: field.type === 'datamap' ? schemaOf(field.nested) : undefined };
  if (isMeta) added.constant = toStored(added, field.value);
  fields.push(added);
}

export function schemaOf(spec) {
  const schema = { name: textOf(spec.metaName), hasCrc: spec.hasCrc === true, fields: [] };
  for (const field of spec.fields) addField(schema, field, false);
  for (const field of spec.metaFields) addField(schema, field, true);
  return schema;
}

function toStoredOne(field, value) {
  switch (field.type) {
    case 'float': return Math.fround(value);
    case 'string': return textOf(value);
    case 'bool': return value;
    case 'int64': case 'uint64': return BigInt(value);
    case 'datamap': return edited(field.nested, new Map(), value);
    default: return Number(value) + 0;  // -0 is 0
  }
}
const toStored = (field, value) => !field.repeated ? toStoredOne(field, value) :
  value.map((item) => toStoredOne(field, item));

// The record with the values of an object in place of, or behind its own.
export function edited(schema, record, object) {
  const result = new Map(record);
  for (const [key, value] of Object.entries(object)) {
    const field = schema.fields.find(({ name }) => name === textOf(key));
    if (field === undefined || field.isMeta || value === null) continue;
    result.set(field.name, toStored(field, value));
  }
  return result;
}

export const recordOf = (schema, spec) => spec.fields.reduce((record, { name, value }) =>
  edited(schema, record, Object.fromEntries([[name, value]])), new Map());

const toValue = (value) => value instanceof Map ? toObject(value) :
  Array.isArray(value) ? value.map(toValue) : value;
const toObject = (record) =>
  Object.fromEntries([...record].map(([name, value]) => [name, toValue(value)]));

const fieldDTO = ({ name, type, repeated, isMeta, options, nested }) => ({
  name, type, repeated, isMeta,
  ...(type === 'enum' && { enumMapping: Object.fromEntries(options) }),
  ...(nested && { nested: metaDTO(nested) }) });
const metaDTO = ({ name, fields }) => ({ name, fields: fields.map(fieldDTO) });

// What stands between the groups is not looked at; at a bad digit zeros follow.
function uuidBytes(text = '') {
  const uuid = Buffer.alloc(16);
  if (Buffer.byteLength(text) !== 36) return null;
  const [good] = /^(\w\w)*/.exec([0, 9, 14, 19, 24].map((at, i) =>
    Buffer.from(text).subarray(at, at + [8, 4, 4, 4, 12][i]).toString('latin1')).join('')
    .replace(/[^0-9a-f].*/is, ''));
  uuid.write(good, 'hex');
  return uuid.some(Boolean) ? uuid : null;
}

// What the reserved constants say.
export function identityOf({ fields }) {
  const constant = (name) => fields.find((field) => field.name === name)?.constant;
  const bytes = uuidBytes(constant('__uuid'));
  const digits = bytes?.toString('hex').replace(/^(.{8})(.{4})(.{4})(.{4})/, '$1-$2-$3-$4-');
  const instance = constant('__instance');
  const descriptorUuid = constant('__uuidDescr') ?? constant('descriptor_uuid');
  return { ...(bytes && { uuid: digits, uuidRawBytes: bytes }),
    ...(instance !== undefined && { instance }),
    ...(descriptorUuid !== undefined && { descriptorUuid }) };
}

// The parsed block; a record that cannot be read is empty.
export function blockDTO(schema, record, block) {
  const readable = isReadableRecord(schema, record) ? record : new Map();
  const constants = schema.fields.filter(({ isMeta }) => isMeta)
    .map(({ name, constant }) => [name, toValue(constant)]);
  return { ...identityOf(schema), meta: metaDTO(schema), values: toObject(readable),
    metaValues: Object.fromEntries(constants),
    raw: { size: block.length, crc32: jamcrc(block) }, rawBytes: block };
}
