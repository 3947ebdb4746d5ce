'use strict';

// What a value looks like in JSON, type by type: `toJSON` makes it of what
// parsing answers or an edit put there, `fromJSON` reads it back. Either
// refuses what does not fit and names the `path` to it.

const { Buffer } = require('node:buffer');
const { bytesAt, wrong } = require('./arguments.cjs');

function whole(min, max) {
  const check = (value, path) => {
    const isWhole = typeof value === 'bigint' || Number.isInteger(value);
    if (!isWhole || value < min || value > max) {
      wrong(path, `a whole number from ${min} to ${max}`);
    }
    return value;
  };
  const toNumber = (value, path) => Number(check(value, path));
  return { toJSON: toNumber, fromJSON: toNumber, check };
}

// JSON numbers are read as doubles, which are exact up to 2^53 only.
function wide(min, max) {
  const { check } = whole(min, max);
  return {
    toJSON: (value, path) => BigInt(check(value, path)).toString(),
    fromJSON: (value, path) => {
      const isDecimal = typeof value === 'string' && /^-?\d{1,20}$/.test(value);
      if (!isDecimal && !Number.isSafeInteger(value)) wrong(path, 'a whole number in decimal digits, as a string');
      return check(BigInt(value), path);
    },
  };
}

const isNumber = (value) => typeof value === 'number';

// JSON has no name for these.
const namedFloats = ['NaN', 'Infinity', '-Infinity', '-0'];
const float = {
  toJSON(value, path) {
    if (!isNumber(value)) wrong(path, 'a number');
    const name = Object.is(value, -0) ? '-0' : String(value);
    return namedFloats.includes(name) ? name : value;
  },
  fromJSON(value, path) {
    if (namedFloats.includes(value)) return Number(value);
    return isNumber(value) ? value : wrong(path, `a number or one of ${namedFloats.join(', ')}`);
  },
};

// What JSON has as it is.
function plain(type, expected) {
  const check = (value, path) => typeof value === type ? value : wrong(path, expected);
  return { toJSON: check, fromJSON: check };
}

const bytes = {
  toJSON: (value, path) => bytesAt(value, path).toString('hex'),
  fromJSON(value, path) {
    const isHex = typeof value === 'string' && /^(?:[\da-f]{2})*$/i.test(value);
    return isHex ? Buffer.from(value, 'hex') : wrong(path, 'bytes as a string of hex digits');
  },
};

const string = plain('string', 'a string');
const bool = plain('boolean', 'true or false');

const scalars = {
  int8: whole(-128, 127),
  int16: whole(-32768, 32767),
  int32: whole(-2147483648, 2147483647),
  int64: wide(-(2n ** 63n), 2n ** 63n - 1n),
  uint8: whole(0, 255),
  uint16: whole(0, 65535),
  uint32: whole(0, 4294967295),
  uint64: wide(0n, 2n ** 64n - 1n),
  float,
  string,
  enum: whole(0, 255),
  bool,
};

module.exports = { bool, bytes, scalars, string };
