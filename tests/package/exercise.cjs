'use strict';

// A round trip through an installed package.

const assert = require('node:assert/strict');

module.exports = function exercise(brindle) {
  const { buildBlock, calcNgConfigHash, crc32, joinBlocks, parseConfigBlob, specFromBlock,
    unwrap } = brindle;
  const block = unwrap(buildBlock({ metaName: 'installed', hasCrc: true,
    fields: [{ name: 'ticks', type: 'uint64', value: 2n ** 63n }],
    metaFields: [{ name: '__instance', type: 'uint8', value: 1 },
      { name: '__uuid', type: 'string', value: '01020304-0506-0708-090a-0b0c0d0e0f10' }] }));
  const [dto] = unwrap(parseConfigBlob(joinBlocks([block])));
  assert.deepEqual(dto.values, { ticks: 2n ** 63n });
  assert.equal(dto.raw.crc32, crc32(block));
  assert.ok(unwrap(buildBlock(specFromBlock(dto))).equals(block));
  assert.equal(unwrap(calcNgConfigHash(joinBlocks([block, block]))).length, 32);
  assert.throws(() => unwrap(buildBlock({})), brindle.BrindleError);
};
