import { packet } from './encode.mjs';
import brindle, { assert, assertRefused, test, valueOf } from './module.mjs';

const nested = { metaName: '', fields: ['x', '0'].map((name) => ({ name, type: 'int8' })),
  metaFields: [{ name: 'c', type: 'int8', value: 1 }] };
const more = { enum: { enumOptions: [{ key: 'a', code: 1 }] }, datamap: { nested } };
const build = (type, value, repeated) => brindle.buildBlock({ metaName: 'values',
  fields: [{ name: 'v', type, value, repeated, ...more[type] }] });
const stored = (...field) => valueOf(brindle.parseMetaBlock(valueOf(build(...field)))).values.v;

function assertStored(type, value, expected) {
  assert.deepEqual(stored(type, value), expected, `${type} ${String(value)}`);
  assert.deepEqual(stored(type, [value], true), [expected]);
}

function assertMismatch(type, values, repeated) {
  const refusal = ['INVALID_ARGUMENT', "value type mismatch for field 'v'"];
  for (const value of values) {
    assertRefused(build(type, value, repeated), ...refusal);
    if (!repeated) assertMismatch(type, [[value]], true);
  }
}

const integers = ['int8', 'int16', 'int32', 'int64', 'uint8', 'uint16', 'uint32', 'uint64'];
for (const type of integers) {
  const [bits, sign] = [parseInt(type.replace(/\D+/, '')), type.startsWith('int') ? 1 : 0];
  test(`${type} takes its range and no neighbour`, () => {
    const [min, end] = [-sign * 2 ** (bits - 1), 2 ** (bits - sign)];
    // The doubles next to the limits of 64 bits are 2^10 or 2^11 apart.
    const last = end - (bits < 64 ? 1 : 2 ** (bits - sign - 53));
    const before = min - (bits < 64 || !sign ? 1 : 2048);
    const read = (value) => bits === 64 ? BigInt(value) : Number(BigInt(value));
    const good = [min, last, -0, BigInt(min), BigInt(end) - 1n];
    for (const value of good) assertStored(type, value, read(value));
    assertMismatch(type, [before, end, BigInt(min) - 1n, BigInt(end), 2n ** 64n, -(2n ** 64n),
      0.5, -0.5, NaN, Infinity, '1', true, {}, Object(1), Symbol('1')]);
  });
}

test('other types take their own JavaScript type, uncoerced', () => {
  const inherited = Object.assign(Object.create({ x: 2, 0: 9 }), { 0: 1, [Symbol('x')]: 3 });
  const good = [
    ['float', 1e300, Infinity], ['float', 0.1, Math.fround(0.1)], ['float', NaN, NaN],
    ['float', -0, -0], ['bool', false, false], ['enum', 1n, 1], ['string', 'a\0b', 'a'],
    ['string', '\ud800.', '\ufffd.'], ['datamap', inherited, { 0: 1, x: 2 }],
    ['datamap', { x: 1, other: 'x', c: 'x', 0: null }, { x: 1 }], ['datamap', [7, 8], { 0: 7 }],
    ['datamap', Object.assign(() => {}, { x: 1 }), { x: 1 }]];
  for (const row of good) assertStored(...row);
  const bad = { float: [1n, '1', true, Object(1)], bool: [0, 1, 'true', Object(true)],
    string: [5, true, Object('a'), Symbol('a')], enum: ['a', 256, -1, 1.5, true],
    datamap: ['x', 5, true, 1n, { x: 128 }, { x: 'x' }, [[]]] };
  for (const [type, values] of Object.entries(bad)) assertMismatch(type, values);
});

test('only arrays without gaps are arrays, and not of all types empty', () => {
  assertMismatch('uint8', [[1, , 2], [null], [undefined], Array(2 ** 32 - 1), Buffer.of(1),
    new Proxy([1], {}), new Uint8Array(1), { length: 0 }, 'abc', 5], true);
  assertMismatch('datamap', [Object.assign(Array(2 ** 32 - 1), { 0: {} })], true);
  // Except before varints a reader takes the count 0 for a fault.
  const kept = [...integers, 'float', 'string', 'bool', 'enum', 'datamap'].filter((type) =>
    stored(type, [], true));
  assert.deepEqual(kept, integers.filter((type) => !type.endsWith('int8')));
});

// Readers refuse the first two, so only the bytes tell.
test('each element of a long array is read once, whatever it turns out to be', () => {
  for (const first of [1, 'x']) {
    const array = new Array(100).fill(2);
    const answers = [first, 3];
    Object.defineProperty(array, 0, { get: () => answers.shift() });
    if (first === 1) assert.deepEqual(stored('uint8', array, true), [1, ...array.slice(1)]);
    else assertMismatch('uint8', [array], true);
    assert.deepEqual(answers, [3]);
  }
  for (const odd of ['5', null, true, 256, 0.5, NaN]) {
    assertMismatch('uint8', [[...new Array(99).fill(2), odd]], true);
  }
});

test('an unknown code, an empty record and no value are written', () => {
  const ending = (length, ...field) => valueOf(build(...field)).subarray(-length);
  assert.deepEqual(ending(5, 'enum', 255), packet(0, 255));
  assert.deepEqual(ending(3, 'datamap', null), packet());
  assert.deepEqual(ending(8, 'datamap', {}), packet(0, 3, packet()));
});
