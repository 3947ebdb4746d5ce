// Carries out PATH=VALUE on a parsed block. A path is the names of fields with
// dots between, [i] for an element; the schema tells where a name ends, as
// names may hold any of these signs.
import { Failure, REFUSED } from './failure.mjs';
import { suggestion } from './arguments.mjs';

export function assign(block, assignment) {
  const { fields } = block.meta;
  const record = fieldAt(fields, assignment)?.isMeta ? block.metaValues : block.values;
  assignIn(record, fields, assignment, assignment);
}

// The field whose name is the longest that the path begins with.
const fieldAt = (fields, path) => fields
  .filter(({ name }) => path.startsWith(name) && /^[.[=]/.test(path.slice(name.length)))
  .reduce((best, field) => best === undefined || field.name.length > best.name.length ? field : best,
    undefined);

function assignIn(record, fields, path, whole) {
  const field = fieldAt(fields, path) ?? unknown(fields, path, whole);
  const rest = path.slice(field.name.length);
  const old = Object.hasOwn(record, field.name) ? record[field.name] : undefined;
  // `__proto__` too is a property of its own.
  Object.defineProperty(record, field.name, { value: changed(old, field, rest, whole),
    enumerable: true, configurable: true, writable: true });
}

function unknown(fields, path, whole) {
  if (!whole.includes('=')) throw new Failure(`--set ${whole}: there is no "=" in it`);
  const name = path.split(/[.[=]/)[0];
  throw new Failure(`--set ${whole}: no field '${name}'` +
    suggestion(name, fields.map((field) => field.name)), REFUSED);
}

// What a field holds after the rest of the path has been followed.
function changed(old, field, rest, whole) {
  if (rest.startsWith('=')) return parseValue(rest.slice(1), field, whole);
  const [, index, behind] = /^\[(\d+)\](.*)$/s.exec(rest) ?? [];
  if (index !== undefined && field.repeated) {
    const items = [...old ?? []];
    if (Number(index) > items.length) {
      throw new Failure(`--set ${whole}: the array has ${items.length} elements`, REFUSED);
    }
    items[index] = changed(items[index], { ...field, repeated: false }, behind, whole);
    return items;
  }
  if (!rest.startsWith('.') || field.nested === undefined || field.repeated) {
    throw new Failure(`--set ${whole}: '${field.name}' is ${kindOf(field)}`, REFUSED);
  }
  const record = { ...old };
  assignIn(record, field.nested.fields.filter(({ isMeta }) => !isMeta), rest.slice(1), whole);
  return record;
}

const kindOf = ({ type, repeated }) =>
  repeated ? 'an array: write [index] behind it' : type === 'datamap' ? 'a record' : 'no record';

// Text of a single value, JSON of arrays and records.
function parseValue(text, field, whole) {
  const wrong = (expected) => {
    throw new Failure(`--set ${whole}: '${field.name}' takes ${expected}`, REFUSED);
  };
  if (!field.repeated && field.type !== 'datamap') return parseOne(text, field, wrong);
  let value;
  try {
    value = JSON.parse(text);
  } catch {
    wrong(field.repeated ? 'an array as JSON' : 'an object as JSON');
  }
  return fromJSON(value, field, wrong);
}

function fromJSON(value, field, wrong) {
  if (field.repeated) {
    return Array.isArray(value) ? value.map((item) => fromJSON(item, { ...field, repeated: false }, wrong))
      : wrong('an array as JSON');
  }
  if (field.type !== 'datamap') {
    if (typeof value === 'object') wrong(`a ${field.type}`);
    return parseOne(textOf(value, field, wrong), field, wrong);
  }
  if (typeof value !== 'object' || value === null || Array.isArray(value)) wrong('an object as JSON');
  return Object.fromEntries(Object.entries(value).map(([name, item]) => {
    const inner = field.nested.fields.find((one) => one.name === name && !one.isMeta) ??
      wrong(`no field '${name}'`);
    return [name, fromJSON(item, inner, wrong)];
  }));
}

// JSON numbers are doubles: beyond 2^53 they are not what was written.
function textOf(value, { type }, wrong) {
  const isRounded = /int64$/.test(type) && typeof value === 'number' && !Number.isSafeInteger(value);
  return isRounded ? wrong('a whole number, and beyond 2^53 as a string') : `${value}`;
}

// Ranges are left to the native module.
function parseOne(text, { type, enumMapping = {} }, wrong) {
  switch (type) {
    case 'string': return text;
    case 'bool': return /^(?:true|false)$/.test(text) ? text === 'true' : wrong('true or false');
    case 'float': return /^\s*$/.test(text) || (Number.isNaN(Number(text)) && text !== 'NaN')
      ? wrong('a number') : Number(text);
    case 'enum': return parseEnum(text, enumMapping, wrong);
    default: return /^-?\d+$/.test(text) ? BigInt(text) : wrong('a whole number');
  }
}

// The name of an entry, or its code.
function parseEnum(text, mapping, wrong) {
  if (Object.hasOwn(mapping, text)) return mapping[text];
  if (/^\d+$/.test(text) && Object.values(mapping).includes(Number(text))) return Number(text);
  const entries = Object.entries(mapping).map(([name, code]) => `${name} (${code})`);
  return wrong(`one of ${entries.join(', ')}`);
}
