// Writes cli/brindle.1 of the definitions of the command, or checks that it is
// what they say: npm run man [-- --check].
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { manual } from '../cli/man.mjs';
import { fail, root } from './setup.mjs';

const file = join(root, 'cli/brindle.1');

export function man(option) {
  const { version } = JSON.parse(readFileSync(join(root, 'package.json'), 'utf8'));
  const text = manual(version);
  if (option !== '--check') return writeFileSync(file, text);
  if (readFileSync(file, 'utf8') !== text) fail('cli/brindle.1 is not up to date: npm run man');
  return undefined;
}
