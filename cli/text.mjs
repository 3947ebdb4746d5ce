// What is in a file, for people.
import { factsOf } from './facts.mjs';
import { columns } from './table.mjs';
import { rowsOf, showValue, typeName } from './values.mjs';
import { visible } from './visible.mjs';

export const plural = (count, what) => `${count} ${what}${count === 1 ? '' : 's'}`;

export function showText(file, { kind, blocks, faults }, colors) {
  const what = kind === 'blob' ? `blob of ${plural(blocks.length, 'block')}` : 'block';
  return [colors.bold(`${visible(file)}: ${what}`), ...blocks.flatMap((block) => ['', ...blockLines(block, colors)])];
}

function blockLines({ index, offset, size, dto, faults }, colors) {
  const name = index === undefined ? '' : `block ${index} at ${offset}: `;
  if (dto === undefined) return [`${name}${colors.red('cannot be read')}, ${size} bytes`];
  return [
    `${name}${colors.bold(visible(dto.meta.name))}`,
    ...columns(factsOf(dto).map(([fact, text]) => [fact, visible(text)]), '  '),
    '',
    ...columns(rowsOf(dto).map((row) => valueRow(row, colors)), '  '),
    ...(faults.length === 0 ? [] : [`  ${colors.red('the record cannot be read')}`]),
  ];
}

function valueRow({ path, field, value }, colors) {
  const shown = value === undefined ? colors.dim('absent') : visible(showValue(field, value));
  const constant = field.isMeta ? colors.dim('  constant') : '';
  return [visible(path), colors.cyan(typeName(field)), `${shown}${constant}`];
}
