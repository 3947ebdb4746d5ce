// Writes files so that a failure leaves the old one as it was.
import {
  accessSync, chmodSync, closeSync, constants, fsyncSync, openSync, realpathSync, renameSync, rmSync,
  statSync, writeFileSync,
} from 'node:fs';
import { basename, dirname, join } from 'node:path';
import { Failure } from './failure.mjs';
import { reasonOf } from './input.mjs';
import { isTerminal, output } from './streams.mjs';

// Here descriptor 1 is not what the user knows by these names.
const isOutput = (name) => name === undefined || ['-', '/dev/stdout', '/dev/fd/1'].includes(name);

// Without a name, or for "-", to standard output.
export function writeBytes(name, bytes) {
  if (isOutput(name) && isTerminal()) {
    throw new Failure('binary data is not written to a terminal: use -o FILE or a pipe');
  }
  return writeFile(name, bytes);
}

export function writeFile(name, data) {
  if (isOutput(name)) return output(data);
  try {
    const old = statSync(name, { throwIfNoEntry: false });
    if (old) accessSync(name, constants.W_OK);
    // Pipes and devices stay what they are, and links lead where they did.
    if (old && !old.isFile()) writeFileSync(name, data);
    else replace(old ? realpathSync(name) : name, data, old);
  } catch (error) {
    throw new Failure(`${name}: ${reasonOf(error)}`);
  }
}

// Beside the old file, on the same file system, and only then in its place.
function replace(name, data, old) {
  const temporary = join(dirname(name), `.${basename(name).slice(0, 60)}.${process.pid}.tmp`);
  try {
    writeWhole(temporary, data);
    if (old) chmodSync(temporary, old.mode);
    renameSync(temporary, name);
  } catch (error) {
    rmSync(temporary, { force: true });
    throw error;
  }
}

function writeWhole(name, data) {
  const descriptor = openSync(name, 'wx');
  try {
    writeFileSync(descriptor, data);
    fsyncSync(descriptor);
  } finally {
    closeSync(descriptor);
  }
}
