// The values of a parsed block as rows, nested records as dotted paths.

// { path, key, field, value } for each field in the order of the schema; `value`
// is undefined for one that is absent. Records are followed to their fields.
// A path may be that of two fields, as names may hold dots; a key is of one.
export function rowsOf({ meta, values, metaValues }) {
  return meta.fields.flatMap((field) =>
    fieldRows(field, own(field.isMeta ? metaValues : values, field.name), field.name));
}

// In no name.
const BEHIND = '\0';

const own = (record, name) => Object.hasOwn(record, name) ? record[name] : undefined;

function fieldRows(field, value, key) {
  if (field.type !== 'datamap' || value === undefined) {
    return [{ path: key.replaceAll(BEHIND, '.'), key, field, value }];
  }
  if (!field.repeated) return recordRows(field, value, key);
  return value.flatMap((record, i) => recordRows(field, record, `${key}[${i}]`));
}

// The constants of a nested schema belong to no record.
function recordRows({ nested }, record, key) {
  return nested.fields.filter(({ isMeta }) => !isMeta)
    .flatMap((field) => fieldRows(field, own(record, field.name), `${key}${BEHIND}${field.name}`));
}

export const typeName = ({ type, repeated }) => `${type}${repeated ? '[]' : ''}`;

export function showValue(field, value) {
  if (value === undefined) return 'absent';
  return Array.isArray(value) ? `[${value.map((item) => showOne(field, item)).join(', ')}]`
    : showOne(field, value);
}

// The fewest digits that are still the same 32-bit float.
function shortest(value) {
  for (let digits = 1; digits < 9; digits++) {
    const rounded = Number(value.toPrecision(digits));
    if (Math.fround(rounded) === value) return rounded;
  }
  return value;
}

function showOne({ type, enumMapping }, value) {
  if (type === 'string') return JSON.stringify(value);
  if (type === 'float') return Object.is(value, -0) ? '-0' : `${shortest(value)}`;
  if (type !== 'enum') return `${value}`;
  const [name] = Object.entries(enumMapping).find(([, code]) => code === value) ?? [];
  return name === undefined ? `${value}` : `${value} (${name})`;
}
