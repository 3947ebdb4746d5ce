// Whatever JavaScript hands over, and does while it is read: the answer is an
// envelope of the documented form, and the next call works.
import { blockSpec, editedSpec } from './arbitraries.mjs';
import { attackable, callAll, hostile, make, plot, sabotaged } from './hostile.mjs';
import { assert, assertEnvelope, assertSame, brindle, fc, property } from './support.mjs';

const { buildBlock, packMetaBlock, parseMetaBlock } = brindle;

const known = { metaName: 'known', fields: [{ name: 'n', type: 'int16', value: -300 },
  { name: 'list', type: 'string', repeated: true, value: ['a', ''] }] };
const { value: block } = buildBlock(known);

// Nothing that went before has left a trace.
function assertWorks() {
  assertSame(buildBlock(known), { ok: true, value: block });
  assertSame(parseMetaBlock(block).value.values, { n: -300, list: ['a', ''] });
}

function assertAnswer(name, answer) {
  if (name === 'abiVersion') assert.equal(answer, '0.1.0');
  else if (name === 'crc32') assert.equal(answer >>> 0, answer);
  else assertEnvelope(answer);
}

property('any value may be any argument', 250, hostile, (odd) => {
  callAll(make(odd), assertAnswer);
  assertWorks();
});

// Puts the value in place of one that the path leads to.
function planted(root, path, value) {
  const [at, ...rest] = path;
  const keys = typeof root === 'object' && root !== null ? Object.keys(root) : [];
  if (at === undefined || keys.length === 0) return value;
  const key = keys[at % keys.length];
  const copy = Array.isArray(root) ? [...root] : { ...root };
  const inner = planted(root[key], rest, value);
  return Object.defineProperty(copy, key, { value: inner, enumerable: true });
}

const path = fc.array(fc.nat(60), { minLength: 1, maxLength: 7 });

property('any value may stand anywhere in a BlockSpec', 250, blockSpec, path, hostile,
  (spec, path, odd) => {
    assertEnvelope(buildBlock(planted(spec, path, make(odd))));
    assertWorks();
  });

property('a BlockSpec may do anything while it is read', 80, blockSpec, plot, fc.boolean(),
  (spec, plotted, proxied) => {
    const world = { memory: attackable(block) };
    assertEnvelope(buildBlock(sabotaged(spec, plotted, proxied, world)));
    assertWorks();
  });

// No bytes are taken from memory that has been lost.
const isBlock = (data) => data.length === 0 || data.subarray(0, 4).equals(block.subarray(0, 4));

property('so may a DTO, with the memory of its bytes', 100, editedSpec, plot, fc.boolean(),
  fc.option(hostile, { freq: 3 }), ([spec, values], plotted, proxied, odd) => {
    const { value } = buildBlock(spec);
    const world = { memory: attackable(value) };
    const rawBytes = odd === null ? new Uint8Array(world.memory) : make(odd);
    const parts = sabotaged({ ...parseMetaBlock(value).value, values }, plotted, proxied, world);
    const dto = Object.defineProperty(parts, 'rawBytes', { value: rawBytes });
    const verbatim = { rawBytes, get values() { return void Object.values(parts); } };
    for (const input of [verbatim, dto, { rawBytes, values: dto }]) {
      const result = assertEnvelope(packMetaBlock(input));
      if (result.ok && odd === null) assert.ok(isBlock(result.value));
    }
    assertWorks();
  });
