// Loads the package by `import`, which gives what `require` gives.
import brindle, * as named from 'brindle';
import { createRequire } from 'node:module';
import exercise from './exercise.cjs';

exercise(named);
if (createRequire(import.meta.url)('brindle') !== brindle) throw new Error('loaded twice');
console.log('imported');
