// The floor: what the JavaScript values of a job take through plain Node-API.
import { createRequire } from 'node:module';

const floor = createRequire(import.meta.url)('../build/bench/floor.node');

const isPlain = (value) => typeof value !== 'bigint' && !Buffer.isBuffer(value) &&
  !(Array.isArray(value) && isPatched(value));
// Arrays that are made in bulk, or that no text can hold.
const isPatched = (array) => typeof array[0] === 'bigint' ||
  (array.length >= 16 && typeof array[0] === 'number');

function findPatches(value, path = []) {
  if (!isPlain(value)) return [[path, value]];
  if (typeof value !== 'object') return [];
  return Object.entries(value)
    .flatMap(([key, child]) => findPatches(child, [...path, key]));
}

// A tree as one text for JSON.parse, and what is put in afterwards.
function asText(tree) {
  const $json = JSON.stringify(tree, function keep(key) {
    return isPlain(this[key]) ? this[key] : null;
  });
  return { $json, patches: findPatches(tree) };
}

// The schemas as text, whether `result` is of one block or of many.
function withMetaAsText({ ok, value }) {
  const change = (block) => ({ ...block, meta: asText(block.meta) });
  return { ok, value: Array.isArray(value) ? value.map(change) : change(value) };
}

export const PARSE_WAYS = {
  'floor: one by one': (result) => floor.prepareTree(result, false),
  'floor: arrays in bulk': (result) => floor.prepareTree(result, true),
  'floor: bulk, meta as JSON':
    (result) => floor.prepareTree(withMetaAsText(result), true),
  'floor: bulk, all as JSON':
    (result) => floor.prepareTree(asText(result), true),
};

// The least that parsing to `result` takes, by each way.
export function parseFloors(result) {
  return Object.fromEntries(Object.entries(PARSE_WAYS).map(([name, prepare]) => {
    const handle = prepare(result);
    return [name, () => floor.buildTree(handle)];
  }));
}

// What buildBlock reads of a value, of an element of a list, and of a BlockSpec
// (see spec_reader.h).
function valueReads(value, bulk) {
  if (Array.isArray(value)) {
    if (bulk && value.length >= 64 && typeof value[0] === 'number') {
      return { numbers: true };
    }
    return { elements: value.map((item) => valueReads(item, bulk)) };
  }
  if (typeof value !== 'object') return value;
  return { entries: Object.entries(value)
    .map(([key, child]) => [key, valueReads(child, bulk)]) };
}

const optionReads = (options) => options && {
  elements: options.map(({ key, code }) => [['key', key], ['code', code]]),
};
const headReads = ({ name, type, repeated, enumOptions }, ...value) => [
  ['name', name], ['type', type], ...value, ['repeated', repeated],
  ['enumOptions', optionReads(enumOptions)],
];
const fieldReads = (field) =>
  [...headReads(field), ['nested', field.nested && specReads(field.nested)]];
const list = (elements, readsOf) => elements && { elements: elements.map(readsOf) };

function specReads({ metaName, hasCrc, fields, metaFields }, bulk) {
  return [
    ['metaName', metaName], ['hasCrc', hasCrc],
    ['fields', list(fields, fieldReads)],
    ['metaFields', list(metaFields, (field) =>
      headReads(field, ['value', valueReads(field.value, bulk)]))],
  ];
}

const blockReads = (spec, bulk) => [
  ...specReads(spec, bulk),
  ['fields', list(spec.fields, ({ name, value }) =>
    [['value', valueReads(value, bulk)], ['name', name]])],
];

// The least that building any BlockSpec like `spec` to a block of `size` bytes
// takes.
export function buildFloors(spec, size) {
  const read = (bulk) => {
    const handle = floor.prepareRead(blockReads(spec, bulk));
    return (given = spec) => floor.readTree(handle, given, size);
  };
  return {
    'floor: one by one': read(false), 'floor: arrays in bulk': read(true),
  };
}
