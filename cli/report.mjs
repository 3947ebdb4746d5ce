// The faults of a file, on standard error.
import { describeFault } from './inspect.mjs';
import { warn } from './streams.mjs';
import { visible } from './visible.mjs';

const MOST = 5;

// The first faults, and why the native module refused the first of them.
export function reportFaults(file, { faults, lines }, colors) {
  const name = visible(file);
  for (const fault of faults.slice(0, MOST)) warn(`${colors.red(name)}: ${visible(describeFault(fault))}`);
  if (faults.length > MOST) warn(`${name}: and ${faults.length - MOST} more faults`);
  if (faults.length === 0) return;
  for (const line of lines.slice(0, MOST)) warn(colors.dim(`  ${visible(line)}`));
}
