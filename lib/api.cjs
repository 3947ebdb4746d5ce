'use strict';

// All that the package exports, spelled out so that Node.js and bundlers see the
// names without running this.

const {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
} = require('./load.cjs').native;

module.exports = {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
};
