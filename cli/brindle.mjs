#!/usr/bin/env node
// Starts the command in a process of its own. The native module prints why it
// refuses something on descriptor 1, past `process.stdout`; there descriptor 1
// is a file that the command reads, and its output goes to descriptor 3, which
// is our standard output.
import { spawnSync } from 'node:child_process';
import { closeSync, mkdtempSync, openSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const main = fileURLToPath(new URL('main.mjs', import.meta.url));
const folder = newFolder();
const log = openSync(join(folder, 'log'), 'a+');
process.on('SIGINT', () => {});  // the command gets it too, and ends

function newFolder() {
  try {
    return mkdtempSync(join(tmpdir(), 'brindle-'));
  } catch ({ message }) {
    process.stderr.write(`brindle: no folder for temporary files: ${message}\n`);
    return process.exit(2);
  }
}

try {
  const { status, signal, error } = spawnSync(process.execPath,
    [main, ...process.argv.slice(2)], { stdio: ['inherit', log, 'inherit', 1] });
  if (error) throw error;
  process.exitCode = status ?? (signal === 'SIGINT' ? 130 : 143);
} finally {
  closeSync(log);
  rmSync(folder, { recursive: true, force: true });
}
