// Reads what a command is given: files, standard input, hex.
import { closeSync, openSync, readSync } from 'node:fs';
import { LARGEST_BLOB } from '../lib/limits.cjs';
import { Failure } from './failure.mjs';
import { parseHex } from './hex.mjs';

// The largest blob as hex, with a position and a text on every line.
const LARGEST_HEX = 8 * LARGEST_BLOB;

// The name is "-" for standard input.
export function readBytes(name, { hex = false } = {}) {
  const bytes = readAll(name, hex ? LARGEST_HEX : LARGEST_BLOB + 1);
  if (!hex) return bytes;
  const parsed = parseHex(bytes.toString('latin1'));
  if (parsed) return parsed;
  throw new Failure(`${name}: not hex digits in pairs, or lines of a hex dump are missing`);
}

export const readText = (name) => readAll(name, 64 * LARGEST_BLOB).toString();

// No more than a limit, whatever the file goes on with.
function readAll(name, limit) {
  try {
    const descriptor = name === '-' ? 0 : openSync(name, 'r');
    const bytes = readFrom(descriptor, limit);
    if (descriptor !== 0) closeSync(descriptor);
    return bytes;
  } catch (error) {
    throw new Failure(`${name}: ${reasonOf(error)}`);
  }
}

function readFrom(descriptor, limit) {
  const chunks = [];
  for (let left = limit; left > 0;) {
    const chunk = Buffer.alloc(Math.min(left, 65536));
    const count = readSome(descriptor, chunk);
    if (count === 0) break;
    chunks.push(chunk.subarray(0, count));
    left -= count;
  }
  return Buffer.concat(chunks);
}

function readSome(descriptor, chunk) {
  for (;;) {
    try {
      return readSync(descriptor, chunk);
    } catch (error) {
      if (error.code === 'EOF') return 0;
      if (error.code !== 'EAGAIN') throw error;
      Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 5);
    }
  }
}

const reasons = { ENOENT: 'no such file', EISDIR: 'is a folder', EACCES: 'permission denied',
  EROFS: 'the file system is read-only', ENOSPC: 'no space left', EFBIG: 'no space left', ENOTDIR: 'no such file' };
export const reasonOf = ({ code, message }) => reasons[code] ?? message;
