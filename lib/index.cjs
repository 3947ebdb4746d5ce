'use strict';

const {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
} = require('./load.cjs');

// Spelled out, so that Node.js and bundlers see the names without running this.
module.exports = {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
};
