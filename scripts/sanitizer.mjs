// The environment in which the sanitizers' builds run.
import { execFileSync } from 'node:child_process';
import { join } from 'node:path';

export const sanitizerEnv = {
  ...process.env,
  // Too large an allocation must fail as in the product, not end the run.
  ASAN_OPTIONS: 'detect_leaks=1:strict_string_checks=1:' +
    'allocator_may_return_null=1',
  UBSAN_OPTIONS: 'print_stacktrace=1:halt_on_error=1',
};

// The same for Node.js with the module of a build folder.
export function sanitizedModuleEnv(folder) {
  // Node.js is not instrumented, so the run-time library has to come first.
  const library = execFileSync('g++', ['-print-file-name=libasan.so'],
    { encoding: 'utf8' });
  return {
    ...sanitizerEnv,
    LD_PRELOAD: library.trim(),
    BRINDLE_TEST_MODULE: join(folder, 'brindle.node'),
  };
}
