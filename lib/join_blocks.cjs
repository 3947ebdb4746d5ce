'use strict';

const { Buffer } = require('node:buffer');
const { bytesAt } = require('./arguments.cjs');
const { refuse } = require('./errors.cjs');
const { LARGEST_BLOB, LARGEST_JOINED_BLOCK, LEAST_BLOCK } = require('./limits.cjs');

function joinBlocks(blocks) {
  if (typeof blocks?.[Symbol.iterator] !== 'function') {
    refuse('INVALID_ARGUMENT', 'joinBlocks expects an array of Buffers');
  }
  const entries = Array.from(blocks, entryOf);
  const size = entries.reduce((sum, { length }) => sum + length, 0);
  if (size > LARGEST_BLOB) {
    refuse('SIZE_LIMIT_EXCEEDED',
      `the blob would have ${size} bytes, more than ${LARGEST_BLOB}`);
  }
  return Buffer.concat(entries);
}

// One block after its length: 16 bits, little-endian.
function entryOf(block, blockIndex) {
  const bytes = bytesAt(block, `block ${blockIndex}`, { blockIndex });
  const size = `block ${blockIndex} has ${bytes.length} bytes`;
  if (bytes.length < LEAST_BLOCK) {
    refuse('TRUNCATED', `${size}, fewer than ${LEAST_BLOCK}`, { blockIndex });
  }
  if (bytes.length > LARGEST_JOINED_BLOCK) {
    refuse('BLOCK_TOO_LARGE', `${size}, more than ${LARGEST_JOINED_BLOCK} in a blob`, { blockIndex });
  }
  return Buffer.concat([Buffer.of(bytes.length & 0xff, bytes.length >> 8), bytes]);
}

module.exports = joinBlocks;
