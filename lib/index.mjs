import { createRequire } from 'node:module';

// Not imported: when a CommonJS module throws while being imported, Node.js 20
// reports an unhandled rejection even to a caller who catches the error.
const brindle = createRequire(import.meta.url)('./index.cjs');

export default brindle;
export const {
  abiVersion, crc32, validateBlock, parseMetaBlock,
  parseConfigBlob, packMetaBlock, buildBlock, calcNgConfigHash,
} = brindle;
