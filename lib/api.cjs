'use strict';

// All that the package exports: the functions of the native module and helpers
// beside them. Spelled out, so that Node.js and bundlers see the names without
// running this.

const { BrindleError, unwrap } = require('./errors.cjs');
const joinBlocks = require('./join_blocks.cjs');
const { fromJSON, toJSON } = require('./json.cjs');
const {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
} = require('./load.cjs').native;
const specFromBlock = require('./spec_from_block.cjs');

module.exports = {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
  unwrap, BrindleError, specFromBlock, joinBlocks, toJSON, fromJSON,
};
