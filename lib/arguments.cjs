'use strict';

// What the helpers are given. `path` names the value in the message; anything
// that does not fit is refused.

const { Buffer } = require('node:buffer');
const { refuse } = require('./errors.cjs');

const wrong = (path, expected, place) =>
  refuse('INVALID_ARGUMENT', `${path} must be ${expected}`, place);

function objectAt(value, path) {
  const isObject = typeof value === 'object' && value !== null && !Array.isArray(value);
  return isObject ? value : wrong(path, 'an object');
}

const arrayAt = (value, path) => Array.isArray(value) ? [...value] : wrong(path, 'an array');

// The bytes that a Buffer or typed array shows, as a copy: nothing can change
// them any more.
function bytesAt(value, path, place) {
  if (!ArrayBuffer.isView(value) || value instanceof DataView) wrong(path, 'a Buffer', place);
  if (value.byteLength === 0) return Buffer.alloc(0);
  return Buffer.from(new Uint8Array(value.buffer, value.byteOffset, value.byteLength));
}

module.exports = { arrayAt, bytesAt, objectAt, wrong };
