// The helpers in JavaScript: whatever they make of a block leads back to it.
import * as helpers from '../../lib/index.mjs';
import { bytes } from '../../tests/js/encode.mjs';
import { blockSpec } from './arbitraries.mjs';
import { mutated, mutations, repaired } from './mutate.mjs';
import { assert, assertSame, fc, property } from './support.mjs';

const { BrindleError, buildBlock, fromJSON, parseMetaBlock, specFromBlock, toJSON, unwrap } = helpers;

// What a call makes, or the code with which it is refused.
function attempt(call) {
  try {
    return { value: call() };
  } catch (error) {
    assert.ok(error instanceof BrindleError, String(error?.stack));
    return { code: error.code };
  }
}

// A BlockSpec has its constants after the fields.
const sorted = ({ name, fields }) => ({ name, fields: [...fields]
  .sort((a, b) => a.isMeta - b.isMeta)
  .map((field) => field.nested ? { ...field, nested: sorted(field.nested) } : field) });
const contentOf = ({ meta, values, metaValues }) => ({ meta: sorted(meta), values, metaValues });

property('a block that can be read is built again byte for byte', 1000, blockSpec, (spec) => {
  const block = unwrap(buildBlock(spec));
  const parsed = parseMetaBlock(block);
  if (!parsed.ok) return;
  const given = new Map(spec.fields.filter(({ value }) => value !== null).map((f) => [f.name, f]));
  const { value, code } = attempt(() => specFromBlock(parsed.value));
  if (given.size !== 0 && Object.keys(parsed.value.values).length === 0) {
    assert.equal(code, 'CORRUPTED_META');
  } else {
    assert.equal(unwrap(buildBlock(value)).toString('hex'), block.toString('hex'));
  }
});

property('a parsed block survives JSON', 300, blockSpec, (spec) => {
  const parsed = parseMetaBlock(unwrap(buildBlock(spec)));
  if (!parsed.ok) return;
  assertSame(fromJSON(JSON.parse(JSON.stringify(toJSON(parsed.value)))), parsed.value);
});

property('a block that was damaged is built again with its content, or refused', 1000,
  blockSpec, mutations, (spec, list) => {
    const { data } = repaired(mutated(unwrap(buildBlock(spec)), list));
    const parsed = parseMetaBlock(data);
    if (!parsed.ok) return;
    const { value } = attempt(() => specFromBlock(parsed.value));
    if (value === undefined) return;
    const block = unwrap(buildBlock(value));
    if (block.length < 32) return;  // bytes that nothing reads are left out
    assertSame(contentOf(unwrap(parseMetaBlock(block))), contentOf(parsed.value));
  });
