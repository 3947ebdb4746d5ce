// What differs between two lists of parsed blocks.
import { isDeepStrictEqual } from 'node:util';
import { hasTrailer } from './facts.mjs';
import { rowsOf, showValue, typeName } from './values.mjs';

// { added, removed, changed, moved }: `moved` is whether blocks that both have
// stand in another order.
export function compare(before, after) {
  const old = byKey(before);
  const now = byKey(after);
  const common = [...now.keys()].filter((key) => old.has(key));
  return {
    removed: [...old].filter(([key]) => !now.has(key)).map(([, found]) => found),
    added: [...now].filter(([key]) => !old.has(key)).map(([, found]) => found),
    changed: common.map((key) => compareBlocks(old.get(key), now.get(key))).filter(Boolean),
    moved: common.join('\0') !== [...old.keys()].filter((key) => now.has(key)).join('\0'),
  };
}

// Blocks are the same by identifier and instance, or else by name; several of
// one kind are told apart by their order.
function byKey(blocks) {
  const found = new Map();
  blocks.forEach((block, index) => {
    const { uuid, instance, meta } = block;
    const base = JSON.stringify(uuid === undefined ? [meta.name] : [uuid, instance ?? null]);
    let key = base;
    for (let count = 2; found.has(key); count++) key = `${base} ${count}`;
    found.set(key, { index, block });
  });
  return found;
}

// Undefined if they are equal. Equal bytes need no closer look.
function compareBlocks(before, after) {
  if (before.block.rawBytes.equals(after.block.rawBytes)) return undefined;
  return {
    before,
    after,
    schema: schemaChanges(before.block, after.block),
    values: valueChanges(before.block, after.block),
  };
}

// As lines of text.
function schemaChanges(before, after) {
  const changes = fieldChanges(before.meta, after.meta, '');
  if (before.meta.name !== after.meta.name) {
    changes.unshift(`name: ${JSON.stringify(before.meta.name)} -> ${JSON.stringify(after.meta.name)}`);
  }
  if (hasTrailer(before) !== hasTrailer(after)) {
    changes.push(`CRC-16 trailer: ${hasTrailer(before) ? 'removed' : 'added'}`);
  }
  return changes;
}

function fieldChanges(before, after, prefix) {
  const old = new Map(before.fields.map((field) => [field.name, field]));
  const now = new Map(after.fields.map((field) => [field.name, field]));
  const common = after.fields.filter(({ name }) => old.has(name));
  const changes = [
    ...before.fields.filter(({ name }) => !now.has(name))
      .map((field) => `${prefix}${field.name}: ${kindOf(field)} removed`),
    ...after.fields.filter(({ name }) => !old.has(name))
      .map((field) => `${prefix}${field.name}: ${kindOf(field)} added`),
    ...common.flatMap((field) => changesOf(old.get(field.name), field, prefix)),
  ];
  const order = before.fields.filter(({ name }) => now.has(name));
  if (order.some(({ name }, i) => name !== common[i].name)) changes.push(`${prefix}order of the fields`);
  return changes;
}

const kindOf = (field) => `${field.isMeta ? 'constant ' : ''}${typeName(field)}`;

function changesOf(before, after, prefix) {
  const path = `${prefix}${after.name}`;
  if (kindOf(before) !== kindOf(after)) return [`${path}: ${kindOf(before)} -> ${kindOf(after)}`];
  const changes = [];
  const [old, now] = [before, after].map(({ enumMapping = {} }) => enumMapping);
  if (!isDeepStrictEqual(Object.entries(old), Object.entries(now))) {
    const show = (mapping) => Object.entries(mapping).map(([name, code]) => `${name}=${code}`).join(' ');
    changes.push(`${path}: entries ${show(old)} -> ${show(now)}`);
  }
  if (!after.nested) return changes;
  if (before.nested.name !== after.nested.name) changes.push(`${path}: name of its schema`);
  return [...changes, ...fieldChanges(before.nested, after.nested, `${path}.`)];
}

// { path, before, after } of each value that is not the same, as text.
function valueChanges(before, after) {
  const old = textsOf(before);
  const now = textsOf(after);
  return [...new Map([...old, ...now])].map(([key, { path }]) =>
    ({ path, before: old.get(key)?.text ?? 'absent', after: now.get(key)?.text ?? 'absent' }))
    .filter((change) => change.before !== change.after);
}

const textsOf = (block) => new Map(rowsOf(block).filter(({ value }) => value !== undefined)
  .map(({ key, path, field, value }) => [key, { path, text: showValue(field, value) }]));
