// Valid BlockSpecs: every type and every odd name, with values that fit.
import { fc } from './support.mjs';

const anyUnit = fc.nat(0xffff).map((unit) => String.fromCharCode(unit));
const repeat = ([unit, count]) => unit.repeat(count);

export const text = fc.oneof(
  { weight: 6, arbitrary: fc.string({ maxLength: 12 }) },
  { weight: 3, arbitrary: fc.string({ unit: 'grapheme', maxLength: 8 }) },
  { weight: 2, arbitrary: fc.string({ unit: anyUnit, maxLength: 8 }) },
  // Up to 254 bytes, the limit of names, or a little more.
  fc.tuple(fc.constantFrom('n', '\u00e9', '\u{1f600}'), fc.integer({ min: 60, max: 130 }))
    .map(repeat),
  fc.integer({ min: 250, max: 256 }).map((count) => 'x'.repeat(count)));

const oddNames = ['', '__proto__', 'constructor', 'toString', 'length', '0', '1', '07', '-1',
  '4294967294', '4294967295', 'a\0b', '\0', '\ud800', '\ufeff', '%s%n'];
const fieldName = fc.oneof(fc.constantFrom(...oddNames), text);

const integer = (bits, signed) => {
  const min = signed ? -(2n ** BigInt(bits - 1)) : 0n;
  const max = min + 2n ** BigInt(bits) - 1n;
  const near = fc.constantFrom(min, min + 1n, max - 1n, max, ...[0n, 127n, 128n, 16383n, 16384n,
    2n ** 32n].filter((value) => value <= max));
  return fc.tuple(fc.oneof(fc.bigInt({ min, max }), near), fc.boolean()).map(([value, asNumber]) =>
    asNumber && BigInt(Number(value)) === value ? Number(value) : value);
};

const rarely = (odd, usual) => fc.oneof(odd, { weight: 40, arbitrary: usual });

// For each type one value of a field.
const values = {
  ...Object.fromEntries([8, 16, 32, 64].flatMap((bits) =>
    [[`int${bits}`, integer(bits, true)], [`uint${bits}`, integer(bits, false)]])
    .map(([type, value]) => [type, () => value])),
  float: () => fc.oneof(fc.double(), fc.float(), fc.constantFrom(-0, 1e39, 1e-46, 0.1)),
  string: () => text,
  bool: () => fc.boolean(),
  enum: ({ enumOptions }) => rarely(fc.nat(255),
    fc.constantFrom(...enumOptions.map(({ code }) => Math.trunc(code)))),
  datamap: ({ nested }) => recordOf(nested.fields),
};
export const types = Object.keys(values);

const valueOf = (field) => {
  const value = values[field.type](field);
  if (!field.repeated) return value;
  return rarely(fc.constant([]), fc.array(value, { minLength: 1, maxLength: 5 }));
};

// Keys that no schema has, or null, change nothing.
const recordOf = (fields) => fc.tuple(...fields.map((field) =>
  fc.option(valueOf(field), { freq: 12 }).map((value) => [field.name, value])))
  .map(Object.fromEntries);

const code = fc.oneof(fc.nat(255), fc.double({ min: 0, max: 255, noNaN: true }));
const option = fc.record({ key: text, code }, { noNullPrototype: true });
const enumOptions = fc.array(option, { minLength: 1, maxLength: 4 });
const repeated = fc.oneof({ weight: 2, arbitrary: fc.constant(false) }, fc.constant(true));

const leaf = fc.record({ name: fieldName, type: fc.constantFrom(...types.slice(0, -1)), repeated,
  enumOptions, isMeta: fc.boolean() }, { noNullPrototype: true });
const branch = (level) => fc.record({ name: fieldName, type: fc.constant('datamap'), repeated,
  nested: nestedSpec(level + 1), isMeta: fc.constant(false) }, { noNullPrototype: true });

const cut = (name) => Buffer.from(name.split('\0')[0]).toString();
export const unique = (element, limits) => fc.uniqueArray(element,
  { selector: ({ name }) => cut(name), ...limits });

const declarations = (level, limits) => unique(level === 5 ? leaf :
  fc.oneof({ weight: 5, arbitrary: leaf }, branch(level)), limits);

const withValue = (field, absence) => fc.option(valueOf(field), absence)
  .map((value) => ({ ...field, value }));

const constants = (metas) => fc.tuple(...metas.map((field) => valueOf(field)
  .map((value) => ({ ...field, value }))));

const split = (list) => [false, true].map((kind) =>
  list.filter(({ isMeta }) => isMeta === kind).map(({ isMeta, ...field }) => field));

function nestedSpec(level) {
  const some = declarations(level, { minLength: 1, maxLength: 4 });
  return fc.tuple(text, some).chain(([metaName, list]) => {
    const [fields, metas] = split(list);
    return constants(metas).map((metaFields) => ({ metaName, fields, metaFields }));
  });
}

const digit = fc.constantFrom(...'0123456789abcdefABCDEF');
const hex = fc.string({ unit: digit, minLength: 32, maxLength: 32 });
const dashed = (digits) => digits.replace(/^(.{8})(.{4})(.{4})(.{4})/, '$1-$2-$3-$4-');
const uuid = fc.oneof({ weight: 5, arbitrary: hex.map(dashed) }, text,
  fc.constant(dashed('0'.repeat(32))));
const instance = fc.constantFrom('uint8', 'uint16', 'uint32').chain((type) =>
  values[type]().map((value) => ({ name: '__instance', type, value })));
const string = (name, value) => value.map((value) => ({ name, type: 'string', value }));

const isSet = (digits) => /[^0]/.test(digits);
const identity = [string('__uuid', hex.filter(isSet).map(dashed)), instance];
const reserved = fc.tuple(...[string('__uuid', uuid), instance, string('descriptor_uuid', text),
  string('__uuidDescr', text)].map((constant) => fc.option(constant, { nil: undefined })))
  .map((list) => list.filter(Boolean));

// Some fields are given twice, which changes nothing the second time.
const specOf = (reservedConstants, maxLength) => fc.tuple(text, fc.boolean(), reservedConstants,
  declarations(1, { maxLength }), fc.array(fc.nat(), { maxLength: 2 }))
  .chain(([metaName, hasCrc, extra, list, twice]) => {
    const [fields, metas] = split(list);
    const again = twice.flatMap((at) => fields.slice(at % (fields.length + 1)).slice(0, 1));
    const withValues = [...fields, ...again].map((field) => withValue(field, { freq: 8 }));
    return fc.tuple(fc.tuple(...withValues), constants(metas)).map(([fields, metaFields]) =>
      ({ metaName, hasCrc, fields, metaFields: [...metaFields, ...extra] }));
  });
export const blockSpec = specOf(reserved, 8);
export const identifiedSpec = specOf(fc.tuple(...identity), 3);

// A BlockSpec and other values for some of its fields.
export const editedSpec = blockSpec.chain((spec) =>
  fc.tuple(fc.constant(spec), recordOf(spec.fields)));
