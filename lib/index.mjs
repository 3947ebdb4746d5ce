import brindle from './api.cjs';
import loaded from './load.cjs';

if (loaded.error) throw loaded.error;

export default brindle;
export const {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
  unwrap, BrindleError, specFromBlock, joinBlocks, toJSON, fromJSON,
} = brindle;
