'use strict';

// In bytes; a block in a blob has its length in two bytes before it.
const LEAST_BLOCK = 32;
const LARGEST_JOINED_BLOCK = 0xffff;
const LARGEST_BLOB = 0x100000;

// Levels of schemas, the block's own included.
const DEEPEST = 5;

module.exports = { DEEPEST, LARGEST_BLOB, LARGEST_JOINED_BLOCK, LEAST_BLOCK };
