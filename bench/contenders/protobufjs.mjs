// The message carries its descriptor, from which the reader makes the type.
// Numbers of 64 bits come out as text.
import protobuf from 'protobufjs';
import { open, seal } from './envelope.mjs';

const TYPES = {
  int8: 'sint32', int16: 'sint32', int32: 'sint32', int64: 'sint64',
  uint8: 'uint32', uint16: 'uint32', enum: 'uint32',
};

function messageType(fields) {
  const nested = {};
  const entries = fields.map((field, index) => {
    const record = `${field.name}Record`;
    if (field.nested) nested[record] = messageType(field.nested.fields);
    const type = field.nested ? record : TYPES[field.type] ?? field.type;
    const rule = field.repeated ? { rule: 'repeated' } : {};
    return [field.name, { ...rule, type, id: index + 1 }];
  });
  return { fields: Object.fromEntries(entries), nested };
}

function descriptorOf({ uuid, instance, meta }) {
  const fieldsWhere = (isMeta) =>
    meta.fields.filter((field) => field.isMeta === isMeta);
  const block = messageType([
    ...uuid === undefined ? [] : [{ name: 'uuid', type: 'string' }],
    ...instance === undefined ? [] : [{ name: 'instance', type: 'uint32' }],
    { name: 'values', nested: { fields: fieldsWhere(false) } },
    { name: 'metaValues', nested: { fields: fieldsWhere(true) } },
  ]);
  return { nested: { Block: block } };
}

const typeOf = (descriptor) =>
  protobuf.Root.fromJSON(descriptor).lookupType('Block');

function encode(information) {
  const descriptor = descriptorOf(information);
  const type = typeOf(descriptor);
  return seal({ descriptor, meta: information.meta },
    type.encode(type.fromObject(information)).finish());
}

function decode(message) {
  const { description, values } = open(message);
  const type = typeOf(description.descriptor);
  const block = type.toObject(type.decode(values),
    { longs: String, defaults: true });
  return { ...block, meta: description.meta };
}

export const protobufjs =
  { name: 'protobufjs', plain: true, encode, decode };
