// Runs the properties of fuzz/js: a modest number of fixed cases, or as many
// random ones as fit into some seconds.
import { randomInt } from 'node:crypto';
import { readdirSync } from 'node:fs';
import { join } from 'node:path';
import {
  build, fail, needDebianPackages, needNpmPackages, root, run,
} from './setup.mjs';
import { sanitizedModuleEnv } from './sanitizer.mjs';

// What the library prints when it refuses something would bury the results:
// standard output goes nowhere, and of standard error these lines.
const quietly = 'set -o pipefail; ' +
  '"$@" 2>&1 >/dev/null | grep --line-buffered -v "^\\[brindle\\] "';

export function runJsFuzz(seconds = 0, env = process.env) {
  const files = readdirSync(join(root, 'fuzz/js'))
    .filter((name) => name.endsWith('.test.mjs'));
  const random = seconds === 0 ? 1 : randomInt(2 ** 31);
  const seed = process.env.BRINDLE_FUZZ_SEED ?? random;
  console.log(`fuzz/js: BRINDLE_FUZZ_SEED=${seed}`);
  // Only Node.js may see what is loaded first: the shell is not made for it.
  const { LD_PRELOAD = '', ...shellEnv } = {
    ...env,
    BRINDLE_FUZZ_SECONDS: seconds / files.length,
    BRINDLE_FUZZ_SEED: seed,
  };
  for (const file of files) {
    run('bash', ['-c', quietly, 'bash', 'env', `LD_PRELOAD=${LD_PRELOAD}`,
      process.execPath, '--expose-gc', '--test-reporter=spec',
      '--test-reporter-destination=stderr', join('fuzz/js', file)],
    { env: shellEnv });
  }
}

// npm run fuzz:js -- [seconds]
export function fuzzJs(argument = '60') {
  const seconds = Number(argument);
  if (!(seconds > 0)) fail('fuzz:js takes a number of seconds');
  needDebianPackages('cmake', 'ninja-build', 'g++', 'libgtest-dev');
  needNpmPackages();
  build('release', 'Release');  // for the helpers, which are in front of it
  runJsFuzz(seconds, sanitizedModuleEnv(build('asan')));
}
