// Help as text, made of the definitions. Examples come first.
import { commands, globalOptions } from './definitions.mjs';

const indent = (rows) => {
  const width = Math.max(...rows.map(([left]) => left.length));
  return rows.map(([left, right]) => `  ${left.padEnd(width)}  ${right}`.trimEnd());
};

export const optionName = ([name, { short, value }]) =>
  `${short ? `-${short}, ` : ''}--${name}${value ? ` ${value}` : ''}`;

const optionRows = (options) =>
  Object.entries(options).map((entry) => [optionName(entry), entry[1].help]);

export function commandHelp(name) {
  const { summary, operands, options, examples } = commands[name];
  return [
    `brindle ${name}: ${summary}`,
    '',
    ...examples.flatMap(([line, meaning]) => [`  brindle ${name} ${line}`, `      ${meaning}`]),
    '',
    `usage: brindle ${name} [options] ${operands}`,
    '',
    ...indent(optionRows({ ...options, ...globalOptions })),
    '',
    'A file "-" is standard input. Exit code 0: fine, 1: refused or different, 2: wrong',
    'usage, or a file that cannot be read or written.',
  ].join('\n');
}

export function overview() {
  return [
    'brindle: look at, check, build, edit, compare and hash configuration files',
    '',
    ...Object.entries(commands).slice(0, 3).flatMap(([name, { examples: [[line, meaning]] }]) =>
      [`  brindle ${name} ${line}`, `      ${meaning}`]),
    '',
    'usage: brindle COMMAND [options] ...',
    '',
    ...indent(Object.entries(commands).map(([name, { summary }]) => [name, summary])),
    '',
    '"brindle COMMAND --help" tells more about each.',
  ].join('\n');
}
