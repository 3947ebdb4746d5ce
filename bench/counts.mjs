// Instructions, counted by callgrind: steady where times are not.
import { execFile } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

const run = promisify(execFile);
const folder = fileURLToPath(new URL('../build/bench/', import.meta.url));

async function countAll(work, block, times) {
  const { stderr } = await run('valgrind', ['--tool=callgrind',
    '--callgrind-out-file=/dev/null', './count_driver', work, `${block}.bin`,
    String(times)], { cwd: folder });
  return Number(/Collected : (\d+)/.exec(stderr)[1]);
}

// Of one run, when everything is loaded.
export async function countOf(work, block) {
  const many = await countAll(work, block, 101);
  return Math.round((many - await countAll(work, block, 1)) / 100);
}
