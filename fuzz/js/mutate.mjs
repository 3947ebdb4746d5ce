// Damages bytes, and puts the checksums of a block right again so that more
// than its header is read.
import { bytes, crc, jamcrc, le } from '../../tests/js/encode.mjs';
import { fc } from './support.mjs';

const at = fc.nat();
const byte = fc.oneof(fc.constantFrom(0, 1, 2, 3, 10, 12, 127, 128, 254, 255), fc.nat(255));
const count = fc.oneof(fc.nat(8), fc.nat(300));
const number = fc.oneof(fc.nat(70), fc.constantFrom(0, 1, 31, 32, 33, 99, 100, 101, 254, 255, 256,
  65535, 2 ** 31, 2 ** 32 - 1));

const kinds = {
  flip: fc.record({ at, bit: fc.nat(7) }),
  put: fc.record({ at, values: fc.array(byte, { minLength: 1, maxLength: 4 }) }),
  putNumber: fc.record({ at, number, width: fc.constantFrom(1, 2, 4) }),
  insert: fc.record({ at, values: fc.array(byte, { minLength: 1, maxLength: 12 }) }),
  remove: fc.record({ at, count }),
  copy: fc.record({ at, from: at, count }),
  cut: fc.record({ at }),
};
export const mutations = fc.array(fc.oneof(...Object.entries(kinds)
  .map(([kind, more]) => more.map((rest) => ({ kind, ...rest })))), { minLength: 1, maxLength: 4 });

const splice = (data, at, count, inserted) =>
  bytes(data.subarray(0, at), inserted, data.subarray(at + count));

function mutatedOnce(data, { kind, at, ...how }) {
  const start = at % (data.length + 1);
  const { from = 0, count = 0, bit, values, number, width } = how;
  switch (kind) {
    case 'flip': {
      const flipped = data.subarray(start, start + 1).map((byte) => byte ^ 1 << bit);
      return splice(data, start, 1, flipped);
    }
    case 'put': return splice(data, start, values.length, values);
    case 'putNumber': return splice(data, start, width, le(number, width));
    case 'insert': return splice(data, start, 0, values);
    case 'remove': return splice(data, start, count, []);
    case 'copy': {
      const source = from % (data.length + 1);
      return splice(data, start, 0, data.subarray(source, source + count));
    }
    default: return data.subarray(0, start);
  }
}
export const mutated = (data, list) => list.reduce(mutatedOnce, data);

// Reads on from an offset; throws a RangeError at the end of the data.
class Cursor {
  constructor(data, offset) { Object.assign(this, { data, offset }); }
  take(count) {
    if (count > this.data.length - this.offset) throw new RangeError('end of data');
    return this.data.subarray(this.offset, this.offset += count);
  }
  u8() { return this.take(1)[0]; }
  u32() { return this.take(4).readUInt32LE(); }
  sized() { return this.take(this.u32()); }
  varint() {
    let value = 0n;
    for (let shift = 0n; ; shift += 7n) {
      const group = this.u8();
      value |= BigInt(group & 127) << shift;
      if (group < 128) return BigInt.asUintN(64, value);
    }
  }
}

const within = (limit, value) => {
  if (value > limit) throw new RangeError('too many');
  return value;
};

const widths = [1, 2, 4, 8, 1, 2, 4, 8, 4, 0, 1, 1];

// The bytes of the next value that its checksum covers.
function plainOne(cursor, field) {
  const width = widths[field.type];
  if (field.type === 12) return plainRecord(cursor, field.nested.fields);
  if (field.type === 9) return cursor.take(Number(cursor.varint()));
  if (width === 1 || field.type === 8) return cursor.take(width);
  const value = BigInt.asUintN(8 * width, cursor.varint());
  const buffer = Buffer.alloc(8);
  buffer.writeBigUInt64LE(field.type > 3 ? value : BigInt.asUintN(64, value >> 1n ^ -(value & 1n)));
  return buffer.subarray(0, width);
}

function valueCrc(cursor, field) {
  if ((field.flags & 2) === 0) return le(jamcrc(plainOne(cursor, field)), 4);
  const length = within(1000, Number(cursor.varint()));
  // An array of records counts with the checksum of each.
  const plain = (item) => field.type === 12 ? le(jamcrc(item), 4) : item;
  const items = Array.from({ length }, () => plain(plainOne(cursor, field)));
  return le(jamcrc(bytes(...items)), 4);
}

function plainRecord(cursor, fields) {
  const packet = new Cursor(cursor.take(Number(cursor.varint())), 2);
  const end = Number(packet.varint()) + packet.offset;
  const parts = [];
  while (packet.offset < end) {
    const field = fields[Number(packet.varint())];
    if (field === undefined) throw new RangeError('no such field');
    parts.push(field.name, valueCrc(packet, field));
  }
  return bytes(...parts);
}

function readDescriptor(cursor, depth) {
  const field = { name: cursor.sized(), type: cursor.u8(), flags: cursor.u8(), options: [] };
  if (field.type > 12) throw new RangeError('no such type');
  if (field.type === 10) {
    for (let left = cursor.u32(); left > 0; left--) {
      field.options.push([cursor.sized(), cursor.u8()]);
    }
  }
  if (field.type === 12) {
    const size = cursor.u32();
    field.nested = repairSchema(cursor.data, cursor.offset, depth + 1);
    cursor.take(size);
  }
  return field;
}

// Two descriptors of one name are merged into the first.
function merge(fields, field) {
  const first = fields.find(({ name }) => name.equals(field.name));
  if (first === undefined) return fields.push(field) && field;
  for (const entry of field.options) {
    if (!first.options.some(([key]) => key.equals(entry[0]))) first.options.push(entry);
  }
  return first;
}

function repairSchema(data, start, depth) {
  within(5, depth);
  const cursor = new Cursor(data, start + 12);
  const count = within(100, cursor.u32());
  const name = cursor.take(cursor.u8());
  const fields = [];
  for (let i = 0; i < count; i++) {
    const field = merge(fields, readDescriptor(cursor, depth));
    if (field.flags & 1) field.constant = valueCrc(cursor, field);
  }
  const covered = fields.flatMap(({ name, type, flags, options, nested, constant }) =>
    [name, type, flags, ...options.flat(), nested?.checksum ?? '', constant ?? '']);
  const checksum = le(jamcrc(bytes(name, data[start + 5], ...covered)), 4);
  bytes('MHCS', 10).copy(data, start);
  le(cursor.offset - start - 17, 2).copy(data, start + 6);
  checksum.copy(data, start + 8);
  return { fields, checksum, end: cursor.offset };
}

// The block with checksums that fit, if its schema can be followed; what has
// been put right before the fault stays. `followed` says whether there is none.
export function repaired(block) {
  const data = bytes(block);
  try {
    const { end } = repairSchema(data, 0, 1);
    if (data[5] & 1) le(crc(data.subarray(0, end), 0xffff, 0xa001), 2).copy(data, end);
    return { data, followed: true };
  } catch (error) {
    if (!(error instanceof RangeError)) throw error;
    return { data, followed: false };
  }
}
