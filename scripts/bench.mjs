// Measures the module against others: bench/README.md tells how.
import {
  build, needDebianPackages, needNpmPackages, run,
} from './setup.mjs';

export function bench(...args) {
  needDebianPackages('cmake', 'ninja-build', 'g++', 'libbenchmark-dev', 'valgrind');
  needNpmPackages();
  needNpmPackages('bench');
  build('release', 'Release');
  build('bench');
  run(process.execPath, ['--expose-gc', 'bench/bench.mjs', ...args]);
}
