// Reads a block description from a JSON file. JSON numbers are exact up to 2^53
// only, so the files write 64-bit values as decimal strings; here they become
// BigInts, wherever they stand: in arrays and nested records too.
import { readFileSync } from 'node:fs';

export function readSpec(file) {
  const spec = JSON.parse(readFileSync(file, 'utf8'));
  for (const field of [...(spec.fields ?? []), ...(spec.metaFields ?? [])]) {
    if ('value' in field) field.value = revive(field.value, field);
  }
  return spec;
}

function revive(value, field) {
  if (Array.isArray(value)) return value.map((item) => revive(item, field));
  if (field.type === 'datamap') return reviveRecord(value, field.nested);
  return /^u?int64$/.test(field.type) ? BigInt(value) : value;
}

function reviveRecord(record, { fields }) {
  const fieldOf = (name) => fields.find((field) => field.name === name) ?? {};
  const entries = Object.entries(record);
  return Object.fromEntries(entries.map(([name, value]) => [name, revive(value, fieldOf(name))]));
}
