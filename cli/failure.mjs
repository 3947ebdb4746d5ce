// How a command ends when it does not end well.

export const FINE = 0;
export const REFUSED = 1;  // or different
export const USAGE = 2;    // or input and output

// Ends the command with a line on standard error, and others for its context.
export class Failure extends Error {
  constructor(message, exitCode = USAGE, context = []) {
    super(message);
    Object.assign(this, { exitCode, context });
  }
}
