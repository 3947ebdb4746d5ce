// What a parsed block is, apart from its values.
import reader from '../lib/block_reader.cjs';
import { hex } from './byte_map.mjs';

const FLAGS = 5;  // their offset in the header

export const hasTrailer = ({ rawBytes }) => (rawBytes[FLAGS] & reader.HAS_CRC) !== 0;

// Names and texts, in the order in which they are shown.
export const factsOf = (block) => [
  ['uuid', block.uuid ?? 'none'],
  ['instance', `${block.instance ?? 'none'}`],
  ['size', `${block.raw.size} bytes`],
  ['crc32', hex(block.raw.crc32, 8)],
  ['trailer', hasTrailer(block) ? 'CRC-16, good' : 'none'],
];
