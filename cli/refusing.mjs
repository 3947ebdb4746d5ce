// What the library refuses ends the command with the name of the file.
import { BrindleError } from '../lib/index.mjs';
import { Failure, REFUSED } from './failure.mjs';
import { withLines } from './streams.mjs';

export function refusing(file, call) {
  const { value, lines } = withLines(() => {
    try {
      return { value: call() };
    } catch (error) {
      if (!(error instanceof BrindleError)) throw error;
      return { error };
    }
  });
  if (value.error === undefined) return value.value;
  throw new Failure(`${file}: ${value.error.message}`, REFUSED, lines);
}
