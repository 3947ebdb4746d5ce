'use strict';

// Reads the elements of blocks one after the other: docs/format.md has them. A
// read past the end throws a RangeError; blocks that parseMetaBlock has accepted
// do not lead there.

const { Buffer } = require('node:buffer');
const { refuse } = require('./errors.cjs');

class Cursor {
  constructor(bytes) {
    this.bytes = bytes;
    this.offset = 0;
  }

  take(count) {
    const from = this.offset;
    this.offset += count;
    if (this.offset > this.bytes.length) throw new RangeError('read past the end of the block');
    return this.bytes.subarray(from, this.offset);
  }

  uint8() { return this.take(1).readUInt8(); }
  uint16() { return this.take(2).readUInt16LE(); }
  uint32() { return this.take(4).readUInt32LE(); }
  int8() { return this.take(1).readInt8(); }
  float() { return this.take(4).readFloatLE(); }

  // A BigInt of up to 64 bits. One that the end of the bytes cuts off is what
  // has been read of it; a tenth byte that asks for another makes it 0.
  varint() {
    let value = 0n;
    for (let i = 0n; i < 10n; i++) {
      if (i !== 0n && this.offset === this.bytes.length) return value;
      const byte = this.uint8();
      value |= BigInt(byte & 0x7f) << 7n * i;
      if (byte < 0x80) return BigInt.asUintN(64, value);
    }
    return 0n;
  }

  // A length or a count.
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

module.exports = Cursor;
