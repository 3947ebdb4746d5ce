// Hex digits as people paste them: in any groups, as a list of a C program, or
// as the lines of a hex dump: a position, the digits, the bytes as text.

// The bytes; undefined if it is no hex.
export function parseHex(text) {
  const lines = text.split(/\r?\n/).filter((line) => /\S/.test(line));
  const digits = isDump(lines[0] ?? '') ? dumpDigits(lines) : plainDigits(text);
  return digits !== undefined && /^(?:[\da-f]{2})*$/i.test(digits) ? Buffer.from(digits, 'hex') : undefined;
}

// Without a colon or a text behind it, a position is known by being zero: no
// file begins with such bytes.
const isDump = (line) => /^\s*(?:(?:0x)?[\da-f]{4,16}:\s|0{4,16}\s+[\da-f]{2}|[\da-f]{7,8} .*\|$)/i.test(line);

// Undefined if a line does not follow the one before: then lines are missing,
// as where a dump has "*" for those that are equal.
function dumpDigits(lines) {
  let digits = '';
  const first = positionOf(lines[0]);
  for (const line of lines) {
    const position = positionOf(line);
    // od counts in octal, if not told otherwise.
    const follows = (radix) => parseInt(position, radix) - parseInt(first, radix) === digits.length / 2;
    if (position === undefined || ![16, 8, 10].some(follows)) return undefined;
    digits += digitsBehind(line);
  }
  return digits;
}

const positionOf = (line) => /^\s*(?:0x)?([\da-f]{4,16})(?::|\s|$)/i.exec(line)?.[1];

// The text is behind two blanks; where it is between bars, so are some digits.
function digitsBehind(line) {
  const [, position, rest] = /^\s*(\S+)\s*(.*)$/.exec(line);
  const hasBars = !position.endsWith(':') && / {2}\|.*\|$/.test(rest);
  return rest.split(hasBars ? '  |' : '  ', 1)[0].replace(/\s/g, '');
}

function plainDigits(text) {
  const [, list = text] = /\{([^}]*)\}/.exec(text) ?? [];
  return list.replace(/0x([\da-f])(?![\da-f])/gi, '0$1').replace(/0x|\\x|[\s,;:]/gi, '');
}
