'use strict';

// A refusal as an exception, for programs that would rather catch than ask.
class BrindleError extends Error {
  constructor({ code, message, blockIndex, offset }) {
    super(message);
    this.code = code;
    if (blockIndex !== undefined) this.blockIndex = blockIndex;
    if (offset !== undefined) this.offset = offset;
  }
}
// Shown before the message, and not among an error's own properties.
Object.defineProperty(BrindleError.prototype, 'name', {
  value: 'BrindleError', writable: true, configurable: true,
});

function unwrap(result) {
  if (result.ok) return result.value;
  throw new BrindleError(result.error);
}

// Ends a helper, as `unwrap` does a function of the native module.
function refuse(code, message, place) {
  throw new BrindleError({ code, message, ...place });
}

module.exports = { BrindleError, refuse, unwrap };
