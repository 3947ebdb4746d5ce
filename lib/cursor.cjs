'use strict';

// Reads the elements of a block one after the other: docs/format.md has them.
// What does not belong there is a fault, thrown as an error with its `offset`.

const { Buffer } = require('node:buffer');
const { refuse } = require('./errors.cjs');

class BlockFault extends Error {
  constructor(offset, message) {
    super(message);
    this.offset = offset;
  }
}

class Cursor {
  constructor(bytes, offset = 0, end = bytes.length) {
    this.bytes = bytes;
    this.offset = offset;
    this.end = end;
  }

  // ---- What a subclass may take note of

  // One element: a few bytes with a meaning. `show` makes text of its value.
  element(name, read) { return read(); }
  // Several elements under one name.
  group(name, read) { return read(); }
  // A schema has been read, from `start` up to the cursor but for its trailer.
  endOfSchema() {}
  // The CRC-16 of all bytes from `start` on.
  trailer() { this.take(2); }

  // ---- Bytes

  fail(offset, message) { throw new BlockFault(offset, message); }

  take(count) {
    const from = this.offset;
    if (count > this.end - from) this.fail(from, `${count} bytes needed, ${this.end - from} left`);
    this.offset += count;
    return this.bytes.subarray(from, this.offset);
  }

  // A cursor over the next bytes alone, which this one passes over.
  part(count) {
    const from = this.offset;
    this.take(count);
    return new this.constructor(this.bytes, from, this.offset);
  }

  int8() { return this.take(1).readInt8(); }
  uint8() { return this.take(1).readUInt8(); }
  uint16() { return this.take(2).readUInt16LE(); }
  uint32() { return this.take(4).readUInt32LE(); }
  float() { return this.take(4).readFloatLE(); }

  // A BigInt of up to 64 bits. One that the end of the bytes cuts off is what
  // has been read of it; a tenth byte that asks for another makes it 0.
  varint() {
    let value = 0n;
    for (let i = 0n; i < 10n; i++) {
      if (i !== 0n && this.offset === this.end) return value;
      const byte = this.uint8();
      value |= BigInt(byte & 0x7f) << 7n * i;
      if (byte < 0x80) return BigInt.asUintN(64, value);
    }
    return 0n;
  }

  // A length or a count; beyond 2^53 it is rounded, and too large all the same.
  size() { return Number(this.varint()); }

  // An integer of the given width, cut to it as the native reader does.
  unsigned(bits) { return toNumber(BigInt.asUintN(bits, this.varint()), bits); }
  zigzag(bits) {
    const value = BigInt.asUintN(bits, this.varint());
    return toNumber((value >> 1n) ^ -(value & 1n), bits);
  }

  // JavaScript has no other strings: what is not text could not be written again.
  text(length) {
    const bytes = this.take(length);
    const string = bytes.toString();
    if (bytes.includes(0) || bytes.compare(Buffer.from(string)) !== 0) {
      refuse('NOT_IMPLEMENTED', `a string cannot be kept in JavaScript: 0x${bytes.toString('hex')}`);
    }
    return string;
  }
}

const toNumber = (value, bits) => bits === 64 ? value : Number(value);

module.exports = { BlockFault, Cursor };
