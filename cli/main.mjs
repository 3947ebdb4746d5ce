// The command itself, as brindle.mjs starts it.
import { readFileSync } from 'node:fs';
import { parseCommand } from './arguments.mjs';
import { Failure, FINE } from './failure.mjs';
import { commandHelp, overview } from './help.mjs';
import { reasonOf } from './input.mjs';
import { palette, print, warn } from './streams.mjs';
import { visible } from './visible.mjs';

function version() {
  const file = new URL('../package.json', import.meta.url);
  return JSON.parse(readFileSync(file, 'utf8')).version;
}

async function run(argv) {
  const { command, options, operands } = parseCommand(argv);
  if (options.version) return print(`brindle ${version()}`);
  if (options.help || command === undefined) {
    return print(command === undefined ? overview() : commandHelp(command));
  }
  const { default: execute } = await import(`./commands/${command}.mjs`);
  return execute(operands, options, palette(options.color));
}

try {
  process.exitCode = await run(process.argv.slice(2)) ?? FINE;
} catch (error) {
  const failure = error.syscall === 'write' ? new Failure(`output: ${reasonOf(error)}`) : error;
  if (!(failure instanceof Failure)) throw error;
  warn(`brindle: ${visible(failure.message)}`);
  failure.context.forEach((line) => warn(`  ${visible(line)}`));
  process.exitCode = failure.exitCode;
}
