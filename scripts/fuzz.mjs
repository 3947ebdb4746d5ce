// npm run fuzz -- [seconds] [target...]: runs the fuzz targets, all of them if
// none is named, for that many seconds each (default 20).
import { spawn } from 'node:child_process';
import { createWriteStream, mkdirSync, readFileSync, readdirSync } from 'node:fs';
import { cpus } from 'node:os';
import { join, relative } from 'node:path';
import { finished } from 'node:stream/promises';
import { build, fail, needDebianPackages, root } from './setup.mjs';

const corpusRoot = join(root, 'fuzz/corpus');
// Beside the build folder, which starts anew now and then.
const workRoot = join(root, 'build/fuzzing');
// Blocks are at most this long; the scripts and texts of the others are short.
const blockTargets = ['schema_fuzz', 'packet_fuzz', 'block_fuzz', 'blob_fuzz'];
const maxLength = (target) => blockTargets.includes(target) ? 65536 : 4096;

function chooseTargets(names) {
  const known = readdirSync(corpusRoot).sort();
  const unknown = names.filter((name) => !known.includes(name));
  if (unknown.length > 0) {
    fail(`no fuzz target ${unknown.join(', ')}; there are ${known.join(', ')}`);
  }
  return names.length > 0 ? names : known;
}

function workFolder(kind, target) {
  const path = join(workRoot, kind, target);
  mkdirSync(path, { recursive: true });
  return path;
}

async function runTarget(folder, target, seconds) {
  const log = join(workRoot, `${target}.log`);
  const findings = workFolder('findings', target);
  const program = join(folder, 'fuzz', target);
  const child = spawn(program, [
    `-max_total_time=${seconds}`, `-max_len=${maxLength(target)}`,
    '-timeout=10', '-rss_limit_mb=2048', '-malloc_limit_mb=256',
    '-print_final_stats=1', `-artifact_prefix=${findings}/`,
    // New inputs go to the first folder, which grows from run to run.
    workFolder('corpus', target), join(corpusRoot, target),
  ], { stdio: ['ignore', 'ignore', 'pipe'] });
  const output = createWriteStream(log);
  child.stderr.pipe(output);
  const code = new Promise((resolve) => {
    child.on('error', () => resolve(-1));
    child.on('close', resolve);
  });
  await finished(output);
  return { target, program, log, ok: await code === 0 };
}

function report({ target, program, log, ok }) {
  const text = readFileSync(log, 'utf8');
  const number = (pattern) => text.match(pattern)?.[1] ?? '?';
  if (ok) {
    const runs = number(/number_of_executed_units: (\d+)/);
    const speed = number(/average_exec_per_sec: +(\d+)/);
    const [, edges, features, corpus] =
      text.match(/DONE +cov: (\d+) ft: (\d+) corp: (\S+)/) ?? [];
    console.log(`${target}: ${runs} runs, ${speed}/s, ${edges} edges, ` +
      `${features} features, corpus ${corpus}`);
    return;
  }
  const input = number(/Test unit written to (\S+)/);
  console.log(`${target}: FINDING\n${text.split('\n').slice(-60).join('\n')}`);
  console.log(`input: ${input}\nreplay: ` +
    `${relative(process.cwd(), program)} ${input}`);
}

export async function fuzz(...args) {
  const seconds = /^\d+$/.test(args[0]) ? args.shift() : '20';
  const waiting = chooseTargets(args);
  needDebianPackages('cmake', 'ninja-build', 'clang', 'libclang-rt-dev', 'llvm');
  const folder = build('fuzz');
  const worker = async () => {
    while (waiting.length > 0) {
      const result = await runTarget(folder, waiting.shift(), seconds);
      report(result);
      if (!result.ok) process.exitCode = 1;
    }
  };
  await Promise.all(Array.from({ length: Math.min(2, cpus().length) }, worker));
}
