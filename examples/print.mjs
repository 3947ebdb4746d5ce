// Prints a parsed block as a person would like to read it: one line per value,
// with nested records spelled out as paths such as "channels[0].label".

export function printBlock(block) {
  const { meta, values, metaValues } = block;
  const constants = meta.fields.filter((field) => field.isMeta);
  const fields = meta.fields.filter((field) => !field.isMeta);
  printTable(headRows(block));
  console.log();
  printTable([
    ...constants.flatMap((field) => fieldRows(field, metaValues, '')),
    ...fields.flatMap((field) => fieldRows(field, values, '')),
  ]);
}

// Pads every column but the last to its widest cell.
export function printTable(rows) {
  const widths = [];
  for (const row of rows) {
    row.forEach((cell, i) => { widths[i] = Math.max(widths[i] ?? 0, cell.length); });
  }
  for (const row of rows) {
    const cells = row.map((cell, i) => (i < row.length - 1 ? cell.padEnd(widths[i]) : cell));
    console.log(`  ${cells.join('  ')}`.trimEnd());
  }
}

export function formatValue(field, value) {
  if (value === undefined) return 'absent';
  if (Array.isArray(value)) return value.map((item) => formatOne(field, item)).join(', ') || 'empty';
  return formatOne(field, value);
}

export const hex32 = (number) => `0x${number.toString(16).toUpperCase().padStart(8, '0')}`;

function headRows({ meta, uuid, instance, raw }) {
  return [
    ['name', meta.name],
    ['uuid', uuid ?? 'none'],
    ['instance', `${instance ?? 'none'}`],
    ['size', `${raw.size} bytes`],
    ['crc32', hex32(raw.crc32)],
  ];
}

function fieldRows(field, values, prefix) {
  const path = prefix + field.name;
  const value = Object.hasOwn(values, field.name) ? values[field.name] : undefined;
  if (field.type !== 'datamap' || value === undefined) {
    return [[path, typeLabel(field), formatValue(field, value)]];
  }
  if (!field.repeated) return recordRows(field, value, path);
  return value.flatMap((record, i) => recordRows(field, record, `${path}[${i}]`));
}

function recordRows({ nested }, record, path) {
  const stored = nested.fields.filter((field) => !field.isMeta);
  return stored.flatMap((field) => fieldRows(field, record, `${path}.`));
}

function typeLabel({ type, repeated, isMeta }) {
  return `${isMeta ? 'constant ' : ''}${type}${repeated ? '[]' : ''}`;
}

function formatOne({ type, enumMapping }, value) {
  if (type === 'enum') return `${value} (${enumName(enumMapping, value)})`;
  if (type === 'float') return shortestFloat(value);
  return type === 'string' ? JSON.stringify(value) : `${value}`;
}

function enumName(mapping, code) {
  return Object.keys(mapping).find((name) => mapping[name] === code) ?? 'unnamed';
}

// A 32-bit float widened to 64 bits shows digits nobody wrote: 0.3 becomes
// 0.30000001192092896. Nine digits always suffice to tell floats apart, and
// mostly fewer do.
function shortestFloat(value) {
  for (let digits = 1; digits < 9; digits++) {
    const short = Number(value.toPrecision(digits));
    if (Math.fround(short) === value) return `${short}`;
  }
  return `${value}`;
}
