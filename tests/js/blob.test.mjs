import { createHash } from 'node:crypto';
import { blob, bytes, jamcrc, le } from './encode.mjs';
import brindle, { assert, assertRefused, test, valueOf } from './module.mjs';

const { buildBlock, calcNgConfigHash, parseConfigBlob, parseMetaBlock } = brindle;
const sha256 = (...parts) => createHash('sha256').update(bytes(...parts)).digest();
const hash = (...blocks) => valueOf(calcNgConfigHash(blob(...blocks)));

const define = (name, type, value) => ({ name, type, value, repeated: Array.isArray(value) });
const build = (...metaFields) => valueOf(buildBlock({ metaName: 'n'.repeat(15), metaFields }));

// A block and what stands for it in the hash: 16 bytes of the identifier,
// 16 bits of the instance, 32 of the size, 32 of the checksum.
function summarised(digits, instance, type = 'uint16') {
  const uuid = digits.replace(/^(.{8})(.{4})(.{4})(.{4})/, '$1-$2-$3-$4-');
  const block = build(define('__uuid', 'string', uuid), define('__instance', type, instance));
  const numbers = [le(instance, 2), le(block.length, 4), le(jamcrc(block), 4)];
  return [block, bytes(Buffer.from(digits, 'hex'), ...numbers)];
}

const [good] = summarised('1'.repeat(32), 1);
const malformed = 'blob malformed (truncated / invalid block size / bad Meta)';

test('a fault in a blob is named and located', () => {
  const short = ['TRUNCATED', 'block smaller than MIN_META_BLOCK_BYTES (32)'];
  const beyond = ['TRUNCATED', 'block extends past end of blob'];
  const rows = [
    [bytes(0, 0), 'CORRUPTED_META', 'block size is zero'],
    [bytes(7), 'TRUNCATED', 'trailing bytes after last block'],
    [blob(good.subarray(0, 31)), ...short], [bytes(31, 0), ...short],
    [blob(good).subarray(0, -1), ...beyond], [bytes(32, 0), ...beyond],
    // Located at the block, not at its length.
    [blob(Buffer.alloc(32)), 'CORRUPTED_META', 'Meta::unpack failed', 2]];
  for (const [fault, code, message, distance = 0] of rows) {
    for (const before of [[], [good], [good, good]]) {
      const data = bytes(blob(...before), fault);
      const offset = data.length - fault.length + distance || undefined;
      const place = { blockIndex: before.length, offset };
      assertRefused(parseConfigBlob(data), code, message, place);
      assertRefused(calcNgConfigHash(data), 'CORRUPTED_META', malformed);
    }
  }
});

test('a blob may have 1048576 bytes, and is parsed in its order', () => {
  // 16 entries of 2 + 65534 bytes.
  const rest = Buffer.alloc(65533 - good.length);
  const blocks = [...Array(16).keys()].map((i) => bytes(good, i, rest));
  const parsed = valueOf(parseConfigBlob(blob(...blocks)));
  assert.deepEqual(parsed.map(({ rawBytes }) => rawBytes), blocks);
  assert.equal(hash(...blocks).length, 32);
  const [code, large] = ['SIZE_LIMIT_EXCEEDED', bytes(blob(...blocks), 0)];
  assertRefused(parseConfigBlob(large), code, 'blob exceeds MAX_CONFIG_BLOB_BYTES (1048576)');
  assertRefused(calcNgConfigHash(large), code, 'blob exceeds MAX_CONFIG_BLOB_BYTES');
});

test('the hash sorts by identifiers as unsigned bytes, and by nothing else', () => {
  // Ascending, and of the last one many instances in descending order; of
  // those that need 17 bits the low 16 count.
  const digits = ['007f', '0080', '7fff', '8000', ...Array(30).fill('ff00')];
  const sorted = digits.map((start, i) => summarised(`${start}${'0'.repeat(28)}`,
    ...[[65586 - i, 'uint32'], [50 - i, 'uint8'], [350 - i, 'uint16']][i % 3]));
  const expected = sha256(...sorted.map(([, summary]) => summary));
  const [a, b, c, d, ...rest] = sorted.map(([block]) => block);
  assert.deepEqual(hash(rest[0], d, b, ...rest.slice(1, 9), a, c, ...rest.slice(9)), expected);
  assert.notDeepEqual(hash(a, b, c, d, ...rest.reverse()), expected);
  assert.deepEqual(hash(), sha256());
});

test('constants of the right name and type identify a block, the hash needs two', () => {
  const text = '00010203-0405-0607-0809-0a0b0c0d0e0f';
  const identified = { uuid: text, instance: 7 };
  const uuid = define('__uuid', 'string', text.toUpperCase());
  const instance = (type, value = 7) => define('__instance', type, value);
  const descriptor = define('descriptor_uuid', 'string', 'E');
  const rows = [[identified, uuid, instance('uint32')], [{ uuid: text }, uuid],
    [{ uuid: text }, uuid, instance('uint16', [7])],
    ...['int32', 'uint64', 'float'].map((type) => [{ uuid: text }, uuid, instance(type)]),
    ...[text.slice(1), text.replace(/\w/g, '0'), [text]].map((value) =>
      [{ instance: 7 }, define('__uuid', 'string', value), instance('uint8')]),
    [{ descriptorUuid: 'D' }, descriptor, define('__uuidDescr', 'string', 'D')],
    [{}, descriptor, define('__uuidDescr', 'uint8', 1)]];
  for (const [expected, ...constants] of rows) {
    const block = build(...constants);
    const { uuid, instance, descriptorUuid } = valueOf(parseMetaBlock(block));
    assert.equal(JSON.stringify({ uuid, instance, descriptorUuid }), JSON.stringify(expected));
    if (expected === identified) hash(good, block);
    else assertRefused(calcNgConfigHash(blob(good, block)), 'CORRUPTED_META', malformed);
  }
});
