// What every property here uses: how long it is checked, and what each answer
// of the eight exports has to look like, whatever they are given.
import fc from 'fast-check';
import { writeSync } from 'node:fs';
import { setImmediate } from 'node:timers/promises';
import { isNativeError } from 'node:util/types';
import brindle, { assert, test } from '../../tests/js/module.mjs';

export { assert, brindle, fc };

const seconds = Number(process.env.BRINDLE_FUZZ_SECONDS ?? 0);
const seed = Number(process.env.BRINDLE_FUZZ_SEED ?? 1);
// Prints each case before it runs, for one that ends the process.
const trace = process.env.BRINDLE_FUZZ_TRACE !== undefined;

const report = (args) => writeSync(2, `${fc.stringify(args)}\n`);
let properties = 0;

const hasMessage = (thrown) => isNativeError(thrown) &&
  typeof Object.getOwnPropertyDescriptor(thrown, 'message')?.value === 'string';

// Nothing hostile reaches the reporter, which would look at it.
function passOn(body, args) {
  try {
    body(...args);
  } catch (thrown) {
    throw hasMessage(thrown) ? thrown : new Error('threw what cannot be shown');
  }
}

// A property as a test: the body holds for all that the arbitraries make. It is
// checked `runs` times, or for its share of the seconds that are asked for.
export function property(name, runs, ...arbitraries) {
  const body = arbitraries.pop();
  properties++;
  test(name, async (context) => {
    await setImmediate();  // all properties of the file have been counted
    let cases = 0;
    const checked = fc.property(...arbitraries, (...args) => {
      cases++;
      if (trace) report(args);
      passOn(body, args);
    });
    const started = performance.now();
    const limits = seconds === 0 ? { numRuns: runs } :
      { numRuns: 1e9, interruptAfterTimeLimit: 1000 * seconds / properties };
    fc.assert(checked, { seed, ...limits });
    const rate = cases / (performance.now() - started) * 1000;
    context.diagnostic(`${cases} cases, ${rate.toFixed()} a second`);
  });
}

const codes = new Set(['INVALID_ARGUMENT', 'SIZE_LIMIT_EXCEEDED', 'CORRUPTED_META', 'INTERNAL',
  'TRUNCATED', 'BLOCK_TOO_LARGE', 'INVALID_MAGIC', 'UNKNOWN_FIELD_TYPE', 'NOT_IMPLEMENTED']);
const isCount = (value) => Number.isSafeInteger(value) && value >= 0;
const plainKeys = (object) => {
  assert.equal(Object.getPrototypeOf(object), Object.prototype);
  return Reflect.ownKeys(object).join();
};

function assertError(error, size) {
  assert.match(plainKeys(error), /^code,message(,blockIndex(,offset)?)?$/);
  assert.ok(codes.has(error.code), error.code);
  assert.equal(typeof error.message, 'string');
  assert.notEqual(error.message, '');
  const { blockIndex = 0, offset } = error;
  // A block has at least 34 bytes in a blob.
  assert.ok(isCount(blockIndex) && blockIndex <= size / 34, `index ${blockIndex}`);
  const isInside = isCount(offset) && offset > 0 && offset <= size;
  assert.ok(offset === undefined || isInside, `offset ${offset}`);
}

// The answer of a data export is an envelope; `size` is that of its input.
export function assertEnvelope(result, size = Infinity) {
  if (result.ok === true) assert.equal(plainKeys(result), 'ok,value');
  else {
    assert.equal(plainKeys(result), 'ok,error');
    assert.equal(result.ok, false);
    assertError(result.error, size);
  }
  return result;
}

const plain = new Set([Object.prototype, Array.prototype, Buffer.prototype]);

function toText(key, value) {
  const original = this[key];  // a Buffer has been converted by now
  if (typeof value === 'bigint') return `${value}n`;
  if (typeof value === 'number') return Object.is(value, -0) ? '-0' : String(value);
  const isObject = typeof value === 'object' && value !== null;
  assert.ok(!isObject || plain.has(Object.getPrototypeOf(original)));
  // Unlike the other types these are not told apart by their quotes.
  return typeof value === 'string' ? `"${value}"` : value;
}

// Every value and the order of the keys as text; an absent key differs from
// one that is undefined.
export const textOf = (value) => JSON.stringify(value, toText, 1);
export const assertSame = (actual, expected) => assert.equal(textOf(actual), textOf(expected));
