// The blocks of a file for the commands that work on parsed ones: all of them
// are sound, or the command ends with the place of the fault.
import { parseConfigBlob, parseMetaBlock } from '../lib/index.mjs';
import { mapBlock } from './byte_map.mjs';
import { Failure, REFUSED } from './failure.mjs';
import { readBytes } from './input.mjs';
import { describeFault, inspect, isBlob } from './inspect.mjs';
import { withLines } from './streams.mjs';

// { kind, blocks }, the blocks as parsing answers them.
export function loadBlocks(file, options) {
  const bytes = readBytes(file, options);
  const kind = isBlob(bytes) ? 'blob' : 'block';
  const { value: parsed } = withLines(() => (kind === 'blob' ? parseConfigBlob : parseMetaBlock)(bytes));
  const blocks = [parsed.ok ? parsed.value : []].flat();
  if (!parsed.ok || blocks.some(hasLostRecord)) {
    const { faults: [fault] } = inspect(bytes);
    throw new Failure(`${file}: ${describeFault(fault)}`, REFUSED);
  }
  return { kind, blocks };
}

// To parsing a record that cannot be read is an empty one.
const hasLostRecord = ({ values, rawBytes }) =>
  Object.keys(values).length === 0 && mapBlock(rawBytes).faults.length !== 0;

// The index of a block: `which` is an index, a UUID or UUID/INSTANCE; where
// there is only one, nothing needs to be said.
export function chooseBlock({ blocks }, file, which) {
  if (which === undefined) {
    if (blocks.length === 1) return 0;
    throw new Failure(`${file} has ${blocks.length} blocks: choose one with --block`);
  }
  const matches = /^\d+$/.test(which) ? [Number(which)].filter((index) => index < blocks.length)
    : blocks.flatMap((block, index) => isNamed(block, which.toLowerCase()) ? [index] : []);
  if (matches.length === 1) return matches[0];
  throw new Failure(matches.length === 0 ? `${file} has no block '${which}'`
    : `${file} has '${which}' at ${matches.join(', ')}: choose by index`);
}

const isNamed = ({ uuid, instance }, which) =>
  uuid !== undefined && (which === uuid || which === `${uuid}/${instance}`);
