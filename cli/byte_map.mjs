// Names every byte of a block: a tree of what each means, as far as it can be
// understood, and the faults that were met.
import reader from '../lib/block_reader.cjs';
import { BlockFault, Cursor } from '../lib/cursor.cjs';
import { validateBlock } from '../lib/index.mjs';

// A node is { name, start, end, text?, children? }; what has no children owns
// its bytes. Offsets are those in `bytes`, also for a block within a blob.
class Recorder extends Cursor {
  constructor(bytes, offset, end, map = { nodes: [], faults: [] }) {
    super(bytes, offset, end);
    this.map = map;
  }

  part(count) {
    const from = this.offset;
    this.take(count);
    return new Recorder(this.bytes, from, this.offset, this.map);
  }

  element(name, read, show = showValue) {
    const start = this.offset;
    const value = read();
    this.map.nodes.push({ name, start, end: this.offset, text: show(value) });
    return value;
  }

  group(name, read) {
    const siblings = this.map.nodes;
    const node = { name, start: this.offset, end: this.offset, children: [] };
    siblings.push(node);
    this.map.nodes = node.children;
    try {
      return read();
    } finally {
      this.map.nodes = siblings;
      node.end = node.children.reduce((latest, { end }) => Math.max(latest, end), node.start);
    }
  }

  // Strings may be any bytes here; those that are not text are shown as such.
  text(length) { return this.take(length).toString(); }

  complain(offset, message) { this.map.faults.push({ offset, message }); }

  trailer(start) {
    const at = this.offset;
    const expected = crc16(this.bytes.subarray(start, at));
    this.element('CRC-16', () => this.uint16(), (found) => {
      if (found === expected) return `${hex(found, 4)}, good`;
      this.complain(at, `the CRC-16 is ${hex(found, 4)}, that of the bytes ${hex(expected, 4)}`);
      return `${hex(found, 4)}, expected ${hex(expected, 4)}`;
    });
  }

  // With its own checksum the native reader is trusted: it gets the schema with
  // a trailer that is right, and as many bytes as it wants at least.
  endOfSchema(start) {
    const end = start + 17 + this.bytes.readUInt16LE(start + 6);
    if (this.map.faults.some(({ offset }) => offset >= start)) return;
    const content = this.bytes.subarray(start, Math.max(end, this.offset));
    const trailer = Buffer.alloc(34);
    trailer.writeUInt16LE(crc16(content));
    if (!validateBlock(Buffer.concat([content, trailer])).ok) {
      this.complain(start + 8, 'the checksum is not that of the schema');
    }
  }
}

const showValue = (value) => typeof value === 'string' ? JSON.stringify(value) :
  Buffer.isBuffer(value) ? `${value.length} bytes` : `${Object.is(value, -0) ? '-0' : value}`;

export const hex = (value, digits) => `0x${value.toString(16).padStart(digits, '0')}`;

// CRC-16/MODBUS, bit by bit.
function crc16(bytes) {
  let register = 0xffff;
  for (const byte of bytes) {
    register ^= byte;
    for (let bit = 0; bit < 8; bit++) register = register >> 1 ^ (register & 1 ? 0xa001 : 0);
  }
  return register;
}

// Gives every byte to one leaf. A body size that is wrong lets parts of a block
// overlap, or leave something between them.
function inPlace(node, at = node.start) {
  const children = [];
  for (const child of node.children) {
    if (child.start > at) children.push(unknown(at, child.start));
    const from = Math.max(child.start, at);
    const placed = { ...child, start: from, end: Math.max(child.end, from) };
    children.push(child.children ? inPlace(placed, from) : placed);
    at = placed.end;
  }
  if (at < node.end) children.push(unknown(at, node.end));
  return { ...node, children };
}

const unknown = (start, end) =>
  ({ name: 'not understood', start, end, text: `${end - start} bytes` });

// The map of the block between two offsets, with what was read of it.
export function mapBlock(bytes, start = 0, end = bytes.length) {
  const cursor = new Recorder(bytes, start, end);
  const { map } = cursor;
  let block;
  try {
    block = reader.readBlock(cursor);
  } catch (error) {
    if (!(error instanceof BlockFault)) throw error;
    cursor.complain(error.offset, error.message);
  }
  map.nodes = inPlace({ name: 'block', start, end, children: map.nodes }).children;
  map.faults.sort((a, b) => a.offset - b.offset);
  return { ...map, block };
}
