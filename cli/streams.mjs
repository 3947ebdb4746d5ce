// What the command writes, and how it looks there.
import { fstatSync, readSync, writeSync } from 'node:fs';
import { isatty } from 'node:tty';
import { Failure } from './failure.mjs';
import { visible } from './visible.mjs';

const LOG = 1;
const ERRORS = 2;
const OUTPUT = 3;

export const isTerminal = () => isatty(OUTPUT);

function write(descriptor, data) {
  for (let bytes = Buffer.from(data); bytes.length !== 0;) {
    try {
      bytes = bytes.subarray(writeSync(descriptor, bytes));
    } catch (error) {
      if (error.code === 'EPIPE') return stopped(descriptor);
      if (error.code !== 'EAGAIN') throw error;
      Atomics.wait(new Int32Array(new SharedArrayBuffer(4)), 0, 0, 5);
    }
  }
}

// Whoever reads the output may stop: that ends the command, without a word. That
// nobody reads the errors changes nothing.
function stopped(descriptor) {
  if (descriptor === OUTPUT) process.exit(0);
}

export const output = (data) => write(OUTPUT, data);
export const print = (line = '') => write(OUTPUT, `${line}\n`);
export const warn = (line) => write(ERRORS, `${line}\n`);

// What a call answers; undefined, and its message on standard error, if it ends
// in a Failure.
export function unlessFailing(call) {
  try {
    return call();
  } catch (error) {
    if (!(error instanceof Failure)) throw error;
    warn(`brindle: ${visible(error.message)}`);
    return undefined;
  }
}

// What a call answers, and the lines that the native module prints meanwhile.
export function withLines(call) {
  const from = fstatSync(LOG).size;
  const value = call();
  const log = Buffer.alloc(fstatSync(LOG).size - from);
  if (log.length !== 0) readSync(LOG, log, 0, log.length, from);
  return { value, lines: log.toString().split('\n').filter(Boolean) };
}

const styles = { bold: 1, dim: 2, red: 31, green: 32, yellow: 33, blue: 34, magenta: 35, cyan: 36 };

// Functions that colour a text, or leave it as it is: `mode` is that of --color.
export function palette(mode) {
  const { NO_COLOR, FORCE_COLOR } = process.env;
  const automatic = FORCE_COLOR ? FORCE_COLOR !== '0' : !NO_COLOR && isTerminal();
  const isOn = { always: true, never: false }[mode] ?? automatic;
  return Object.fromEntries(Object.entries(styles).map(([name, code]) =>
    [name, (text) => isOn && text !== '' ? `\x1b[${code}m${text}\x1b[0m` : text]));
}
