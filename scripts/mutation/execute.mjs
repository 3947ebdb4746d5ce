// Runs programs, several at a time, and leaves none behind.
import { spawn } from 'node:child_process';

const running = new Set();  // groups of processes, by the id of their leader

function kill(group) {
  try {
    process.kill(-group, 'SIGKILL');
  } catch {
    // Has ended.
  }
}
process.on('exit', () => running.forEach(kill));

// Resolves to { ok, output, seconds }, of which `ok` tells about the exit code.
export function execute(command, args, { cwd, env, seconds = 900 }) {
  return new Promise((resolve) => {
    const start = performance.now();
    const child = spawn(command, args, { cwd, env, detached: true,
      stdio: ['ignore', 'pipe', 'pipe'] });
    const chunks = [];
    for (const stream of [child.stdout, child.stderr]) {
      stream.on('data', (chunk) => chunks.push(chunk));
    }
    running.add(child.pid);
    const end = () => kill(child.pid);
    const timer = setTimeout(end, seconds * 1000);
    child.on('exit', end);
    child.on('close', (code) => {
      clearTimeout(timer);
      running.delete(child.pid);
      resolve({ ok: code === 0, output: Buffer.concat(chunks).toString(),
        seconds: (performance.now() - start) / 1000 });
    });
  });
}
