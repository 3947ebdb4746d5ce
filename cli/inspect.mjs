// What a file holds and what is wrong with it: all that show, check and diff
// know. The native module decides what can be read, the map of the bytes where
// it cannot.
import { parseConfigBlob, parseMetaBlock } from '../lib/index.mjs';
import { LARGEST_BLOB, LEAST_BLOCK } from '../lib/limits.cjs';
import { mapBlock } from './byte_map.mjs';
import { withLines } from './streams.mjs';

const MAGIC = Buffer.from('MHCS');

const similarity = (bytes, at) =>
  [...MAGIC].filter((byte, i) => byte === bytes[at + i]).length;

// By the magic, which a blob has behind the first length; if it is damaged, by
// where more of it is left.
export function isBlob(bytes) {
  if (bytes.length === 0) return true;
  return similarity(bytes, 2) === MAGIC.length || similarity(bytes, 0) < similarity(bytes, 2);
}

// { kind, blocks, nodes, faults, lines }: the faults by offset, the first of
// them what the file is refused for. A block has an `index` and an `offset`.
export function inspect(bytes) {
  return isBlob(bytes) ? inspectBlob(bytes) : inspectSingle(bytes);
}

function inspectSingle(bytes) {
  const block = inspectBlock(bytes, 0, bytes.length, undefined);
  return { kind: 'block', blocks: [block], nodes: block.nodes, faults: block.faults, lines: block.lines };
}

function inspectBlock(bytes, start, end, blockIndex) {
  const { value: parsed, lines } = withLines(() => parseMetaBlock(bytes.subarray(start, end)));
  const { nodes, faults, block } = mapBlock(bytes, start, end);
  if (!parsed.ok && faults.length === 0) {
    faults.push({ offset: start, message: parsed.error.message });
  }
  return {
    index: blockIndex,
    offset: start,
    size: end - start,
    dto: parsed.ok ? parsed.value : undefined,
    read: block,
    nodes,
    faults: faults.map((fault) => ({ ...fault, blockIndex })),
    lines,
  };
}

function inspectBlob(bytes) {
  const blob = { kind: 'blob', blocks: [], nodes: [], faults: [], lines: [] };
  let offset = 0;
  while (offset < bytes.length) {
    const end = nextEntry(bytes, offset, blob);
    if (end === undefined) break;
    const index = blob.blocks.length;
    const block = inspectBlock(bytes, offset + 2, end, index);
    blob.blocks.push(block);
    blob.nodes.push({ name: `block ${index}`, start: offset, end, children: [
      { name: 'block size', start: offset, end: offset + 2, text: `${block.size}` }, ...block.nodes] });
    blob.faults.push(...block.faults);
    blob.lines.push(...block.lines);
    offset = end;
  }
  if (offset < bytes.length) {
    blob.nodes.push({ name: 'not understood', start: offset, end: bytes.length,
      text: `${bytes.length - offset} bytes` });
  }
  checkWhole(bytes, blob);
  return blob;
}

// Where the entry at an offset ends; undefined, and a fault, if it has no end.
function nextEntry(bytes, offset, { blocks, faults }) {
  const left = bytes.length - offset;
  const size = left < 2 ? 0 : bytes.readUInt16LE(offset);
  const message = left < 2 ? 'one byte is left after the last block'
    : size < LEAST_BLOCK ? `a block of ${size} bytes, fewer than ${LEAST_BLOCK}`
      : size > left - 2 ? `a block of ${size} bytes, of which ${left - 2} are there` : undefined;
  if (message === undefined) return offset + 2 + size;
  faults.push({ offset, message, blockIndex: blocks.length });
  return undefined;
}

// The native module has the last word on whether all of it can be read.
function checkWhole(bytes, { faults }) {
  const { value: parsed } = withLines(() => parseConfigBlob(bytes));
  if (parsed.ok || faults.length !== 0) return;
  const { message, blockIndex, offset = 0 } = parsed.error;
  faults.push({ offset: bytes.length > LARGEST_BLOB ? LARGEST_BLOB : offset, message, blockIndex });
}

// "block 1, offset 549: ..."
export function describeFault({ blockIndex, offset, message }) {
  const place = blockIndex === undefined ? '' : `block ${blockIndex}, `;
  return `${place}offset ${offset}: ${message}`;
}
