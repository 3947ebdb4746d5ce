// Time and memory that the most expensive inputs take, each in a process of its
// own: npm run bounds. Fails when one of them exceeds what SECURITY.md promises.
import { fork } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import brindle, { assert } from '../../tests/js/module.mjs';
import { inputs } from './inputs.mjs';

const BYTES = 1048576;
const MAX_SECONDS = 1;
const MAX_FACTOR = 100;

const kilobytes = (key) =>
  Number(readFileSync('/proc/self/status', 'utf8').match(`${key}:\\s+(\\d+)`)[1]);

function measure([, call, make]) {
  const input = make();
  gc();
  writeFileSync('/proc/self/clear_refs', '5');  // forgets the peak so far
  const before = kilobytes('VmRSS');
  const start = performance.now();
  const answer = brindle[call](input);
  const seconds = (performance.now() - start) / 1000;
  const memory = 1024 * (kilobytes('VmHWM') - before);
  // All of it has been looked at: nothing was refused early for another reason.
  assert.ok(answer.ok || answer.error.code === 'BLOCK_TOO_LARGE');
  return { seconds, memory };
}

// The output of the core is of no interest here.
const inProcess = (i) => new Promise((resolve, reject) => {
  const child = fork(fileURLToPath(import.meta.url), [String(i)],
    { execArgv: ['--expose-gc'], stdio: ['ignore', 'ignore', 'inherit', 'ipc'] });
  child.on('message', resolve);
  child.on('exit', (code) => reject(Error(`${inputs[i].slice(0, 2)} ended with ${code}`)));
});

async function measureAll() {
  let failed = false;
  for (const [i, [name, call]] of inputs.entries()) {
    // The best of three: other processes take time as well.
    const runs = [await inProcess(i), await inProcess(i), await inProcess(i)];
    const seconds = Math.min(...runs.map((run) => run.seconds));
    const factor = Math.min(...runs.map((run) => run.memory)) / BYTES;
    const exceeds = seconds > MAX_SECONDS || factor > MAX_FACTOR;
    failed ||= exceeds;
    console.log(call.padEnd(17), name.padEnd(35), `${(1000 * seconds).toFixed(0)} ms`.padStart(7),
      `${(1e9 * seconds / BYTES).toFixed(0)} ns/byte`.padStart(12),
      `${factor.toFixed(0)} times its size`.padStart(19), exceeds ? ' EXCEEDS' : '');
  }
  process.exitCode = failed ? 1 : 0;
}

if (process.send === undefined) await measureAll();
else process.send(measure(inputs[Number(process.argv[2])]));
