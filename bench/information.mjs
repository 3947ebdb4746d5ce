// What a block says, in the form that every contender is given.
import assert from 'node:assert/strict';

// A parsed block without its own bytes and what is computed from them.
export function informationOf({ raw, rawBytes, ...information }) {
  return information;
}

// The same for codecs that know neither BigInts, which become text, nor bytes,
// which are left out.
export function inPlainTypes(value) {
  if (typeof value === 'bigint') return String(value);
  if (typeof value !== 'object') return value;
  if (Array.isArray(value)) return value.map(inPlainTypes);
  return Object.fromEntries(Object.entries(value)
    .filter(([, child]) => !Buffer.isBuffer(child))
    .map(([key, child]) => [key, inPlainTypes(child)]));
}

// Objects of a codec's own classes count as plain ones.
export const assertSame = (actual, wanted, what) =>
  assert.deepEqual(structuredClone(actual), structuredClone(wanted), what);

// That parsing a block gave the values it was built with.
export function assertHolds({ values, metaValues }, { fields, metaFields = [] }) {
  const given = (list) =>
    Object.fromEntries(list.map(({ name, value }) => [name, value]));
  assert.deepEqual(values, given(fields));
  assert.deepEqual(metaValues, given(metaFields));
}
