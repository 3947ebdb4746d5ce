import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

// What users load, unless an instrumented build is named.
export const modulePath = process.env.BRINDLE_TEST_MODULE ??
  fileURLToPath(new URL('../../lib/index.cjs', import.meta.url));

export { assert, test };
export default createRequire(import.meta.url)(modulePath);

// The value of a call that must succeed.
export function valueOf(result) {
  assert.deepEqual(Object.entries(result).flat().slice(0, 3),
    ['ok', true, 'value'], result.error?.message);
  return result.value;
}

// Compared as text, so that the order of the keys and absent keys count.
export function assertRefused(result, code, message, place) {
  const expected = { ok: false, error: { code, message, ...place } };
  assert.equal(JSON.stringify(result), JSON.stringify(expected));
}
