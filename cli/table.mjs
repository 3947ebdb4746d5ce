// Columns of text; all but the last are padded. Widths are those without colour.
const plain = (cell) => cell.replace(/\x1b\[\d+m/g, '');

export function columns(rows, indent = '') {
  const widths = [];
  for (const row of rows) {
    row.forEach((cell, i) => { widths[i] = Math.max(widths[i] ?? 0, plain(cell).length); });
  }
  return rows.map((row) => indent + row.map((cell, i) =>
    i === row.length - 1 ? cell : cell + ' '.repeat(widths[i] - plain(cell).length)).join('  '))
    .map((line) => line.trimEnd());
}
