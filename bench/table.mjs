// Tables in Markdown that are as readable as plain text. The first column is
// text, the others are numbers.
export function table(header, rows) {
  const widths = header.map((title, column) =>
    Math.max(title.length, ...rows.map((row) => row[column].length)));
  const line = (row) => `| ${row.map((cell, column) => column === 0
    ? cell.padEnd(widths[column]) : cell.padStart(widths[column])).join(' | ')} |`;
  const rule = widths.map((width, column) => column === 0
    ? '-'.repeat(width + 2) : `${'-'.repeat(width + 1)}:`);
  return [line(header), `|${rule.join('|')}|`, ...rows.map(line)].join('\n');
}

const digits = (number) => number.toPrecision(3).includes('e')
  ? number.toFixed(0) : number.toPrecision(3);

export const ratio = (number) => number.toFixed(number < 0.095 ? 3 : 2);

export function time(microseconds) {
  if (microseconds < 1) return `${digits(1000 * microseconds)} ns`;
  if (microseconds < 1000) return `${digits(microseconds)} µs`;
  return `${digits(microseconds / 1000)} ms`;
}

export const percent = (part) => `${(100 * part).toFixed(0)} %`;
