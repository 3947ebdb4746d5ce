// What the user typed, checked against the definitions.
import { parseArgs } from 'node:util';
import { commands, globalOptions } from './definitions.mjs';
import { Failure } from './failure.mjs';

// { command, options, operands }; `command` is undefined if only help or the
// version is wanted.
export function parseCommand(argv) {
  const [name, ...rest] = argv;
  if (name === undefined) return { options: { help: true }, operands: [] };
  if (name.startsWith('-')) return parseWithout(argv);
  if (!Object.hasOwn(commands, name)) {
    throw new Failure(`no command '${name}'${suggestion(name, Object.keys(commands))}`);
  }
  return parse(rest, { ...commands[name].options, ...globalOptions }, name);
}

// Help or the version.
function parseWithout(argv) {
  const parsed = parse(argv, globalOptions, undefined);
  const [operand] = parsed.operands;
  if (operand === undefined) return parsed;
  throw new Failure(`the command comes first: brindle ${operand} ...`);
}

function parse(args, definitions, command) {
  const { tokens } = parseArgs({ args, options: asConfig(definitions), tokens: true, strict: false });
  tokens.filter(({ kind }) => kind === 'option')
    .forEach((token) => checkOption(token, definitions, command));
  const { values, positionals } = parseArgs({ args, options: asConfig(definitions),
    allowPositionals: true });
  if (positionals.filter((operand) => operand === '-').length > 1) {
    throw new Failure('standard input can be read only once');
  }
  return { command, options: values, operands: positionals };
}

const asConfig = (definitions) => Object.fromEntries(Object.entries(definitions)
  .map(([name, { type, short, multiple }]) => [name, { type, ...(short && { short }),
    ...(multiple && { multiple }) }]));

function checkOption({ name, rawName, value, inlineValue }, definitions, command) {
  const definition = Object.hasOwn(definitions, name) ? definitions[name] : undefined;
  if (definition === undefined) {
    const names = Object.keys(definitions).map((option) => `--${option}`);
    throw new Failure(`${command ?? 'brindle'} has no option ${rawName}${suggestion(rawName, names)}`);
  }
  if (definition.type === 'string' && value === undefined) {
    throw new Failure(`${rawName} needs a value: ${definition.value}`);
  }
  if (definition.type === 'string' && !inlineValue && /^-./.test(value)) {
    throw new Failure(`${rawName} needs a value; one that begins with "-" is --${name}=${value}`);
  }
  if (definition.type === 'boolean' && value !== undefined) {
    throw new Failure(`${rawName} takes no value`);
  }
  if (definition.choices && !definition.choices.includes(value)) {
    throw new Failure(`${rawName} is one of ${definition.choices.join(', ')}, not '${value}'`);
  }
}

// A hint if one of the names is nearly what was typed.
export function suggestion(typed, names) {
  const [nearest] = names.map((name) => ({ name, distance: distance(typed, name) }))
    .sort((a, b) => a.distance - b.distance);
  const isNear = nearest !== undefined && nearest.distance <= Math.max(2, typed.length / 3);
  return isNear ? `; did you mean ${nearest.name}?` : '';
}

// Letters to add, drop or replace.
function distance(from, to) {
  let row = Array.from({ length: to.length + 1 }, (_, i) => i);
  [...from].forEach((letter, i) => {
    row = row.reduce((next, above, j) => [...next, j === 0 ? i + 1 :
      Math.min(above + 1, next[j - 1] + 1, row[j - 1] + (letter === to[j - 1] ? 0 : 1))], []);
  });
  return row.at(-1);
}
